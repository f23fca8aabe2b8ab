// Whole lives of a profile in random order. MIRELO_LIVES says how many.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/fixes/cleanup/staged_profile.h"

namespace {

struct Life {
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
            happen(below(6));
            ASSERT_TRUE(std::ranges::includes(stage_.contents(), owned_));
        }
        // Nothing stands in the way any more but what the user made.
        for (const std::wstring& path : paths_)
            if (auto* node = stage_.files.find(path)) node->isInUse = false;
        stage_.files.freeOnD = 1'000'000;
        while (holds(stage_.restore(), L"put back from")) {
        }
        ASSERT_TRUE(std::ranges::includes(stage_.contents(), owned_));
        for (const std::wstring& path : paths_)
            EXPECT_TRUE(stage_.files.find(path) != nullptr || isGone_.contains(path));
    }

  private:
    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }

    void happen(unsigned event) {
        const std::wstring& path = paths_[below(static_cast<unsigned>(paths_.size()))];
        FakeFileSystem& files = stage_.files;
        auto* node = files.find(path);
        const int killAt = below(2) == 0 ? 1 + static_cast<int>(below(90)) : 1'000'000;
        if (event == 0) stage_.isKilled(killAt, [&] { stage_.press(CleanUp); });
        if (event == 1) stage_.isKilled(killAt, [&] { stage_.restore(); });
        if (event == 2) files.freeOnD = below(2) == 0 ? below(6000) : 1'000'000;
        if (event == 3 && node != nullptr) node->isInUse = !node->isInUse;
        if (event == 4 && node != nullptr && !node->isInUse) {
            owned_.erase(owned_.find(node->contents));
            files.remove(path, nullptr);
            isGone_.insert(path);
        }
        if (event == 5 && node == nullptr) {
            // New work, of the same size and time half of the time.
            node = &files.add(path, "new work" + std::to_string(owned_.size()));
            if (below(2) == 0) node->contents.resize(born_.at(path).contents.size(), '.');
            if (below(2) == 0) node->modified = born_.at(path).modified;
            owned_.insert(node->contents);
        }
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
