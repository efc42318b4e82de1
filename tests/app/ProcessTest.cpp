// The built program from outside: its processes, its windows and what it leaves behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "base/basText.h"
#include "registry/clsRegistry.h"
#include "tests/app/Process.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/support/Support.h"

namespace {

using namespace std::chrono_literals;

const std::wstring kSettings = L"HKLM\\Software\\Kivora\\1.5\\";

std::vector<std::wstring> SavedTexts() {
    std::vector<std::wstring> names, texts;
    Registry().EnumKeys(kSettings, names);
    for (const std::wstring& name : names) {
        if (!name.empty())
            texts.push_back(AsText(Registry().GetValue(kSettings + name + L"\\Text", REG_TYPE_SZ)));
    }
    return texts;
}

using Texts = std::vector<std::wstring>;

void Press(const std::string& window, const std::string& key) {
    ShellOutput("xdotool windowactivate --sync " + window + " key " + key);
}

class ProcessTest : public testing::Test {
  protected:
    ProcessTest() { Registry().DeleteKey(kSettings); }

    // An export file with one note.
    std::string File(const std::string& name, const std::wstring& text) {
        const std::filesystem::path path = std::filesystem::path(std::getenv("XDG_DATA_HOME")) / name;
        ExportedNote note;
        note.Text = text;
        note.Left = note.Top = 3000;
        note.Width = note.Height = 3000;
        note.Color = 0x00FFFF;
        note.FontNoteSize = 12;
        std::ofstream(path, std::ios::binary) << FileBytes({note});
        return path;
    }

    // Puts a note into the saved ones by way of the program.
    void Import(const std::wstring& text) {
        Process import({File("saved.kvr", text)});
        const std::string message = WaitForWindow("Importieren erfolgreich");
        ASSERT_FALSE(message.empty());
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

TEST_F(ProcessTest, AnswersWithoutADisplay) {
    const struct {
        std::vector<std::string> arguments;
        int result;
        const char *output, *errors;
    } rows[] = {
        {{"--help"}, 0, "Aufruf: kivora", ""},
        {{"a.kvr", "-h"}, 0, "Aufruf: kivora", ""},
        {{"--version"}, 0, "Kivora 1.6.1\n", ""},
        {{"--gibt-es-nicht"}, 2, "", "unbekannte Option --gibt-es-nicht"},
        {{}, 1, "", "Bildschirm"},
        {{"a.kvr"}, 1, "", "Bildschirm"},
        {{"[print]"}, 1, "", "Bildschirm"},
    };
    for (const auto& row : rows) {
        const std::string name = testing::PrintToString(row.arguments);
        Process program(row.arguments, false);
        EXPECT_EQ(program.Wait(), row.result) << name;
        EXPECT_EQ(program.Output().find(row.output), 0u) << name << program.Output();
        EXPECT_EQ(program.Output().empty(), *row.output == 0) << name;
        EXPECT_NE(program.Errors().find(row.errors), std::string::npos) << name << program.Errors();
        EXPECT_EQ(program.Errors().empty(), *row.errors == 0) << name << program.Errors();
    }
}

TEST_F(ProcessTest, SecondPlainStartEndsSilently) {
    Process first({});
    WaitUntilShown(1);
    const std::vector<std::string> windows = Windows();
    Process second({});
    EXPECT_EQ(second.Wait(1s), 0);
    EXPECT_EQ(second.Output() + second.Errors(), "");
    EXPECT_EQ(Windows(), windows);
    EXPECT_FALSE(first.Ended());
}

TEST_F(ProcessTest, ImportsFilesWithoutARunningCopy) {
    const std::string good = File("Eigene Notizen ü.kvr", L"Käse & Brot €");
    const std::string missing = good + ".gibt-es-nicht";
    {
        Process import({good, missing});
        std::string message = WaitForWindow("Importieren erfolgreich");
        ASSERT_FALSE(message.empty());
        EXPECT_EQ(SavedTexts(), Texts{L"Käse & Brot €"});  // what the message says is true already
        Press(message, "Return");
        message = WaitForWindow("Fehler beim Importieren");
        ASSERT_FALSE(message.empty());
        Press(message, "Escape");
        EXPECT_EQ(import.Wait(), 0);
    }
    EXPECT_EQ(Windows().size(), 0u);
    EXPECT_EQ(SavedTexts(), Texts{L"Käse & Brot €"});
}

TEST_F(ProcessTest, HandsFilesOverToTheRunningCopy) {
    Import(L"eins");
    Process first({});
    WaitUntilShown(2);
    Process second({File("zwei ü.kvr", L"zwei"), File("drei.kvr", L"drei"), "/gibt/es/nicht"});
    EXPECT_EQ(second.Wait(2s), 0);
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"eins", L"zwei", L"drei"}; }));
    WaitUntilShown(4);
    EXPECT_FALSE(first.Ended());
}

