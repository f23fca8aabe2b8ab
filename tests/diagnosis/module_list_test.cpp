#include "diagnosis/module_list.h"

#include <gtest/gtest.h>

TEST(ModuleList, NoticesWhatIsGoneNewOrReplacedAtItsBase) {
    const LoadedModule same{0x1000, L"C:\\same.dll", 0x1000, 7, false};
    const LoadedModule plugIn{0x5000, L"C:\\a.cpg", 0x1000, 7, false};
    for (const LoadedModule& other : {LoadedModule{0x9000, L"C:\\a.cpg", 0x1000, 7, false},
                                      LoadedModule{0x5000, L"C:\\b.cpg", 0x1000, 7, false},
                                      LoadedModule{0x5000, L"C:\\a.cpg", 0x2000, 7, false},
                                      LoadedModule{0x5000, L"C:\\a.cpg", 0x1000, 8, false}}) {
        const ModuleChanges changes = CompareModules({same, plugIn}, {other, same});
        EXPECT_EQ(changes.gone, std::vector{plugIn});
        EXPECT_EQ(changes.added, std::vector{other});
    }
    EXPECT_EQ(ModuleAt({same, plugIn}, 0x6000), nullptr);
}
