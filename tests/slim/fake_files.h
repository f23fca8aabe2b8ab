// A file system in memory that can fail at any step.
#pragma once

#include <map>
#include <string>

#include "slim/slim_files.h"

struct FakeFiles {
    std::map<std::wstring, Bytes> contents;
    /// The step to fail at, counted from 1; 0 for none.
    int failAt = 0;
    int steps = 0;
    int writes = 0;

    bool step() { return ++steps != failAt; }

    SlimFiles seam() {
        return {
            [this](const std::wstring& path, Bytes& read) {
                read = step() ? contents[path] : Bytes();
                return !read.empty();
            },
            [this](const std::wstring& from, const std::wstring& to) {
                if (!step() || contents.count(to) != 0) return false;
                contents[to] = contents[from];
                return true;
            },
            [this](const std::wstring& path, ByteView bytes) {
                ++writes;
                contents[path].assign(bytes.begin(), bytes.end());
                return step();
            },
            [] { return std::wstring(L"20240131_142501"); },
        };
    }
};
