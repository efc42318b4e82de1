// Another process replaces the key and is ended at one of the calls that change something.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "model/StoredImage.h"
#include "registry/RegistryHealth.h"
#include "registry/ReplaceKey.h"
#include "tests/registry/RegistryImage.h"

namespace {

namespace fs = std::filesystem;

const wchar_t* const kCalls = L"KIVORA_TESTS_CALLS";  // after that many the other process ends
constexpr DWORD kEnded = 9;

int callsLeft = 0;

template <int number, class Call>
struct Counted;
template <int number, class Result, class... Parameters>
struct Counted<number, Result WINAPI(Parameters...)> {
    static inline Result(WINAPI* real)(Parameters...) = nullptr;
    static Result WINAPI Call(Parameters... parameters) {
        if (callsLeft-- == 0) TerminateProcess(GetCurrentProcess(), kEnded);
        return real(parameters...);
    }
};

// This program's calls of the function go by way of the counting one from now on.
template <int number, class Call>
void Count(Call* function) {
    using Counting = Counted<number, Call>;
    Counting::real = function;
    auto* const image = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
    const auto* header = reinterpret_cast<IMAGE_DOS_HEADER*>(image);
    const auto& table = reinterpret_cast<IMAGE_NT_HEADERS*>(image + header->e_lfanew)
                            ->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    auto** const imports = reinterpret_cast<Call**>(image + table.VirtualAddress);
    DWORD access = 0;
    VirtualProtect(imports, table.Size, PAGE_READWRITE, &access);
    std::replace(imports, imports + table.Size / sizeof *imports, function, &Counting::Call);
}

KeyContent Notes(int count, const std::wstring& text) {
    KeyContent content{{L"Autostart", count}};
    for (int i = 0; i < count; ++i) {
        content.emplace_back(L"Note" + std::to_wstring(i) + L"\\Text", text);
        content.emplace_back(L"Note" + std::to_wstring(i) + L"\\X", i);
    }
    return content;
}

const KeyContent kOld = Notes(4, L"alt"), kNew = Notes(3, L"neu");

class ReplaceKeyTest : public testing::Test {
  protected:
    ReplaceKeyTest() {
        SetEnvironmentVariableW(L"KIVORA_TESTS_OF", std::to_wstring(GetCurrentProcessId()).c_str());
    }
    ~ReplaceKeyTest() override {
        Registry().DeleteKey(kSettingsKey);
        Registry().DeleteValue(kMark);
        fs::remove_all(file_.parent_path());
    }

    static std::string ImageOf(const KeyContent& content) {
        WriteKey(kSettingsKey, content);
        return ReadImage();
    }

    // The exit code of another process that replaces the old content by the new one.
    static DWORD ReplaceUntil(int calls) {
        SetEnvironmentVariableW(kCalls, std::to_wstring(calls).c_str());
        std::wstring line = L"\"" + ProgramPath() +
                            L"\" --gtest_also_run_disabled_tests "
                            L"--gtest_filter=OtherProcess.DISABLED_ReplacesTheKey";
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                                   nullptr, &start, &process));
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD code = 1;
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return code;
    }

    // As the machine is after an end in the middle of the writing.
    void Interrupt() {
        WriteKey(kSettingsKey, kOld);
        ASSERT_EQ(ReplaceUntil(13), kEnded);
        ASSERT_TRUE(fs::exists(file_));
        ASSERT_NE(Mark(), L"");
    }

    static std::wstring Mark() { return AsText(Registry().GetValue(kMark, REG_TYPE_SZ)); }

    static inline const std::wstring kMark = L"HKLM\\Software\\Kivora\\1.5";
    const std::string new_ = ImageOf(kNew), old_ = ImageOf(kOld);
    const fs::path file_ = DataFolder() / L"registry.journal";
};

}  // namespace

