#include "cloud/cache_file_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "base/files/tool_folder_win.h"
#include "base/handle_win.h"

namespace {

constexpr std::size_t kSizeLimit = 0x200000;

// Puts back what the cache file held before the test, for whoever runs this on a machine in use.
class KeptCacheFile {
  public:
    KeptCacheFile() : before_(ReadCacheFile()) { CreateDirectoryW(toolFolder().c_str(), nullptr); }
    KeptCacheFile(const KeptCacheFile&) = delete;
    KeptCacheFile& operator=(const KeptCacheFile&) = delete;
    ~KeptCacheFile() {
        DeleteFileW(CacheFilePath().c_str());
        if (!before_.empty()) WriteCacheFile(before_);
    }

  private:
    std::string before_;
};

}  // namespace

TEST(CacheFile, GivesBackTheBytesBelowTheLimit) {
    const KeptCacheFile kept;
    for (const std::string& body :
         {std::string(kSizeLimit - 1, 'x'), std::string("\0\r\n\xFF", 4)}) {
        ASSERT_TRUE(WriteCacheFile(body));
        EXPECT_TRUE(ReadCacheFile() == body) << body.size();
    }
    {
        const FileHandle reader(CreateFileW(CacheFilePath().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_FALSE(WriteCacheFile("while somebody reads"));
        EXPECT_EQ(ReadCacheFile().size(), 4U);
    }
    for (const std::size_t size : {std::size_t{0}, kSizeLimit}) {
        ASSERT_TRUE(WriteCacheFile(std::string(size, 'x')));
        EXPECT_EQ(ReadCacheFile(), "") << size;
    }
    DeleteFileW(CacheFilePath().c_str());
    EXPECT_EQ(ReadCacheFile(), "");
}
