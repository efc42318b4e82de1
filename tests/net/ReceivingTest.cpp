// The receiving side as another computer sees it.
#include "tests/net/NetworkTest.h"

namespace {

using namespace std::chrono_literals;

const std::string kGreeting = "OK Kivora 1.6.1 PROTOCOL_VERSION 1.0.0 READY";

class Receiving : public NetworkTest {
  protected:
    Receiving() { Open(); }

    bool SessionsEnd() {
        return RunUntil([&] { return network->CountSessions() == 0; });
    }

    // The other side of a connection that the socket gets.
    static RawConnection PeerOf(TcpSocket& socket) {
        int error = 0;
        const SocketCalls::Handle listener = SocketCalls::Listen(0, error);
        RawConnection peer = RawConnection::To(SocketCalls::LocalPort(listener));
        socket.Accept(SocketCalls::Accept(listener).handle);
        SocketCalls::Close(listener);
        return peer;
    }

    // As many connections as a computer may have.
    std::vector<RawConnection> All() const {
        std::vector<RawConnection> connections;
        while (connections.size() < kMostOfOneAddress) {
            connections.push_back(RawConnection::To(network->LocalPort()));
            EXPECT_EQ(connections.back().Line(), kGreeting);
        }
        return connections;
    }
};

TEST_F(Receiving, ANoteIsShownAndSaved) {
    Talk([&](RawConnection& connection) {
        EXPECT_EQ(connection.Line(), kGreeting);
        // Byte by byte; other tests send several commands in one piece.
        for (const std::string command : {"NOTE_NEW", "NOTE_TEXT Einkaufen", "NOTE_TEXT Milch, Brot",
                                          "NOTE_COLOR 16776960", "NOTE_FINISHED", "QUIT"}) {
            for (const char byte : command) connection.Send(std::string(1, byte));
            EXPECT_EQ(connection.Ask(""), "OK") << command;
        }
        EXPECT_EQ(connection.Rest(), "");
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    const frmNote& note = *store.Notes()[0];
    EXPECT_EQ(note.Text(), L"Einkaufen\r\nMilch, Brot");
    EXPECT_EQ(note.Content().look, NoteLook{.color = kLightBlue});
    EXPECT_TRUE(note.IsShown());
    EXPECT_NE(note.CreationTime().find(L", "), std::wstring::npos);
    EXPECT_EQ(ReadStoredImage().notes.at(0).note, note.Content());
    EXPECT_TRUE(SessionsEnd());
    EXPECT_TRUE(messages.empty());
}

TEST_F(Receiving, WhatIsSaidAtOnceIsDoneAndAnsweredUpToQuit) {
    Talk([&](RawConnection& connection) {
        connection.Send("UNSINN\r\nQUIT\r\nNOTE_NEW\r\nNOTE_TEXT danach\r\nNOTE_FINISHED\r\nUNSINN\r\n");
        connection.EndSending();
        EXPECT_EQ(connection.Rest(), kGreeting + "\r\nERROR Unknown command: UNSINN\r\nOK\r\n");
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(store.Notes()[0]->Text(), L"danach");
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, WhoHasSaidAllMayTakeTheAnswersSlowly) {
    std::string text;
    while (text.size() < 16'000'000) text += std::to_string(text.size()) + ' ';
    for (const std::size_t piece : {10'000u, 16'000'000u}) {
        struct : SocketEvents {
            void Socket_DataArrival(std::int32_t) override { ++arrivals; }
            void Socket_SendComplete() override { ++completed; }
            void Socket_Close() override { closed = true; }
            std::size_t arrivals = 0, completed = 0;
            bool closed = false;
        } told;
        TcpSocket socket(told);
        RawConnection peer = PeerOf(socket);
        std::size_t sent = 0;
        for (; !socket.SendPending(); sent += piece) socket.SendData(text.substr(sent, piece));
        peer.Send("x");
        peer.EndSending();
        for (int i = 0; i < 2; ++i) socket.LookForAMoment();
        EXPECT_LE(told.arrivals, piece == sent ? 0u : 1u) << "while so much is unsent";
        std::string taken;
        Meanwhile([&] { taken = peer.Rest(); });
        EXPECT_TRUE(taken == text.substr(0, sent));
        EXPECT_TRUE(RunUntil([&] { return told.closed; }));
        EXPECT_EQ(told.completed, sent / piece);
        EXPECT_EQ(told.arrivals, 1u);
    }
}

TEST_F(Receiving, WhoHasQuitGetsTheAnswersIfHeTakesThem) {
    for (const bool takes : {false, true}) {
        clsIncoming session(
            {}, takes ? kForever : 20ms, [] {}, {}, [](std::size_t, bool) {});
        RawConnection peer = PeerOf(session.Socket);
        std::size_t sent = 0, taken = 0;
        for (; !session.Socket.SendPending(); sent += 10'000)
            session.Socket.SendData(std::string(10'000, 'x'));
        peer.Send("QUIT\r\n");
        session.Socket.LookForAMoment();
        if (takes) Meanwhile([&] { taken = peer.Rest().size(); });
        EXPECT_TRUE(RunUntil([&] { return session.Socket.State() == TcpSocket::Closed; }));
        EXPECT_EQ(taken, takes ? sent + 4 : 0);
    }
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

// Until it is decided, a connection waits without a word; what changes ends connections that stand.
TEST_F(Receiving, WhoMayConnectIsSaidLaterAndAgain) {
    NetworkAccess::Answer decide;
    network->MayConnect = [&](const std::string& address, NetworkAccess::Answer answer) {
        EXPECT_EQ(address, "127.0.0.1");
        decide = std::move(answer);
    };
    const auto connect = [&] {
        decide = nullptr;
        std::optional<RawConnection> connection;
        Meanwhile([&] { connection.emplace(RawConnection::To(network->LocalPort())); });
        EXPECT_TRUE(RunUntil([&] { return static_cast<bool>(decide); }));
        return connection;
    };
    for (std::size_t i = 0; i < kMostOfOneAddress; ++i) {
        auto refused = connect();
        decide(false);
        Meanwhile([&] { EXPECT_EQ(refused->Rest(), ""); });
    }

    auto first = connect();
    Meanwhile([&] {
        first->Send("NOTE_NEW\r\n");
        EXPECT_EQ(first->Line(100ms), "<nothing>");
    });
    decide(true);
    Meanwhile([&] {
        EXPECT_EQ(first->Line(), kGreeting);
        EXPECT_EQ(first->Line(), "OK");
    });
    network->AskAgain();
    decide(true);
    Meanwhile([&] { EXPECT_EQ(first->Ask("NOTE_TEXT noch da"), "OK"); });
    network->AskAgain();
    decide(false);
    Meanwhile([&] { EXPECT_EQ(first->Rest(), ""); });

    auto second = connect();
    decide(true);
    network->AskAgain();
    const NetworkAccess::Answer late = decide;
    auto third = connect();
    network->ListensAtAll(false);
    Meanwhile([&] {
        EXPECT_EQ(second->Rest(), kGreeting + "\r\n");
        EXPECT_EQ(third->Rest(), "");
    });
    late(false);
    decide(true);
    EXPECT_EQ(network->CountSessions(), 0u);
    EXPECT_FALSE(network->Listen());
    network->ListensAtAll(true);
    EXPECT_TRUE(network->Listen());
}

TEST_F(Receiving, NoMoreThan16ConnectionsOfAComputer) {
    std::vector<RawConnection> connections;
    Meanwhile([&] {
        connections = All();
        EXPECT_EQ(RawConnection::To(network->LocalPort()).Rest(), "");
        EXPECT_EQ(RawConnection::To(network->LocalPort(), 2).Line(), kGreeting);
    });
    connections.pop_back();
    EXPECT_TRUE(RunUntil([&] { return network->CountSessions() == 15; }));
    Talk([](RawConnection& connection) { EXPECT_EQ(connection.Line(), kGreeting); });
}

// However much he says, if it is no whole line.
TEST_F(Receiving, WhoHasBeenSilentLongestGivesWay) {
    Open(0, kForever, 0s);
    Meanwhile([&] {
        std::vector<RawConnection> connections = All();
        connections[0].Send("NOTE");
        EXPECT_EQ(connections[1].Ask("NOTE_NEW"), "OK");
        EXPECT_EQ(RawConnection::To(network->LocalPort()).Line(), kGreeting);
        EXPECT_EQ(connections[0].Rest(), "");
    });
}

// Lines without an end, each nearly as long as may be, of which all together are too much.
TEST_F(Receiving, WhoHoldsMostIsClosedWhenAllHoldTooMuch) {
    const std::string line(kLongestLine, 'x');
    Meanwhile([&] {
        std::vector<RawConnection> connections;
        for (unsigned i = 0; i < 160; ++i) {
            connections.push_back(RawConnection::To(network->LocalPort(), 1 + i / 16));
            EXPECT_EQ(connections.back().Line(), kGreeting);
            connections.back().Send(line);
        }
        RawConnection other = RawConnection::To(network->LocalPort(), 20);
        EXPECT_EQ(other.Line(), kGreeting);
        for (RawConnection& connection : connections) connection.Send(" ");
        EXPECT_EQ(other.Ask("NOTE_NEW"), "OK");
    });
    EXPECT_TRUE(SessionsEnd());
}

TEST_F(Receiving, AFloodIsRefusedUntilTheUserHasAnswered) {
    std::vector<std::string> floods;
    network->OnFlood = [&](const FloodGuard::Flood& flood) { floods.push_back(flood.address); };
    std::vector<Note> bin;
    store.OnDeleteFlood = [&](const std::vector<Note>& notes) { return bin = notes, KeepResult(); };
    const auto send = [&] {
        std::string answer;
        Talk([&](RawConnection& connection) {
            connection.Send("NOTE_NEW\r\nNOTE_TEXT x\r\nNOTE_FINISHED\r\n");
            for (int i = 0; i < 4; ++i) answer = connection.Line();
        });
        return answer;
    };
    EXPECT_EQ(send(), "OK");
    // As if many had come before.
    store.AddNote({.text = L"eigene"});
    frmNote& note = *store.Notes()[0];
    EXPECT_TRUE(note.Untouched());
    note.Hide();
    note.Text(std::wstring(kMostUntouchedCharacters, L'x'));
    EXPECT_FALSE(note.Untouched());
    note.Untouched(true);
    const std::string refusal =
        "ERROR Error during command execution: [70] Too many notes. They are refused for now. Offending "
        "command: NOTE_FINISHED";
    EXPECT_EQ(send(), refusal);
    EXPECT_EQ(send(), refusal);
    EXPECT_EQ(floods, std::vector<std::string>{""});
    EXPECT_TRUE(network->AnswerFlood(FloodGuard::Answer::Deleted).Kept());
    EXPECT_EQ(bin.size(), 1u);
    EXPECT_EQ(send(), "OK");
    ASSERT_EQ(store.CountNotes(), 2u);
    EXPECT_EQ(store.Notes()[0]->Text(), L"eigene");
    EXPECT_EQ(ReadStoredImage().notes.size(), 2u);
}

TEST_F(Receiving, LongTextsAreKeptElsewhereTooOrTheSenderIsTold) {
    std::vector<std::size_t> kept;
    store.OnLongText = [&](const Note& note) -> KeepResult {
        kept.push_back(note.text.size());
        return note.text.size() == 4096 ? KeepResult() : KeepResult{KeepFailure::DiskFull, "Platte voll"};
    };
    Talk([&](RawConnection& connection) {
        connection.Line();
        for (const int length : {4095, 4096, 4097}) {
            connection.Ask("NOTE_NEW");
            connection.Ask(std::string("NOTE_TEXT ").append(static_cast<std::size_t>(length), 'x'));
            const std::string ok = "OK", failure =
                                             "ERROR Error during command execution: [51] Platte voll. "
                                             "Offending command: NOTE_FINISHED";
            // What stands behind a failure in the buffer is discarded.
            EXPECT_EQ(connection.Ask(length == 4097 ? "NOTE_FINISHED\r\nNOTE_NEW" : "NOTE_FINISHED"),
                      length == 4097 ? failure : ok);
        }
        connection.Send("QUIT\r\n");
        EXPECT_EQ(connection.Rest(), "OK\r\n");
    });
    EXPECT_EQ(store.CountNotes(), 2u);
    EXPECT_EQ(kept, (std::vector<std::size_t>{4096, 4097}));
}

// Everything is there before the first of it is read, and takes far more than a turn of the sockets. In
// between the window has its own events.
TEST_F(Receiving, ACrowdKeepsNobodyWaiting) {
    std::string bytes;
    while (bytes.size() < 60'000) bytes += " \r\n";
    bytes += "QUIT\r\n";
    std::vector<std::pair<RawConnection, std::size_t>> crowd;
    for (unsigned i = 0; i < 100; ++i) {
        RawConnection connection = RawConnection::To(network->LocalPort(), 1 + i / 16);
        const std::size_t sent = connection.TrySend(bytes);
        crowd.emplace_back(std::move(connection), sent);
    }
    int ticks = 0;
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { ++ticks; });
    timer.Start(1);
    Meanwhile([&] {
        for (auto& [connection, sent] : crowd) {
            connection.Send(bytes.substr(sent));
            EXPECT_EQ(connection.Rest(), kGreeting + "\r\nOK\r\n");
        }
    });
    EXPECT_GE(ticks, 10);
    EXPECT_TRUE(SessionsEnd());
}

}  // namespace
