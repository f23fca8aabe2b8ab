// A file system in memory that can fail, die and lose what was not flushed, at any step.
#pragma once

#include <map>
#include <string>

#include "slim/slim_files.h"

/// Thrown by the step at which the program is to die: everything after it never happens.
struct Died {};

struct FakeFiles {
    std::map<std::wstring, Bytes> contents;
    /// The step to die at or to fail at, counted from 1; 0 for none.
    int dieAt = 0;
    int failAt = 0;
    int steps = 0;
    int writes = 0;

    bool step() {
        ++steps;
        if (steps == dieAt) throw Died();
        return steps != failAt;
    }

    SlimFiles seam() {
        return {
            [this](const std::wstring& path, Bytes& read) {
                read = step() ? contents[path] : Bytes();
                return !read.empty();
            },
            [this](const std::wstring& from, const std::wstring& to) {
                if (!step() || contents.count(to) != 0) return false;
                const Bytes& source = contents[from];
                contents[to] =
                    Bytes(source.begin(), source.begin() + std::ptrdiff_t(source.size() / 2));
                const bool isCopied = step();
                if (isCopied) contents[to] = source;
                const bool isFlushed = isCopied && step();
                if (!isFlushed) contents.erase(to);
                return isFlushed;
            },
            [this](const std::wstring& path, ByteView bytes) {
                if (!step()) return false;
                ++writes;
                contents[path].clear();
                const ByteView half = bytes.first(bytes.size() / 2);
                const bool isOpened = step();
                contents[path].assign(half.begin(), half.end());
                if (!isOpened || !step()) return false;
                contents[path].assign(bytes.begin(), bytes.end());
                return true;
            },
            [] { return std::wstring(L"20240131_142501"); },
        };
    }
};
