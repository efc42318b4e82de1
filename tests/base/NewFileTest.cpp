#include <gtest/gtest.h>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "tests/support/Files.h"
#include "tests/support/Support.h"

namespace {

namespace fs = std::filesystem;

class SaveFileTest : public testing::Test {
  protected:
    SaveFileTest() { fs::create_directories(folder_); }
    ~SaveFileTest() override { fs::remove_all(folder_); }

    std::size_t Files() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), {}));
    }

    const fs::path folder_ = SharedDataFolder() / "save file";
};

TEST_F(SaveFileTest, MakesReplacesAndKeepsTheRest) {
    const fs::path file = folder_ / FilePath(L"Käse 📝.kvr");
    const struct {
        std::string bytes;
        Rest rest;
        std::string content;
    } rows[] = {{std::string("12\00034", 5), Rest::Keep, std::string("12\00034", 5)},
                {"abc", Rest::Keep, "abc34"},
                {"", Rest::Keep, "abc34"},
                {"longer than that", Rest::Keep, "longer than that"},
                {"x", Rest::Cut, "x"},
                {std::string(300'000, 'y'), Rest::Cut, std::string(300'000, 'y')},
                {"z", Rest::Keep, "z" + std::string(299'999, 'y')},
                {"", Rest::Cut, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(SaveFile(file, row.bytes, row.rest), std::error_code());
        EXPECT_EQ(Content(file), row.content);
        EXPECT_EQ(Files(), 1u);
    }
}

TEST_F(SaveFileTest, WhatCannotBeWrittenIsLeftAlone) {
    EXPECT_EQ(SaveFile(folder_, "x"), std::errc::is_a_directory);
    EXPECT_EQ(SaveFile(folder_ / "missing" / "a", "x"), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(SaveFile(fs::path(), "x"));
    EXPECT_TRUE(SaveFile(FilePath(FileWithoutRoom()), "x"));
    EXPECT_EQ(Files(), 0u);
}

}  // namespace
