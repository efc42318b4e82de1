// The receiving side as another computer sees it.
#include "base/basText.h"
#include "tests/net/NetworkTest.h"

namespace {

using namespace std::chrono_literals;

const std::string kGreeting = "OK Kivora 1.6.1 PROTOCOL_VERSION 1.0.0 READY";

class Receiving : public NetworkTest {
  protected:
    Receiving() { Open(); }

    bool SessionsEnd() {
        return RunUntil([&] { return network->CountSessions() == 0 && network->CountSockets() == 1; });
    }
};

TEST_F(Receiving, ANoteIsShownAndSaved) {
    Talk([&](RawConnection& connection) {
        EXPECT_EQ(connection.Line(), kGreeting);
        // Byte by byte; other tests send several commands in one piece.
        for (const std::string command : {"NOTE_NEW", "NOTE_TEXT Einkaufen", "NOTE_TEXT Milch, Brot",
                                          "NOTE_FONT_SIZE 10", "NOTE_FINISHED", "QUIT"}) {
            for (const char byte : command) connection.Send({byte});
            EXPECT_EQ(connection.Ask(""), "OK") << command;
        }
        EXPECT_EQ(connection.Rest(), "");
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    const frmNote& note = *store.Notes()[0];
    EXPECT_EQ(note.Text(), L"Einkaufen\r\nMilch, Brot");
    EXPECT_EQ(note.FontNoteSize(), 10);
    EXPECT_TRUE(note.IsShown());
    EXPECT_FALSE(note.Foreground());
    EXPECT_NE(note.CreationTime().find(L", "), std::wstring::npos);
    EXPECT_EQ(AsText(Registry().GetValue(std::wstring(kSettingsKey) + L"Note0\\Text", REG_TYPE_SZ)),
              L"Einkaufen\r\nMilch, Brot");
    EXPECT_TRUE(SessionsEnd());
    EXPECT_TRUE(messages.empty());
}

TEST_F(Receiving, LinesBehindQuitWorkUnanswered) {
    Talk([&](RawConnection& connection) {
        connection.Line();
        connection.Send("QUIT\r\nNOTE_NEW\r\nNOTE_TEXT danach\r\nNOTE_FINISHED\r\nUNSINN\r\n");
        EXPECT_EQ(connection.Rest(), "OK\r\n");
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(store.Notes()[0]->Text(), L"danach");
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, AnswersReachAPeerThatHasStoppedSending) {
    Talk([&](RawConnection& connection) {
        connection.Send("NOTE_NEW\r\nNOTE_ABORT\r\n");
        connection.EndSending();
        EXPECT_EQ(connection.Rest(), kGreeting + "\r\nOK\r\nERROR Unknown command: NOTE_ABORT\r\n");
    });
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, ABrokenConnectionLeavesNothing) {
    const std::string commands = "NOTE_NEW\r\nNOTE_TEXT halb\r\nNOTE_COLOR 255\r\nNOTE_FINISHED";
    const int handles = CountHandles();
    for (const bool reset : {false, true}) {
        for (std::size_t length = 0; length <= commands.size(); length += 5) {
            Talk([&](RawConnection& connection) {
                connection.Send(commands.substr(0, length));
                if (length % 2) connection.Line();
                if (reset) connection.Reset();
            });
        }
    }
    EXPECT_TRUE(SessionsEnd());
    EXPECT_EQ(store.CountNotes(), 0u);
    EXPECT_EQ(CountHandles(), handles);
}

TEST_F(Receiving, SessionsBuildTheirNotesIndependently) {
    Meanwhile([&] {
        std::vector<RawConnection> connections;
        for (int i = 0; i < 20; ++i) connections.push_back(RawConnection::To(network->LocalPort()));
        for (RawConnection& connection : connections) EXPECT_EQ(connection.Line(), kGreeting);
        for (const std::string command : {"NOTE_NEW", "NOTE_TEXT", "NOTE_TEXT", "NOTE_FINISHED", "QUIT"}) {
            int number = 0;
            for (RawConnection& connection : connections) {
                const std::string parameter = command == "NOTE_TEXT" ? " " + std::to_string(number) : "";
                EXPECT_EQ(connection.Ask(command + parameter), "OK");
                ++number;
            }
        }
    });
    ASSERT_EQ(store.CountNotes(), 20u);
    for (int i = 0; i < 20; ++i) {
        const std::wstring number = std::to_wstring(i);
        EXPECT_EQ(store.Notes()[static_cast<std::size_t>(i)]->Text(), number + L"\r\n" + number);
    }
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, NoMoreThan256AtATime) {
    Meanwhile([&] {
        std::vector<RawConnection> connections;
        for (int i = 0; i < 256; ++i) {
            connections.push_back(RawConnection::To(network->LocalPort()));
            ASSERT_EQ(connections.back().Line(), kGreeting) << i;
        }
        EXPECT_EQ(RawConnection::To(network->LocalPort()).Rest(), "");
        connections.pop_back();
        std::string line;
        // Until the program has noticed.
        const auto end = std::chrono::steady_clock::now() + 5s;
        while (line != kGreeting && std::chrono::steady_clock::now() < end)
            line = RawConnection::To(network->LocalPort()).Line();
        EXPECT_EQ(line, kGreeting);
    });
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, LongTextsAreKeptElsewhereToo) {
    std::vector<std::wstring> kept;
    network->KeepLongNote = [&](const frmNote& note) { kept.push_back(note.Text()); };
    Talk([&](RawConnection& connection) {
        connection.Line();
        for (const int length : {4095, 4096}) {
            connection.Ask("NOTE_NEW");
            connection.Ask(std::string("NOTE_TEXT ").append(static_cast<std::size_t>(length), 'x'));
            EXPECT_EQ(connection.Ask("NOTE_FINISHED"), "OK");
        }
    });
    EXPECT_EQ(store.CountNotes(), 2u);
    EXPECT_EQ(kept, std::vector<std::wstring>{std::wstring(4096, L'x')});
}

TEST_F(Receiving, AFailureIsAnswered) {
    network->KeepLongNote = [&](const frmNote&) { throw std::runtime_error("Platte voll"); };
    Talk([&](RawConnection& connection) {
        connection.Line();
        connection.Ask("NOTE_NEW");
        connection.Ask(std::string("NOTE_TEXT ").append(5000, 'x'));
        // What stands behind it in the buffer is discarded.
        EXPECT_EQ(connection.Ask("NOTE_FINISHED\r\nNOTE_NEW"),
                  "ERROR Error during command execution: [51] Platte voll. Offending command: NOTE_FINISHED");
        connection.Send("QUIT\r\n");
        EXPECT_EQ(connection.Rest(), "OK\r\n");
    });
}

TEST_F(Receiving, ATakenPortIsTriedAgain) {
    NetworkAccess second(store, {network->LocalPort(), 0, 1s});
    EXPECT_FALSE(second.Listen());
    EXPECT_FALSE(second.Listen());
    network->Stop();
    EXPECT_TRUE(second.Listen());
}

// Longest time between two events of the window while connections do their worst. It counts what the program
// does in between, not what it is kept from by others on the machine.
TEST_F(Receiving, ACrowdKeepsNobodyWaiting) {
    double longest = 0, last = 0;
    int ticks = 0;
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        const double now = ThreadSeconds();
        longest = std::max(longest, now - last);
        ++ticks;
        last = now;
    });
    std::atomic<std::size_t> sent = 0;
    Meanwhile([&] {
        std::vector<RawConnection> connections;
        for (int i = 0; i < 200; ++i) connections.push_back(RawConnection::To(network->LocalPort()));
        std::vector<std::string> garbage = {"\r\n\r\nx\r\ny z\r\n", "NOTE_NEW\r\nNOTE_TEXT \xff\r\n",
                                            "NOTE_FONT_SIZE x\r\n"};
        garbage.emplace_back(20'000, 'x');
        garbage.emplace_back(997, '\0');
        wxTheApp->CallAfter([&] {
            last = ThreadSeconds();
            timer.Start(5);
        });
        const auto end = std::chrono::steady_clock::now() + 2s;
        std::size_t turn = 0;
        while (std::chrono::steady_clock::now() < end) {
            for (RawConnection& connection : connections) {
                const std::string& bytes = garbage[turn++ % garbage.size()];
                // Nobody reads the answers for long, so there may be no room any more.
                if (turn % 7 == 0) connection.Line(0ms);
                sent += connection.TrySend(bytes);
            }
        }
        wxTheApp->CallAfter([&] { timer.Stop(); });
    });
    timer.Stop();
    EXPECT_GT(ticks, 20);
    EXPECT_LT(longest, LongestTurn());
    EXPECT_GT(sent, 1'000'000u);
    std::printf("[          ] %zu bytes, %d ticks, longest wait %.1f ms\n", sent.load(), ticks,
                longest * 1000);
    EXPECT_TRUE(SessionsEnd());
    EXPECT_EQ(store.CountNotes(), 0u);
}

}  // namespace
