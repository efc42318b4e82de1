#include <gtest/gtest.h>

#include "app/Autostart.h"
#include "base/FileName.h"
#include "model/StoredImage.h"
#include "notes/NoteStore.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"

namespace {

const wchar_t* const kRunValue = L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora";

TEST(Autostart, EntersAndRemovesTheProgram) {
    NoteRecorder host;
    NoteStore store(host);
    SetAutostart(store, true);
    EXPECT_TRUE(store.AutostartEnabled);
    EXPECT_EQ(AsText(Registry().GetValue(kRunValue, REG_TYPE_SZ)), ProgramPath());
    // The flag itself belongs to the next save.
    EXPECT_EQ(AsNumber(Registry().GetValue(std::wstring(kSettingsKey) + L"Autostart", REG_TYPE_DWORD)), 0);

    SetAutostart(store, false);
    EXPECT_FALSE(store.AutostartEnabled);
    EXPECT_EQ(AsText(Registry().GetValue(kRunValue, REG_TYPE_SZ)), L"");
}

}  // namespace
