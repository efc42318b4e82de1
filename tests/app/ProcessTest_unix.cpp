
#include <csignal>

#include "base/DataFolder.h"
#include "registry/RegistryHive.h"
#include "tests/app/ProcessTest.h"
#include "tests/support/Shell_unix.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Nothing can be read or saved meanwhile.
class HiveTakenAway {
  public:
    HiveTakenAway() {
        Hive().Close();
        fs::rename(hive_, away_);
        fs::create_directory(hive_);
    }
    ~HiveTakenAway() {
        fs::remove(hive_);
        fs::rename(away_, hive_);
    }
    HiveTakenAway(const HiveTakenAway&) = delete;
    HiveTakenAway& operator=(const HiveTakenAway&) = delete;

  private:
    const fs::path hive_ = DataFolder() / "registry.sqlite", away_ = TestFolder() / "away";
};

// Into the text of the note at 200, 200.
void ClickNote() {
    ShellOutput("xdotool mousemove --sync 260 280 click 1");
    EXPECT_TRUE(Eventually([] { return ShellOutput("xdotool getwindowfocus getwindowname") == "Kivora"; }));
}

// By these keys from the menu of the note that was clicked.
void ChooseFromNote(const std::string& keys) {
    const std::size_t windows = Windows().size();
    ShellOutput("xdotool key shift+F10");
    ASSERT_TRUE(Eventually([&] { return Windows().size() > windows; }));
    ShellOutput("xdotool key " + keys);
}

TEST_F(ProcessTest, SaysWhyItDoesNotStart) {
    const struct {
        std::vector<std::string> arguments;
        int result;
        const char* errors;
    } rows[] = {
        {{"--gibt-es-nicht"}, 2, "unbekannte Option --gibt-es-nicht"},
        {{}, 1, "Bildschirm"},
        {{"a.kvr"}, 1, "Bildschirm"},
        {{"[print]"}, 1, "Bildschirm"},
    };
    for (const auto& row : rows) {
        const std::string name = testing::PrintToString(row.arguments);
        Process program(row.arguments, false);
        EXPECT_EQ(program.Wait(), row.result) << name;
        EXPECT_EQ(program.Output(), "") << name;
        EXPECT_NE(program.Errors().find(row.errors), std::string::npos) << name << program.Errors();
    }
}

TEST_F(ProcessTest, EndingLosesNothingWheneverASignalComes) {
    Import(L"eins");
    for (const auto delay : {20ms, 60ms, 100ms, 140ms, 180ms, 240ms, 300ms, 360ms, 420ms, 500ms}) {
        Process program({});
        std::this_thread::sleep_for(delay);
        program.AskToEnd();
        EXPECT_TRUE(program.Wait()) << delay.count();
        EXPECT_EQ(SavedTexts(), Texts{L"eins"}) << delay.count();
    }
    for (const int signal : {SIGINT, SIGHUP}) {
        Process program({});
        WaitUntilShown(2);
        program.Signal(signal);
        EXPECT_EQ(program.Wait(), 0) << signal;
        EXPECT_EQ(SavedTexts(), Texts{L"eins"});
    }
}

// From the shell's standard input and folder, to a copy that is there only then.
TEST_F(ProcessTest, AShellCommandsACopyThatItStarts) {
    Import(L"eins");
    const std::string kivora = "'" KIVORA_PROGRAM "' ";
    ShellOutput("printf 'zwei\\n' | " + kivora + "--new -");
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"zwei"}));
    ShellOutput("cd \"$TMPDIR\" && " + kivora + "--export alle.kvr");
    EXPECT_TRUE(fs::exists(TestFolder() / "tmp" / "alle.kvr"));
    WaitUntilShown(3);
    ClickNote();
    ChooseFromNote("Up Return");  // its last item
    EXPECT_TRUE(Eventually([] { return Windows().empty(); }));
}

// The desktop knows the type of export files and the program for it as soon as the program has run once.
TEST_F(ProcessTest, TheDesktopOpensExportFiles) {
    Process program({});
    WaitUntilShown(1);
    ASSERT_TRUE(Eventually(
        [] { return ShellOutput("xdg-mime query default application/x-kivora") == "kivora.desktop"; }));
    EXPECT_EQ(ShellOutput("desktop-file-validate \"$XDG_DATA_HOME\"/applications/*.desktop 2>&1"), "");
    const std::string file = File("Eigene Notizen ü.kvr", L"vom Desktop");
    EXPECT_EQ(ShellOutput("xdg-mime query filetype '" + file + "'"), "application/x-kivora");
    ShellOutput("env -u XDG_CURRENT_DESKTOP -u DESKTOP_SESSION xdg-open '" + file + "' 2>&1");
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"vom Desktop"}; }));
    EXPECT_FALSE(program.Ended());
}

// Nothing can be read or saved for now, and nobody can be asked when the session ends.
TEST_F(ProcessTest, AnImportSaysThatItsNotesAreNotSaved) {
    const HiveTakenAway away;
    Process import({File("1.kvr", L"eins")});
    for (const char* title : {"Notizen nicht lesbar", "Fehler beim Importieren"}) {
        const std::string message = WaitForWindow(title);
        EXPECT_FALSE(message.empty()) << title;
        Press(message, "Return");
    }
    EXPECT_EQ(import.Wait(), 1);
}

