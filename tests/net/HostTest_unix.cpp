// The built program on a host that has an address in a network, which is a network namespace of this machine.
// It sends a note to that address through the real dialogs, and receives it. Needs a display and the right to
// make such a host.
#include <gtest/gtest.h>
#include <sched.h>

#include "tests/app/Process.h"
#include "tests/app/Shell_unix.h"
#include "tests/net/RawPeer.h"
#include "tests/support/Support.h"

namespace {

bool Listens() {
    try {
        return RawConnection::To(5998).Line().starts_with("OK ");
    } catch (const std::exception&) {
        return false;
    }
}

// What is saved of a note, one value a line.
std::string Saved(int note) {
    return ShellOutput(
        "sqlite3 \"$XDG_DATA_HOME/kivora/registry.sqlite\" \"SELECT name || '=' || data FROM registry "
        "WHERE path LIKE '%\\Note" +
        std::to_string(note) +
        "' AND name IN ('Text','Color','FontSize','FontBold','FontItalic','FontUnderlined',"
        "'FontAlignment') ORDER BY name\" 2>&1");
}

// Sends the note of the program that is shown in this window.
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

// The window of the note; the others are those of the icon and the picture at the start.
std::string NoteWindow() {
    for (const std::string& window : Windows()) {
        if (ShellOutput("xdotool getwindowgeometry " + window).find("Position: 6") != std::string::npos)
            return window;
    }
    return {};
}

}  // namespace

TEST(Host, ANoteGoesOutAndComesInWithAllThatTheProtocolCarries) {
    if (ShellOutput("command -v ip && command -v sqlite3").find("sqlite3") == std::string::npos)
        GTEST_SKIP() << "needs ip and sqlite3";
    if (unshare(CLONE_NEWNET) != 0) GTEST_SKIP() << "may make no network namespace here";
    EXPECT_EQ(ShellOutput("ip link set lo up 2>&1 && ip address add 10.77.0.1/24 dev lo 2>&1"), "");
    const PrivateFolders folders;
    const Process program({});
    ASSERT_TRUE(Eventually(Listens)) << program.Errors();
    {
        RawConnection connection = RawConnection::To(5998);
        connection.Line();
        for (const char* command :
             {"NOTE_NEW", "NOTE_TEXT K\xe4se f\xfcr 3 \x80", "NOTE_TEXT ", "NOTE_TEXT  Schlu\xdf",
              "NOTE_FONT_SIZE 19", "NOTE_FONT_BOLD 1", "NOTE_FONT_ITALIC 1", "NOTE_FONT_UNDERLINED 1",
              "NOTE_FONT_ALIGNMENT 2", "NOTE_COLOR 65280", "NOTE_FINISHED", "QUIT"})
            EXPECT_EQ(connection.Ask(command), "OK") << command;
    }
    const std::string sent = Saved(0);
    EXPECT_EQ(sent,
              "Color=65280\nFontAlignment=2\nFontBold=1\nFontItalic=1\nFontSize=19\nFontUnderlined=1\n"
              "Text=Käse für 3 €\r\n\r\n Schluß");
    ASSERT_TRUE(Eventually([] { return !NoteWindow().empty(); }));
    SendThroughTheDialogs(NoteWindow(), "10.77.0.1");
    EXPECT_TRUE(Eventually([&] { return Saved(1) == sent; })) << Saved(1);
    // Nothing stays connected: 01 is the state of a connection that stands.
    EXPECT_TRUE(Eventually([] { return ShellOutput("grep -c ' 01 ' /proc/net/tcp") == "0"; }));
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