TEST_F(ProcessTest, FilesOpenedTogetherAreAllTakenIn) {
    Process first({File("1.kvr", L"eins")});
    const std::string message = WaitForWindow("Importieren erfolgreich");
    ASSERT_FALSE(message.empty());
    Process second({File("2.kvr", L"zwei")});
    EXPECT_EQ(second.Wait(2s), 0);
    Press(message, "Return");
    std::string other;
    EXPECT_TRUE(Eventually([&] {
        other = WaitForWindow("Importieren erfolgreich", 0ms);
        return !other.empty() && other != message;
    }));
    Press(other, "Return");
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"zwei"}));
}

TEST_F(ProcessTest, SaysThatAStoppedCopyDoesNotAnswer) {
    Process first({});
    WaitUntilShown(1);
    first.Signal(SIGSTOP);
    Process second({File("1.kvr", L"eins")});
    const std::string message = WaitForWindow("Fehler", 7s);
    EXPECT_FALSE(message.empty());
    if (!message.empty()) Press(message, "Return");
    EXPECT_EQ(second.Wait(), 0);
    first.Signal(SIGCONT);
    first.Signal(SIGTERM);
    EXPECT_EQ(first.Wait(), 0);
}

TEST_F(ProcessTest, KilledCopyLeavesItsNotesAndItsPlace) {
    Import(L"eins");
    {
        Process first({});
        WaitUntilShown(2);
        Process second({File("2.kvr", L"zwei")});
        EXPECT_EQ(second.Wait(2s), 0);
        EXPECT_TRUE(Eventually([] { return SavedTexts().size() == 2; }));
        first.Signal(SIGKILL);
        EXPECT_EQ(first.Wait(), -1);
    }
    Process next({});
    WaitUntilShown(3);
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"zwei"}));
}

TEST_F(ProcessTest, EndsInOrderWhenAsked) {
    Import(L"eins");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Process program({});
        WaitUntilShown(2);
        program.Signal(signal);
        EXPECT_EQ(program.Wait(1s), 0) << signal;
        EXPECT_EQ(SavedTexts(), Texts{L"eins"});
    }
}

TEST_F(ProcessTest, EndingWhileItStartsLosesNothing) {
    Import(L"eins");
    for (const auto delay : {20ms, 60ms, 100ms, 140ms, 180ms, 240ms, 300ms, 360ms, 420ms, 500ms}) {
        Process program({});
        std::this_thread::sleep_for(delay);
        program.Signal(SIGTERM);
        EXPECT_TRUE(program.Wait(2s)) << delay.count();
        EXPECT_EQ(SavedTexts(), Texts{L"eins"}) << delay.count();
    }
}

TEST_F(ProcessTest, EndsWithTheMenuOrAMessageOpen) {
    Import(L"eins");
    {
        Process program({});
        WaitUntilShown(2);
        ShellOutput("xdotool mousemove 260 260 click 3");  // on the note
        EXPECT_TRUE(Eventually([] { return Windows().size() > 2; }));
        program.Signal(SIGTERM);
        EXPECT_EQ(program.Wait(1s), 0);
    }
    Process import({File("2.kvr", L"zwei")});
    EXPECT_FALSE(WaitForWindow("Importieren erfolgreich").empty());
    import.Signal(SIGTERM);
    EXPECT_EQ(import.Wait(1s), 0);
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"zwei"}));
}

