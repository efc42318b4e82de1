// The sending side against a peer that answers in every possible way.
#include "net/basSendNotes.h"
#include "tests/net/NetworkTest.h"

namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::wstring>;

const std::string kReady = "OK Fremd 9.9 PROTOCOL_VERSION 1.0.0 READY\r\n";
const std::wstring kNoAnswer =
    L"Fehler beim Versenden der Notiz|16|Der Ziel-Computer antwortet nicht.\r\nDer Ziel-Computer sendete die "
    L"Fehlermeldung: ";

class Sending : public NetworkTest {
  protected:
    // Connects to a server with this dialogue, sends the notes and closes.
    std::shared_ptr<clsOutgoing> SendTo(const std::function<void(RawConnection&)>& dialogue,
                                        const std::vector<NoteContent>& notes) {
        RawServer server(dialogue);
        Open(server.Port());
        const auto session = network->CreateOutgoing();
        network->Connect(session, L"127.0.0.1");
        version = session->GetRemoteHostProgramVersion();
        session->Send(notes);
        network->Shutdown(session);
        EXPECT_EQ(network->CountSessions(), 0u);
        return session;
    }

    std::wstring version;
};

// Answers every line with what there is for it, OK otherwise, until the other side closes.
std::function<void(RawConnection&)> Answering(const std::string& line, const std::string& answer,
                                              std::vector<std::string>* lines = nullptr) {
    return [=](RawConnection& connection) {
        connection.Send(kReady);
        for (std::string got = connection.Line(); got[0] != '<'; got = connection.Line()) {
            if (lines) lines->push_back(got);
            connection.Send((got == line ? answer : "OK") + "\r\n");
        }
    };
}

TEST_F(Sending, SampleDialogue) {
    std::vector<std::string> lines;
    const auto session =
        SendTo(Answering("", "", &lines), {{L"Einkaufen\r\nMilch, Brot", 10, true, false, false, 0, kYellow},
                                           {L"a\rb\nc\r\r\nd\r\n€ \u4E2D", 25}});
    EXPECT_EQ(lines, (std::vector<std::string>{"NOTE_NEW",
                                               "NOTE_TEXT Einkaufen",
                                               "NOTE_TEXT Milch, Brot",
                                               "NOTE_FONT_SIZE 10",
                                               "NOTE_FONT_BOLD 1",
                                               "NOTE_FONT_ITALIC 0",
                                               "NOTE_FONT_UNDERLINED 0",
                                               "NOTE_FONT_ALIGNMENT 0",
                                               "NOTE_COLOR 65535",
                                               "NOTE_FINISHED",
                                               "NOTE_NEW",
                                               "NOTE_TEXT a\rb\nc\r",
                                               "NOTE_TEXT d",
                                               "NOTE_TEXT \x80 ?",
                                               "NOTE_FONT_SIZE 25",
                                               "NOTE_FONT_BOLD 0",
                                               "NOTE_FONT_ITALIC 0",
                                               "NOTE_FONT_UNDERLINED 0",
                                               "NOTE_FONT_ALIGNMENT 0",
                                               "NOTE_COLOR 65535",
                                               "NOTE_FINISHED",
                                               "QUIT"}));
    EXPECT_EQ(session->GetNumberSentNotes(), L"2");
    EXPECT_EQ(version, L"1.0.0");
    EXPECT_TRUE(messages.empty());
}

TEST_F(Sending, RefusalsAreShownAndTheNextNoteIsTried) {
    const std::wstring label = L"\r\nDer Ziel-Computer sendete die Fehlermeldung: ";
    const struct {
        std::string answer;
        std::wstring message;
        std::wstring text = L"abc";
    } rows[] = {
        {"ERROR Invalid parameter: NOTE_FONT_SIZE 30",
         L"Beim Versenden der Notiz \"abc...\" ist ein Fehler aufgetreten." + label +
             L"nvalid parameter: NOTE_FONT_SIZE 30"},
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
        const auto session =
            SendTo(Answering("NOTE_FONT_SIZE 30", row.answer, &lines), {{row.text, 30}, {L"gut"}});
        EXPECT_EQ(messages, Texts{L"Fehler beim Versenden der Notiz|16|" + row.message}) << row.answer;
        EXPECT_EQ(session->GetNumberSentNotes(), L"1");
        ASSERT_GT(lines.size(), 3u);
        EXPECT_EQ(lines[3], "NOTE_NEW");
    }
}

TEST_F(Sending, ToAnotherVersionNothingIsSentButAllIsCounted) {
    const struct {
        std::string greeting;
        std::wstring version;
    } rows[] = {{"OK X PROTOCOL_VERSION 2.0.0 READY\r\n", L"2.0.0"},
                {"OK PROTOCOL_VERSION 2.0\r\n", L"2.0"},
                {"OK PROTOCOL_VERSION\r\n", L""},
                {"OK PROTOCOL_VERSION  1.0.0\r\n", L""},
                {"ERROR voll\r\n", L""},
                {"", L""}};
    for (const auto& row : rows) {
        std::string got;
        const auto session = SendTo(
            [&](RawConnection& connection) {
                connection.Send(row.greeting);
                got = connection.Rest();
            },
            {{L"a"}, {L"b"}});
        EXPECT_EQ(version, row.version);
        EXPECT_EQ(session->GetNumberSentNotes(), L"2");
        EXPECT_EQ(got, "QUIT\r\n");
    }
    EXPECT_TRUE(messages.empty());
}

