// The sending side against a peer that answers in every possible way.
#include <future>

#include "base/Text.h"
#include "net/SendNotes.h"
#include "tests/net/NetworkTest.h"

namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::wstring>;

const std::wstring kNoAnswer =
    L"Fehler beim Versenden der Notiz|16|Der Ziel-Computer antwortet nicht.\r\nDer Ziel-Computer sendete die "
    L"Fehlermeldung: ";

class Sending : public NetworkTest {
  protected:
    // Connects to a server with this dialogue, sends notes of these texts and closes.
    std::shared_ptr<clsOutgoing> SendTo(const std::function<void(RawConnection&)>& dialogue,
                                        const std::vector<std::wstring>& texts,
                                        std::chrono::milliseconds patience = kForever) {
        RawServer server(dialogue);
        Open(server.Port(), patience);
        std::vector<Note> notes(texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i) notes[i].text = texts[i];
        const auto session = network->CreateOutgoing();
        network->Connect(session, L"127.0.0.1");
        version = session->GetRemoteHostProgramVersion();
        session->Send(notes, ShowSendFailure);
        network->Shutdown(session);
        EXPECT_EQ(network->CountSessions(), 0u);
        return session;
    }

    std::wstring version;
};

TEST_F(Sending, RefusalsAreShownAndTheNextNoteIsTried) {
    const std::wstring label = L"\r\nDer Ziel-Computer sendete die Fehlermeldung: ";
    const struct {
        std::string answer;
        std::wstring message;
        std::wstring text = L"abc";
    } rows[] = {
        {"ERROR Invalid parameter: NOTE_COLOR 65535",
         L"Beim Versenden der Notiz \"abc...\" ist ein Fehler aufgetreten." + label +
             L"nvalid parameter: NOTE_COLOR 65535"},
        {"ERROR",
         L"Beim Versenden der Notiz \"1234567890123456789012345...\" ist ein Fehler aufgetreten." + label,
         L"1234567890123456789012345678"},
        {"ERROR ", L"Beim Versenden der Notiz \"abc...\" ist ein Fehler aufgetreten." + label},
        {"NANU was",
         L"Beim Versenden der Notiz \"abc...\" ist ein unerwarteter Fehler aufgetreten." + label + L"as"},
        {"", L"Der Ziel-Computer antwortet nicht." + label},
    };
    for (const auto& row : rows) {
        messages.clear();
        std::vector<std::string> lines;
        const auto session = SendTo(Answering("NOTE_TEXT " + ToAnsi(row.text), row.answer, &lines),
                                    {row.text, L"gut € \u4E2D"});
        EXPECT_EQ(messages, Texts{L"Fehler beim Versenden der Notiz|16|" + row.message}) << row.answer;
        EXPECT_EQ(session->GetNumberSentNotes(), L"1");
        ASSERT_EQ(lines.size(), 12u);
        EXPECT_EQ(lines[2], "NOTE_NEW");
        EXPECT_EQ(lines[3], "NOTE_TEXT gut \x80 ?");
        EXPECT_EQ(lines[11], "QUIT");
    }
}

TEST_F(Sending, APeerThatTalksUnaskedIsNotListenedTo) {
    constexpr int kMegabytes = 64;
    std::atomic<int> taken = -1;
    // A message on the screen gives the peer all the time that it wants.
    SetMessageObserver([&](const std::wstring&, int, const std::wstring&) {
        WaitUntil([&] { return taken >= 0; });
        return MessageAnswer::OK;
    });
    SendTo(
        [&](RawConnection& connection) {
            connection.Send(kReady);
            connection.Line();
            connection.Send("ERROR X\r\n");
            std::string megabyte;
            while (megabyte.size() < 1u << 20) megabyte += "OK\r\n";
            int sent = 0;
            while (sent < kMegabytes && connection.Send(megabyte)) ++sent;
            taken = sent;
            wxTheApp->CallAfter([] { WakeWaits(); });
        },
        {L"a"});
    EXPECT_GE(taken, 0);
    EXPECT_LT(taken, kMegabytes / 2);
}

TEST_F(Sending, APeerThatFallsSilentOrLeaves) {
    const auto silent = [](RawConnection& connection) {
        connection.Send("OK Kivora 1.5\r\n");
        connection.Line();
        connection.Rest();
    };
    EXPECT_EQ(SendTo(silent, {L"a"}, 2s)->GetNumberSentNotes(), L"0");
    EXPECT_EQ(messages, Texts{kNoAnswer});
    EXPECT_EQ(version, L"1.0.0") << "where the greeting names none";

    for (const bool reset : {false, true}) {
        messages.clear();
        // Without waiting for what cannot come.
        SendTo(
            [=](RawConnection& connection) {
                connection.Send(kReady);
                connection.Line();
                if (reset) connection.Reset();
            },
            {L"a", L"b"});
        EXPECT_EQ(messages, (Texts{kNoAnswer, kNoAnswer}));
    }
}

// To one who reads nothing of it.
TEST_F(Sending, CancellingAndAPeerThatLeavesEndALongLine) {
    for (const bool cancelled : {true, false}) {
        std::promise<void> leave;
        RawServer server([&](RawConnection& connection) {
            connection.Send(kReady + "OK\r\n");
            leave.get_future().wait();
        });
        Open(server.Port());
        const auto session = network->CreateOutgoing();
        network->Connect(session, L"127.0.0.1");
        Repeated::Every(10ms, [&] {
            if (!session->Socket.SendPending()) return false;
            cancelled ? session->Abort() : leave.set_value();
            return true;
        });
        session->Send({{.text = std::wstring(8'000'000, L'x')}}, ShowSendFailure);
        EXPECT_EQ(messages.size(), cancelled ? 0u : 1u);
        if (cancelled) leave.set_value();
    }
}

TEST_F(Sending, ConnectingFailsAtOnce) {
    const int handles = CountHandles();
    Open(FreePort());
    for (const wchar_t* host :
         {L"127.0.0.1", L"  localhost ", L"255.255.255.255", L"gibt.es.nicht.invalid", L""}) {
        const auto session = network->CreateOutgoing();
        network->Connect(session, host);
        EXPECT_FALSE(session->IsConnected());
        session->Send({Note()}, ShowSendFailure);
        EXPECT_EQ(session->GetNumberSentNotes(), L"0");
    }
    EXPECT_EQ(network->CountSessions(), 0u);
    EXPECT_LE(CountHandles(), handles + 4);  // the listener, and what the look-up keeps
    EXPECT_TRUE(messages.empty());
}

}  // namespace
