#include <gtest/gtest.h>

#include "base/FileName.h"
#include "base/Text.h"

namespace {

TEST(FileName, KeepsEveryByte) {
    const std::string names[] = {
        "/a b/ü€.kvr",  "",           "/cut \xC3",        "/real \xEF\xBF\xBD sign", "\xF0\x9F\x93\x9D.kvr",
        "\xED\xB2\x80", "\xC0\xAF x", "\xF4\x90\x80\x80",
    };
    for (const std::string& name : names) {
        EXPECT_EQ(FilePath(FileName(name)).native(), name) << testing::PrintToString(name);
    }
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte) allBytes += static_cast<char>(byte);
    EXPECT_EQ(FilePath(FileName(allBytes)).native(), allBytes);
    EXPECT_EQ(FilePath(AbsoluteFileName(FileName("\xFF"))), std::filesystem::current_path() / "\xFF");
}

TEST(FileName, IsOrdinaryTextWherePossible) {
    EXPECT_EQ(FileName("/Käse \xF0\x9F\x93\x9D"), L"/Käse 📝");
    EXPECT_EQ(ToUtf8(ShownFileName(FileName("a\xE4z"))), "a\xEF\xBF\xBDz");
}

}  // namespace