TEST_F(Sending, APeerThatTalksUnaskedIsNotListenedTo) {
    constexpr int kMegabytes = 64;
    std::atomic<int> taken = -1;
    // A message on the screen gives the peer all the time that it wants.
    SetMessageObserver([&](const std::wstring&, int, const std::wstring&) {
        WaitUntil([&] { return taken >= 0; }, 10s);
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
        {{L"a"}});
    EXPECT_GE(taken, 0);
    EXPECT_LT(taken, kMegabytes / 2);
}

TEST_F(Sending, APeerThatFallsSilentOrLeaves) {
    const auto silent = [](RawConnection& connection) {
        connection.Send("OK Kivora 1.5\r\n");
        connection.Line();
        connection.Rest(5s);
    };
    EXPECT_EQ(SendTo(silent, {{L"a"}})->GetNumberSentNotes(), L"0");
    EXPECT_EQ(messages, Texts{kNoAnswer});
    EXPECT_EQ(version, L"1.0.0") << "where the greeting names none";

    for (const bool reset : {false, true}) {
        messages.clear();
        const auto begin = std::chrono::steady_clock::now();
        SendTo(
            [=](RawConnection& connection) {
                connection.Send(kReady);
                connection.Line();
                if (reset) connection.Reset();
            },
            {{L"a"}, {L"b"}});
        EXPECT_EQ(messages, (Texts{kNoAnswer, kNoAnswer}));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 350ms) << "without waiting for what cannot come";
    }
}

TEST_F(Sending, ConnectingFailsAtOnceOrAfterAWhile) {
    const int handles = CountHandles();
    Open(FreePort(), 5s);
    for (const wchar_t* host : {L"127.0.0.1", L"  localhost ", L"gibt.es.nicht.invalid", L""}) {
        const auto begin = std::chrono::steady_clock::now();
        const auto session = network->CreateOutgoing();
        network->Connect(session, host);
        EXPECT_FALSE(session->IsConnected());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s) << wxString(host).utf8_string();
        session->Send({{L"a"}});
        EXPECT_EQ(session->GetNumberSentNotes(), L"0");
    }
    EXPECT_EQ(network->CountSessions(), 0u);
    EXPECT_EQ(network->CountSockets(), 1u);
    EXPECT_LE(CountHandles(), handles + 4);  // the listener, and what the look-up keeps
    EXPECT_TRUE(messages.empty());
}

TEST_F(Sending, BothDirectionsAtOnceThroughOneAccess) {
    Open();
    const std::uint16_t port = network->LocalPort();
    network.reset();
    network.emplace(store, NetworkAccess::Options{port, port, 5s});
    ASSERT_TRUE(network->Listen());
    const std::wstring text = L"Käse €\r\n\r\n  'x' \"y\"\r\n";
    const NoteContent note{text, 25, true, true, true, 2, kLightBlue};
    const auto session = network->CreateOutgoing();
    network->Connect(session, L"localhost");
    ASSERT_TRUE(session->IsConnected());
    session->Send({note, note});
    network->Shutdown(session);
    EXPECT_EQ(session->GetNumberSentNotes(), L"2");
    ASSERT_EQ(store.CountNotes(), 2u);
    const frmNote& got = *store.Notes()[1];
    EXPECT_EQ(got.Text(), text);
    EXPECT_EQ(got.FontNoteSize(), 25);
    EXPECT_TRUE(got.FontNoteBold() && got.FontNoteItalic() && got.FontNoteUnderlined());
    EXPECT_EQ(got.FontNoteAlignment(), 2);
    EXPECT_EQ(got.Color(), kLightBlue);
    EXPECT_TRUE(RunUntil([&] { return network->CountSessions() == 0; }));
}

// Round trips of the two sessions, against a plain exchange of the same lines.
TEST_F(Sending, SessionsAreNoSlowerThanAThirdOfThePlainExchange) {
    int lines = 100;
    const auto perSecond = [&](auto&& work) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        return lines / std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const auto ask = [&](RawConnection& connection) {
        return perSecond([&] {
            for (int i = 0; i < lines; ++i) connection.Ask("NOTE_TEXT Zeile");
        });
    };
    const auto askPlainly = [&] {
        RawServer server([](RawConnection& connection) {
            while (connection.Line()[0] != '<') connection.Send("OK\r\n");
        });
        RawConnection connection = RawConnection::To(server.Port());
        return ask(connection);
    };
    // As many as take about a fifth of a second here.
    lines = std::clamp(static_cast<int>(askPlainly() / 5), 100, 4'000);
    Open();
    std::wstring text;
    for (int i = 0; i < lines; ++i) text += L"Zeile\r\n";
    // The best of several, each with a plain exchange right before it: other programs of the machine may take
    // their share of one.
    double receivingShare = 0, sendingShare = 0;
    for (int round = 0; round < 10 && std::min(receivingShare, sendingShare) <= 1.0 / 3; ++round) {
        const double plain = askPlainly();
        double receiving = 0;
        Talk([&](RawConnection& connection) {
            connection.Line();
            connection.Ask("NOTE_NEW");
            receiving = ask(connection);
        });
        const double sending = perSecond([&] { SendTo(Answering("", ""), {{text}}); });
        receivingShare = std::max(receivingShare, receiving / plain);
        sendingShare = std::max(sendingShare, sending / plain);
        std::printf("[          ] round trips a second: plain %.0f, receiving %.0f, sending %.0f\n", plain,
                    receiving, sending);
    }
    EXPECT_GT(receivingShare, 1.0 / 3);
    EXPECT_GT(sendingShare, 1.0 / 3);
}

}  // namespace
