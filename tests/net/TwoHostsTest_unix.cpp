// Two copies of the built program on two hosts, which are network namespaces of this machine joined by a
// cable. Notes go both ways through the real dialogs. Needs a display and the right to make such hosts.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "tests/app/Process.h"
#include "tests/app/Shell_unix.h"
#include "tests/net/RawPeer.h"
#include "tests/support/Support.h"

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

// A host with its own user's folders and at most one copy of the program.
class Host {
  public:
    Host(const fs::path& root, std::string name) : name_(std::move(name)), root_(root / name_) {
        for (const char* folder : {"data", "run", "config"}) {
            fs::create_directories(root_ / folder);
            fs::permissions(root_ / folder, fs::perms::owner_all);
        }
        if (unshare(CLONE_NEWNET) == 0) {
            handle_ = open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
            Run("ip link set lo up");
        }
    }
    ~Host() {
        program_.reset();
        if (handle_ >= 0) close(handle_);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    bool Exists() const { return handle_ >= 0; }
    // As a command that moves a cable's end here knows it.
    std::string Place() const {
        return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(handle_);
    }

    // From now on this test acts on this host.
    void Enter() const {
        ASSERT_EQ(setns(handle_, CLONE_NEWNET), 0);
        setenv("XDG_DATA_HOME", (root_ / "data").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (root_ / "run").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (root_ / "config").c_str(), 1);
    }

    std::string Run(const std::string& command) const { return ShellOutput(command + " 2>&1"); }

    void Plug(const std::string& cable, const std::string& address) const {
        Enter();
        EXPECT_EQ(Run("ip address add " + address + "/24 dev " + cable), "");
        EXPECT_EQ(Run("ip link set " + cable + " up"), "");
    }

    void Start() {
        Enter();
        program_ = std::make_unique<Process>(std::vector<std::string>{});
        EXPECT_TRUE(Eventually(Listens)) << name_ << ' ' << program_->Errors();
    }

    // What is saved of a note, one value a line.
    std::string Saved(int note) const {
        return ShellOutput(
            "sqlite3 '" + (root_ / "data" / "kivora" / "registry.sqlite").string() +
            "' \"SELECT name || '=' || data FROM registry WHERE path LIKE '%\\Note" + std::to_string(note) +
            "' AND name IN ('Text','Color','FontSize','FontBold','FontItalic','FontUnderlined',"
            "'FontAlignment') ORDER BY name\" 2>&1");
    }

  private:
    static bool Listens() {
        try {
            return RawConnection::To(5998).Line().starts_with("OK ");
        } catch (const std::exception&) {
            return false;
        }
    }

    std::string name_;
    fs::path root_;
    int handle_ = -1;
    std::unique_ptr<Process> program_;
};

// Sends all notes of the program whose note is shown in this window.
void SendThroughTheDialogs(const std::string& noteWindow, const std::string& recipient) {
    ShellOutput(
        "xdotool windowraise " + noteWindow + " sleep 0.3 mousemove --window " + noteWindow +
        " 40 30 click 3 sleep 0.7 key Up Up Up Up Up sleep 0.2 key Right sleep 0.5 key Down Down Down "
        "sleep 0.2 key Return");
    const std::string dialog = WaitForWindow("Notizen im Netzwerk versenden");
    ASSERT_FALSE(dialog.empty());
    ShellOutput("xdotool windowactivate --sync " + dialog + " sleep 0.3 type " + recipient);
    ShellOutput("xdotool sleep 0.2 key Return");
}

std::vector<std::string> NewWindows(const std::vector<std::string>& before) {
    std::vector<std::string> windows = Windows();
    std::erase_if(windows, [&](const std::string& window) {
        return std::find(before.begin(), before.end(), window) != before.end() ||
               ShellOutput("xdotool getwindowgeometry " + window).find("Position: 6") == std::string::npos;
    });
    return windows;
}

}  // namespace

TEST(TwoHosts, NotesGoBothWaysWithAllThatTheProtocolCarries) {
    if (ShellOutput("command -v ip && command -v sqlite3").find("sqlite3") == std::string::npos)
        GTEST_SKIP() << "needs ip and sqlite3";
    PrivateFolders folders;
    Host first(folders.Root(), "eins"), second(folders.Root(), "zwei");
    if (!first.Exists() || !second.Exists()) GTEST_SKIP() << "may make no network namespaces here";
    second.Enter();
    const std::string made = second.Run("ip link add kabel1 type veth peer name kabel2");
    if (!made.empty()) GTEST_SKIP() << "may make no cable here: " << made;
    ASSERT_EQ(second.Run("ip link set kabel1 netns " + first.Place()), "");
    first.Plug("kabel1", "10.77.0.1");
    second.Plug("kabel2", "10.77.0.2");

    const std::vector<std::string> none = Windows();
    first.Start();
    {
        RawConnection connection = RawConnection::To(5998);
        connection.Line();
        for (const char* command :
             {"NOTE_NEW", "NOTE_TEXT K\xe4se f\xfcr 3 \x80", "NOTE_TEXT ", "NOTE_TEXT  Schlu\xdf",
              "NOTE_FONT_SIZE 19", "NOTE_FONT_BOLD 1", "NOTE_FONT_ITALIC 1", "NOTE_FONT_UNDERLINED 1",
              "NOTE_FONT_ALIGNMENT 2", "NOTE_COLOR 65280", "NOTE_FINISHED", "QUIT"})
            EXPECT_EQ(connection.Ask(command), "OK") << command;
    }
    const std::string sent = first.Saved(0);
    EXPECT_EQ(sent,
              "Color=65280\nFontAlignment=2\nFontBold=1\nFontItalic=1\nFontSize=19\nFontUnderlined=1\n"
              "Text=Käse für 3 €\r\n\r\n Schluß");
    ASSERT_TRUE(Eventually([&] { return NewWindows(none).size() == 1; }));
    const std::string firstsNote = NewWindows(none)[0];

    second.Start();
    const std::vector<std::string> before = Windows();
    SendThroughTheDialogs(firstsNote, "10.77.0.2");
    EXPECT_TRUE(Eventually([&] { return second.Saved(0) == sent; })) << second.Saved(0);

    ASSERT_TRUE(Eventually([&] { return NewWindows(before).size() == 1; }));
    SendThroughTheDialogs(NewWindows(before)[0], "10.77.0.1");
    // Nothing stays connected: 01 is the state of a connection that stands.
    EXPECT_TRUE(Eventually([] { return ShellOutput("grep -c ' 01 ' /proc/net/tcp") == "0"; }));
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
