#include <windows.h>

#include <gtest/gtest.h>

#include "app/Autostart.h"
#include "base/FileName.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"

namespace {

const std::wstring kRun = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring kOwnValue = L"HKCU\\" + kRun + L"\\Kivora", kValueOfAll = L"HKLM\\" + kRun + L"\\Kivora";

// The list of the computer is an administrator's; that of the user is enough.
TEST(Autostart, EntersTheProgramForTheUserToo) {
    NoteRecorder host;
    NoteStore store(host);
    EXPECT_TRUE(SetAutostart(store, true).Kept());
    EXPECT_EQ(AsText(Registry().GetValue(kOwnValue, REG_TYPE_SZ)), L'"' + ProgramPath() + L'"');
    EXPECT_TRUE(SetAutostart(store, false).Kept());
    EXPECT_EQ(AsText(Registry().GetValue(kOwnValue, REG_TYPE_SZ)), L"");
}

TEST(Autostart, TellsWhatWindowsWillDo) {
    EXPECT_FALSE(StartsWithSession(true));
    Registry().SetValue(kValueOfAll, REG_TYPE_SZ, L"x");
    EXPECT_TRUE(StartsWithSession(false));
    Registry().DeleteValue(kValueOfAll);

    EXPECT_TRUE(EnterInSession().Kept());
    EXPECT_TRUE(StartsWithSession(false));
    // As the task manager switches it off.
    const BYTE off[12] = {3};
    const wchar_t* const approved =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
    RegSetKeyValueW(HKEY_CURRENT_USER, approved, L"Kivora", REG_BINARY, off, sizeof off);
    EXPECT_FALSE(StartsWithSession(true));
    EXPECT_TRUE(EnterInSession().Kept());
    EXPECT_TRUE(StartsWithSession(false));
    EXPECT_TRUE(RemoveFromSession().Kept());
}

}  // namespace