// From whom is a setting, which cannot be read before.
TEST_F(ProcessTest, NotesAreReceivedAsSoonAsTheSettingsCanBeRead) {
    std::optional<HiveTakenAway> away(std::in_place);
    const Process program({});
    EXPECT_FALSE(WaitForWindow("Notizen nicht lesbar").empty());
    const auto listens = [] { return ShellOutput("bash -c ': </dev/tcp/127.0.0.1/5998' 2>&1").empty(); };
    EXPECT_FALSE(listens());
    away.reset();
    EXPECT_TRUE(Eventually(listens));
}

TEST_F(ProcessTest, UnsavedNotesOutliveTheDisplay) {
    {
        Process program({});
        WaitUntilShown(1);
        const HiveTakenAway away;
        EXPECT_EQ(Process({File("1.kvr", L"eins")}).Wait(), 0);
        ShellOutput("xdotool windowkill " + WaitForWindow("Nicht gespeichert"));
        EXPECT_EQ(program.Wait(), 1);
    }
    const Process next({});
    EXPECT_FALSE(WaitForWindow("Notizen übernommen").empty());
    EXPECT_EQ(SavedTexts(), Texts{L"eins"});
}

// Whatever the umask lets others do with new files.
TEST_F(ProcessTest, NoFileOfTheProgramsCanBeWrittenByOthers) {
    const auto start = [](std::vector<std::string> arguments) {
        const mode_t before = umask(0);
        auto program = std::make_unique<Process>(std::move(arguments));
        umask(before);
        return program;
    };
    const fs::path data = std::getenv("XDG_DATA_HOME"), config = std::getenv("XDG_CONFIG_HOME");
    const fs::path hive = DataFolder() / "registry.sqlite", exported = TestFolder() / "hinaus.kvr";
    const fs::path autostart = config / "autostart" / "kivora.desktop";
    Hive().Close();
    for (const fs::path& folder : {data, config})  // with nothing that an earlier start has made
        for (const auto& each : fs::directory_iterator(folder)) fs::remove_all(each);
    {
        const auto program = start({});
        WaitUntilShown(1);
        EXPECT_EQ(
            start({"--import", File("1.kvr", L"eins"), File("2.kvr", std::wstring(5000, L'x'))})->Wait(), 0);
        EXPECT_EQ(start({"--export", exported})->Wait(), 0);
        WaitUntilShown(3);
        ClickNote();
        ChooseFromNote("Up Up Up Up Return");
        EXPECT_TRUE(Eventually([&] { return fs::exists(autostart); }));
        ChooseFromNote("Down Down Return");
        EXPECT_TRUE(Eventually([&] { return fs::exists(DataFolder() / "papierkorb"); }));
        program->AskToEnd();
        EXPECT_EQ(program->Wait(), 0);
    }
    {
        const HiveTakenAway away;
        const auto import = start({File("3.kvr", L"drei")});
        EXPECT_FALSE(WaitForWindow("Notizen nicht lesbar").empty());
        import->AskToEnd();
        EXPECT_EQ(import->Wait(), 1);
    }
    const fs::path emergency = TestFolder() / "tmp" / ("kivora-" + std::to_string(geteuid()));
    for (const fs::path& path :
         {hive, fs::path(hive) += ".stand", DataFolder() / "papierkorb", DataFolder() / "lange-notizen",
          exported, autostart, emergency, data / "applications" / "kivora.desktop",
          data / "mime" / "packages" / "kivora.xml"})
        EXPECT_TRUE(fs::exists(path)) << path;
    EXPECT_FALSE(fs::is_empty(emergency));
    for (const auto& file : fs::recursive_directory_iterator(TestFolder())) {
        const fs::perms rights = file.symlink_status().permissions();
        const bool link = file.is_symlink();
        EXPECT_TRUE(link || (rights & (fs::perms::group_write | fs::perms::others_write)) == fs::perms::none)
            << file.path();
    }
    // What was not saved comes back with the next start.
    Process next({});
    EXPECT_FALSE(WaitForWindow("Notizen übernommen").empty());
    const Texts saved = SavedTexts();
    EXPECT_NE(std::ranges::find(saved, L"drei"), saved.end());
    EXPECT_TRUE(fs::is_empty(emergency));
}

// An installed program has an entry of its own; one that another copy left for the user would hide that.
TEST_F(ProcessTest, AnInstalledProgramLeavesNoEntryOfItsOwn) {
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
    {
        Process installed({});
        EXPECT_TRUE(Eventually([&] { return !fs::exists(entry); }));
        installed.Signal(SIGTERM);
        EXPECT_EQ(installed.Wait(), 0);
        EXPECT_FALSE(fs::exists(entry));
    }

    // What the user has made of the installed one is his.
    std::ofstream(entry) << "[Desktop Entry]\nName=Zettel\nTryExec=kivora\nExec=kivora %F\n";
    Process installed({});
    WaitUntilShown(1);
    installed.Signal(SIGTERM);
    EXPECT_EQ(installed.Wait(), 0);
    unsetenv("XDG_DATA_DIRS");
    EXPECT_TRUE(fs::exists(entry));
}

}  // namespace

int ServeOtherwise(int, char**) { return -1; }
