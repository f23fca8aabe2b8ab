// A file system in memory that can fail at any step, and in which somebody else saves.
#pragma once

#include <map>
#include <string>

#include "slim/slim_files.h"

struct FakeFiles {
    std::map<std::wstring, Bytes> contents;
    /// The step to fail at, counted from 1, and the one before which somebody else saves `saved` as
    /// the document that it is about; 0 for none.
    int failAt = 0, saveAt = 0;
    Bytes saved = {};
    int steps = 0, writes = 0;
    std::uint64_t saves = 0;

    bool step(const std::wstring& path) {
        if (++steps == saveAt) {
            contents[path] = saved;
            ++saves;
        }
        return steps != failAt;
    }
    FileVersion version(const std::wstring& path) { return {1, 2, contents[path].size(), saves}; }

    SlimFiles seam() {
        return {
            [this](const std::wstring& path, FileImage& image) {
                image.bytes = step(path) ? contents[path] : Bytes();
                image.version = version(path);
                return !image.bytes.empty();
            },
            [this](const std::wstring& from, const std::wstring& to) {
                if (!step(from) || contents.count(to) != 0) return false;
                contents[to] = contents[from];
                return true;
            },
            [this](const std::wstring& path, ByteView bytes, const FileVersion& expected,
                   const std::wstring&) {
                if (!step(path)) return WriteOutcome::failed;
                if (version(path) != expected) return WriteOutcome::changed;
                ++writes;
                contents[path].assign(bytes.begin(), bytes.end());
                return WriteOutcome::written;
            },
            [] { return std::wstring(L"20240131_142501"); },
        };
    }
};
