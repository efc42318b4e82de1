#pragma once
// The built program from outside: its processes, its windows and what it leaves behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/FileName.h"
#include "base/Text.h"
#include "model/StoredImage.h"
#include "registry/clsRegistry.h"
#include "tests/app/Process.h"
#include "tests/exchange/SampleNotes.h"

// What a test has started this very program for; negative when it is to run the tests.
int ServeOtherwise(int argc, char** argv);

inline const std::wstring kReceive = L"HKLM\\Software\\Kivora\\Receive";

using Texts = std::vector<std::wstring>;

inline Texts SavedTexts() {
    Texts texts;
    for (const StoredNote& each : ReadStoredImage().notes) texts.push_back(each.note.text);
    return texts;
}

class ProcessTest : public testing::Test {
  protected:
    ProcessTest() { Registry().DeleteKey(kSettingsKey); }

    // An export file with one note.
    std::string File(const std::string& name, const std::wstring& text) {
        const std::filesystem::path path = TestFolder() / FilePath(FromUtf8(name));
        ExportedNote note;
        note.Text = text;
        note.Left = note.Top = 3000;
        note.Width = note.Height = 3000;
        note.Color = 0x00FFFF;
        note.FontNoteSize = 12;
        std::ofstream(path, std::ios::binary) << FileBytes({note});
        return ToUtf8(FileName(path));
    }

    // Puts a first note into the saved ones by way of the program.
    void Import(const std::wstring& text) {
        Process import({File("Eigene Notizen ü.kvr", text)});
        const std::string message = WaitForWindow("Importieren erfolgreich");
        ASSERT_FALSE(message.empty());
        EXPECT_EQ(SavedTexts(), Texts{text});  // what the message says is true already
        Press(message, "Return");
        ASSERT_EQ(import.Wait(), 0);
    }

    // A plain start with that many windows on the screen: the notes and the icon.
    static void WaitUntilShown(std::size_t windows) {
        EXPECT_TRUE(Eventually([&] {
            const std::vector<std::string> shown = Windows();
            return shown.size() >= windows && std::none_of(shown.begin(), shown.end(), IsSplash);
        })) << Windows().size();
    }
};
