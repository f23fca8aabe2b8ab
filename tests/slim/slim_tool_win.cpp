// Test documents and real slimming from the command line, for scripts:
//   slim_tool documents FOLDER   writes a document of every shape
//   slim_tool slim [STEP]        slims the dialog's answer that comes in on standard input, one
//                                string a line, and dies at a step of the file work, if given
//   slim_tool hold FILE ACCESS SHARE   keeps a file open until standard input ends
// The log goes to standard output, as UTF-8.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "slim/slim_action.h"
#include "slim/slim_files_win.h"
#include "tests/slim/document_builder.h"

namespace {

// Ends the process as a crash would: nothing is flushed or closed in order.
class Mortal {
  public:
    Mortal(SlimFiles files, int dieAt) : files_(std::move(files)), dieAt_(dieAt) {}

    SlimFiles seam() {
        return {[this](const auto& path, Bytes& contents) {
                    step();
                    return files_.readWhole(path, contents);
                },
                [this](const auto& from, const auto& to) {
                    Bytes contents;
                    step();
                    step([&] { files_.readWhole(from, contents), writeHalf(to, contents); });
                    const bool isCopied = files_.copyFile(from, to);
                    step();
                    return isCopied;
                },
                [this](const auto& path, ByteView bytes) {
                    step();
                    step([&] { writeHalf(path, bytes); });
                    const bool isWritten = files_.writeWhole(path, bytes);
                    step();
                    return isWritten;
                },
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

int slimFiles(int dieAt) {
    std::string answer;
    for (int c = std::getchar(); c != EOF; c = std::getchar())
        answer.push_back(c == '\n' ? '\0' : static_cast<char>(c));
    std::erase(answer, '\r');
    const std::wstring buffer = wideFromUtf8(answer);
    const ActionHost host{
        [](std::wstring line) { std::printf("%s\n", utf8FromWide(line).c_str()); },
        [](const std::wstring&, const std::wstring&, ConfirmStyle) { return true; },
        [](std::wstring) {},
    };
    Mortal files(realSlimFiles(), dieAt);
    slimSelection(std::span(buffer.data(), buffer.size()), host, files.seam());
    return 0;
}

int hold(const std::string& path, const char* access, const char* share) {
    if (CreateFileW(wideFromUtf8(path).c_str(), std::strtoul(access, nullptr, 0),
                    std::strtoul(share, nullptr, 0), nullptr, OPEN_EXISTING, 0,
                    nullptr) == INVALID_HANDLE_VALUE)
        return 1;
    std::puts("held");
    std::fflush(stdout);
    return std::getchar() == EOF ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "documents" && count == 3) return writeDocuments(arguments[2]);
    if (command == "slim") return slimFiles(count > 2 ? std::atoi(arguments[2]) : 0);
    if (command == "hold" && count == 5) return hold(arguments[2], arguments[3], arguments[4]);
    return 2;
}