// Run by the tests below, in the process that is ended.
TEST(OtherProcess, DISABLED_ReplacesTheKey) {
    callsLeft = std::stoi(_wgetenv(kCalls));
    Count<0>(RegSetValueExA);
    Count<1>(RegDeleteKeyA);
    Count<2>(RegDeleteValueA);
    Count<3>(WriteFile);
    Count<4>(MoveFileExW);
    Count<5>(DeleteFileW);
    EXPECT_TRUE(ReplaceKey(kSettingsKey, kNew).Kept());
    callsLeft = -1;
}

TEST_F(ReplaceKeyTest, LeavesTheOldOrTheNewContentWhereverItsProcessEnds) {
    int calls = 0, olds = 0, news = 0;
    for (DWORD result = kEnded; result != 0; ++calls) {
        WriteKey(kSettingsKey, kOld);
        result = ReplaceUntil(calls);
        ASSERT_TRUE(result == kEnded || result == 0) << result;
        EXPECT_TRUE(CompleteKey(kSettingsKey).Kept());
        const std::string image = ReadImage();
        (image == old_ ? olds : news) += 1;
        EXPECT_TRUE(image == old_ || image == new_) << "after " << calls << " calls:\n" << image;
        EXPECT_EQ(Mark(), L"");
    }
    EXPECT_GT(calls, 5 + 7 + 4) << "deleted, set, and around them";
    EXPECT_EQ(olds, 3) << "before the journal is written, before it has its name, before the mark is set";
    EXPECT_GT(news, 5 + 7);
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(ReplaceKeyTest, OnlyTheJournalOfTheContentThatIsNotWholeIsTaken) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"somebody else has written all", [&] { Registry().DeleteValue(kMark); }},
        {"somebody else could not end", [&] { Registry().SetValue(kMark, REG_TYPE_SZ, L"another"); }},
        {"the journal is torn", [&] { fs::resize_file(file_, fs::file_size(file_) - 1); }},
        {"the journal has gone", [&] { fs::remove(file_); }},
    };
    for (const auto& [what, meanwhile] : cases) {
        SCOPED_TRACE(what);
        Interrupt();
        meanwhile();
        const std::string before = ReadImage();
        EXPECT_NE(before, new_);
        EXPECT_TRUE(CompleteKey(kSettingsKey).Kept());
        EXPECT_EQ(ReadImage(), before);
        // The next one goes well.
        EXPECT_TRUE(ReplaceKey(kSettingsKey, kNew).Kept());
        EXPECT_EQ(ReadImage(), new_);
        EXPECT_EQ(Mark(), L"");
    }
}

TEST_F(ReplaceKeyTest, WhatCannotBeCompletedForNowIsNotTakenForWhole) {
    Interrupt();
    const HANDLE held =
        CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(ReadStoredImage().notes.empty());
    EXPECT_EQ(HealthOfRegistry().reading.failure, KeepFailure::Locked);
    EXPECT_FALSE(ReadRegistryAgain().Kept());
    EXPECT_FALSE(ReplaceKey(kSettingsKey, kOld).Kept());
    CloseHandle(held);
    EXPECT_TRUE(ReadRegistryAgain().Kept());
    EXPECT_TRUE(HealthOfRegistry().reading.Kept());
    EXPECT_EQ(ReadImage(), new_);
}

TEST_F(ReplaceKeyTest, ANewJournalCompletesWhatAnOlderOneCouldNot) {
    Interrupt();
    ASSERT_EQ(ReplaceUntil(3), kEnded);
    CompleteKey(kSettingsKey);
    EXPECT_EQ(ReadImage(), new_);
}

TEST_F(ReplaceKeyTest, WithoutAJournalNothingIsTouched) {
    fs::create_directories(file_.parent_path().parent_path());
    std::ofstream(file_.parent_path()) << "in the folder's place";
    EXPECT_FALSE(ReplaceKey(kSettingsKey, kNew).Kept());
    EXPECT_EQ(ReadImage(), old_);
}
