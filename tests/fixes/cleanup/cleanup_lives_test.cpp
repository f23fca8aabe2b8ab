// Whole lives of a profile in random order: cleanups and restores, killed or not, a full disk, work
// of the user in between. Whatever comes, each content that anybody has made is still somewhere.
// MIRELO_LIVES says how many; an ordinary run lives some hundred.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/fixes/cleanup/staged_profile.h"

namespace {

class Life {
  public:
    explicit Life(unsigned seed) : random_(seed), stage_(seed % 2 == 0 ? kNear : kFar) {
        // A few files are enough, and each life tells others apart.
        for (const StagedFile& file : kStagedFiles) {
            if (file.isCleaned && below(2) == 0)
                paths_.push_back(stagedPath(file));
            else
                stage_.files.remove(stagedPath(file), nullptr);
        }
        if (paths_.empty()) stage_.files.add(paths_.emplace_back(kCache + L"a"), "a");
        if (below(4) == 0) stage_.context.roots[2] = L"D:\\Temp";
        owned_ = stage_.contents();
        born_ = stage_.files.snapshot(L"C:");
    }

    void live() {
        for (unsigned events = 3 + below(6); events > 0 && !testing::Test::HasFailure(); --events) {
            happen(below(8));
            ASSERT_TRUE(std::ranges::includes(contents(), owned_));
        }
        // In the end nothing stands in the way but what the user made; presses bring all else.
        for (const std::wstring& path : paths_)
            if (auto* node = stage_.files.find(path)) node->isInUse = false;
        stage_.files.freeOnD = 1'000'000;
        while (stage_.restore().find(L"put back from") != std::wstring::npos)
            ;
        ASSERT_TRUE(std::ranges::includes(contents(), owned_));
        for (const std::wstring& path : paths_)
            EXPECT_TRUE(stage_.files.find(path) != nullptr || isGone_.contains(path));
    }

  private:
    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    std::multiset<std::string> contents() { return stage_.contents(); }

    void happen(unsigned event) {
        const std::wstring& path = paths_[below(static_cast<unsigned>(paths_.size()))];
        FakeFileSystem& files = stage_.files;
        auto* node = files.find(path);
        switch (event) {
            case 0:
            case 1:
                stage_.isKilled(killStep(), [&] { stage_.press(CleanUp); });
                return;
            case 2:
            case 3:
                restore();
                return;
            case 4:  // new work, of the same size and time half of the time
                if (node != nullptr) return;
                node = &files.add(path, newWork(path));
                if (below(2) == 0) node->modified = born_.at(path).modified;
                owned_.insert(node->contents);
                return;
            case 5:
                if (node != nullptr) node->isInUse = !node->isInUse;
                return;
            case 6:  // the user throws a file away
                if (node == nullptr || node->isInUse) return;
                owned_.erase(owned_.find(node->contents));
                files.remove(path, nullptr);
                isGone_.insert(path);
                return;
            default:
                files.freeOnD = below(2) == 0 ? below(6000) : 1'000'000;
                return;
        }
    }

    // What stands in its place stays there as it is.
    void restore() {
        std::map<std::wstring, std::string> inPlace;
        for (const std::wstring& path : paths_)
            if (const auto* node = stage_.files.find(path)) inPlace[path] = node->contents;
        stage_.isKilled(killStep(), [&] { stage_.restore(); });
        for (const auto& [path, contents] : inPlace) {
            const auto* node = stage_.files.find(path);
            ASSERT_TRUE(node != nullptr && node->contents == contents) << utf8FromWide(path);
        }
    }
    int killStep() {
        return below(2) == 0 ? 1 + static_cast<int>(below(90)) : std::numeric_limits<int>::max();
    }
    std::string newWork(const std::wstring& path) {
        std::string text = utf8FromWide(path);
        text.back() = static_cast<char>('A' + below(26));
        return text;
    }

    std::mt19937 random_;
    Stage stage_;
    std::vector<std::wstring> paths_;
    std::multiset<std::string> owned_;
    FakeFileSystem::Snapshot born_;
    std::set<std::wstring> isGone_;
};

}  // namespace

TEST(CleanupLives, LoseNothing) {
    const char* asked = std::getenv("MIRELO_LIVES");
    const unsigned lives = asked == nullptr ? 400 : static_cast<unsigned>(std::atoi(asked));
    for (unsigned seed = 0; seed < lives && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Life(seed).live();
    }
}