TEST_F(ProcessTest, KeysReachTheNoteThatWasClicked) {
    Import(L"Taste");
    Process program({});
    WaitUntilShown(2);
    const std::wstring note = kSettings + L"Note0\\";
    const auto saved = [&](const wchar_t* name) {
        return AsNumber(Registry().GetValue(note + name, REG_TYPE_DWORD));
    };
    ASSERT_EQ(saved(L"X"), 3000);
    // Into the text of the note at 200, 200.
    ShellOutput("xdotool mousemove --sync 260 280 click 1");
    EXPECT_TRUE(Eventually([] { return ShellOutput("xdotool getwindowfocus getwindowname") == "Kivora"; }));
    ShellOutput("xdotool key Right");
    EXPECT_TRUE(Eventually([&] { return saved(L"X") == 3150; })) << saved(L"X");

    // The third item of the menu that opens.
    const std::size_t windows = Windows().size();
    ShellOutput("xdotool key shift+F10");
    ASSERT_TRUE(Eventually([&] { return Windows().size() > windows; }));
    ShellOutput("xdotool key Down Down Return");
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{}; }));
    EXPECT_FALSE(program.Ended());
}

TEST_F(ProcessTest, PrintingLeavesTheSavedNotesAlone) {
    Import(L"eins");
    for (const bool signal : {false, true}) {
        Process print({"[print]", File("2.kvr", L"zwei")});
        const std::string dialog = WaitForWindow("Drucken");
        ASSERT_FALSE(dialog.empty());
        if (signal) {
            print.Signal(SIGTERM);
        } else {
            Press(dialog, "Escape");
        }
        EXPECT_EQ(print.Wait(), 0);
        EXPECT_EQ(SavedTexts(), Texts{L"eins"});
    }
}

// The desktop knows the type of export files and the program for it as soon as the program has run once.
TEST_F(ProcessTest, TheDesktopOpensExportFiles) {
    if (ShellOutput("command -v xdg-open && command -v update-mime-database && command -v mimetype").empty())
        GTEST_SKIP() << "xdg-utils, shared-mime-info and libfile-mimeinfo-perl are not there";
    Process program({});
    WaitUntilShown(1);
    ASSERT_TRUE(Eventually(
        [] { return ShellOutput("xdg-mime query default application/x-kivora") == "kivora.desktop"; }));
    EXPECT_EQ(ShellOutput("desktop-file-validate \"$XDG_DATA_HOME/applications/kivora.desktop\" 2>&1"), "");
    const std::string file = File("Eigene Notizen ü.kvr", L"vom Desktop");
    EXPECT_EQ(ShellOutput("xdg-mime query filetype '" + file + "'"), "application/x-kivora");
    ShellOutput("env -u XDG_CURRENT_DESKTOP -u DESKTOP_SESSION xdg-open '" + file + "' 2>&1");
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"vom Desktop"}; }));
    EXPECT_FALSE(program.Ended());
}

// An installed program has an entry of its own; one that another copy left for the user would hide that.
TEST_F(ProcessTest, AnInstalledProgramLeavesNoEntryOfItsOwn) {
    namespace fs = std::filesystem;
    const fs::path entry = fs::path(std::getenv("XDG_DATA_HOME")) / "applications" / "kivora.desktop";
    {
        Process copy({});
        EXPECT_TRUE(Eventually([&] { return fs::exists(entry); }));
    }
    const fs::path prefix = fs::path(std::getenv("XDG_RUNTIME_DIR")) / "prefix";
    for (const char* folder : {"bin", "share/applications", "share/mime/packages"}) {
        fs::create_directories(prefix / folder);
    }
    fs::create_symlink(KIVORA_PROGRAM, prefix / "bin" / "kivora");
    std::ofstream(prefix / "share/applications/kivora.desktop") << "[Desktop Entry]\n";
    std::ofstream(prefix / "share/mime/packages/kivora.xml") << "<mime-info/>\n";
    setenv("XDG_DATA_DIRS", (prefix / "share").c_str(), 1);
    Process installed({});
    unsetenv("XDG_DATA_DIRS");
    EXPECT_TRUE(Eventually([&] { return !fs::exists(entry); }));
    installed.Signal(SIGTERM);
    EXPECT_EQ(installed.Wait(), 0);
    EXPECT_FALSE(fs::exists(entry));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    PrivateFolders folders;
    return RUN_ALL_TESTS();
}
