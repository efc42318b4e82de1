#include <gtest/gtest.h>

#include "base/FileName.h"

namespace {

TEST(FileName, KeepsEveryName) {
    const std::wstring half(1, wchar_t(0xD83D));  // of a pair: Windows takes it in names
    for (const std::wstring& name : {std::wstring(L"C:\\a b\\ü€.kvr"), std::wstring(L"Käse 📝"), half,
                                     L"x" + half + L".kvr", std::wstring()}) {
        EXPECT_EQ(FileName(FilePath(name)), name);
    }
    EXPECT_EQ(ShownFileName(L"a" + half + L"z"), L"a\uFFFDz");
}

}  // namespace
