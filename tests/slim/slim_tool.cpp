// Test documents and real slimming from the command line, for scripts:
//   slim_tool documents FOLDER   writes a document of every shape
//   slim_tool slim [STEP]        slims the dialog's answer that comes in on standard input, one
//                                string a line, and dies at a step of the file work, if given
// The log goes to standard output, as UTF-8.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include "base/text.h"
#include "slim/slim_action.h"
#include "tests/slim/document_builder.h"
#ifdef _WIN32
#include "slim/slim_files_win.h"
#else
#include <filesystem>
#include <fstream>
#endif

namespace {

#ifndef _WIN32
std::filesystem::path nativePath(const std::wstring& path) {
    std::string name = utf8FromWide(path);
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

Bytes readFile(const std::wstring& path) {
    std::ifstream file(nativePath(path), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

bool writeFile(const std::wstring& path, ByteView bytes) {
    std::ofstream file(nativePath(path), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return file.flush().good();
}

SlimFiles realSlimFiles() {
    return {readFile,
            [](const std::wstring& from, const std::wstring& to) {
                return writeFile(to, readFile(from));
            },
            writeFile, [] { return std::wstring(L"20240131_142501"); }};
}
#endif

// Ends the process as a crash would: nothing is flushed or closed in order.
class Mortal {
  public:
    Mortal(SlimFiles files, int dieAt) : files_(std::move(files)), dieAt_(dieAt) {}

    Bytes read(const std::wstring& path) {
        step();
        return files_.readWhole(path);
    }
    bool copy(const std::wstring& from, const std::wstring& to) {
        step();
        step([&] { writeHalf(to, files_.readWhole(from)); });
        const bool isCopied = files_.copyFile(from, to);
        step();
        return isCopied;
    }
    bool write(const std::wstring& path, ByteView bytes) {
        step();
        step([&] { writeHalf(path, bytes); });
        const bool isWritten = files_.writeWhole(path, bytes);
        step();
        return isWritten;
    }
    SlimFiles seam() {
        return {[this](const auto& path) { return read(path); },
                [this](const auto& from, const auto& to) { return copy(from, to); },
                [this](const auto& path, ByteView bytes) { return write(path, bytes); },
                files_.localTimestamp};
    }

  private:
    void step(const std::function<void()>& lastAct = [] {}) {
        if (++steps_ != dieAt_) return;
        lastAct();
        std::_Exit(9);
    }
    void writeHalf(const std::wstring& path, ByteView bytes) {
        files_.writeWhole(path, bytes.first(bytes.size() / 2));
    }

    SlimFiles files_;
    int dieAt_;
    int steps_ = 0;
};

int writeDocuments(const std::string& folder) {
    for (const auto& [name, plan] : documentShapes()) {
        const std::wstring path = wideFromUtf8(folder + "/" + name + ".cdr");
        if (!realSlimFiles().writeWhole(path, buildDocument(plan))) return 1;
    }
    return 0;
}

std::wstring dialogAnswer() {
    std::string answer;
    for (int c = std::getchar(); c != EOF; c = std::getchar())
        answer.push_back(c == '\n' ? '\0' : static_cast<char>(c));
    std::erase(answer, '\r');
    return wideFromUtf8(answer);
}

int slimFiles(int dieAt) {
    const Shell shell{
        [](std::wstring line) { std::printf("%s\n", utf8FromWide(line).c_str()); },
        [](const std::wstring&, const std::wstring&, ConfirmStyle) { return true; },
        [](std::wstring) {},
    };
    Mortal files(realSlimFiles(), dieAt);
    const std::wstring answer = dialogAnswer();
    slimSelection(std::span(answer.data(), answer.size()), shell, files.seam());
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "documents" && count > 2) return writeDocuments(arguments[2]);
    if (command == "slim") return slimFiles(count > 2 ? std::atoi(arguments[2]) : 0);
    return 2;
}
