// The sending session, and a server that answers whatever it likes in pieces of any size, or closes, breaks
// off, falls silent. There is neither network nor window: the socket and the waiting are those of this file.
#include <algorithm>

#include "addressbook/NameLookup.h"
#include "base/Text.h"
#include "dialogs/Wait.h"
#include "fuzz/support/FuzzTarget.h"
#include "net/clsOutgoing.h"

namespace {

using namespace std::chrono_literals;

// What happens in place of a piece of so many bytes.
enum : std::uint8_t { Closes, BreaksOff, FallsSilent, UserAborts, ShortestPiece };

struct Server {
    FuzzInput& input;
    TcpSocket& socket;
    std::string said = {}, heard = {};
    std::function<void()> abort = {};
    bool silent = false;
};
Server* server = nullptr;

}  // namespace

// The socket has a place for one, which stays empty.
NameLookup::~NameLookup() = default;

TcpSocket::TcpSocket(SocketEvents& receiver) : receiver_(receiver) {}
TcpSocket::~TcpSocket() = default;
void TcpSocket::Accept(SocketCalls::Handle) { state_ = Connected; }
void TcpSocket::Close() {
    state_ = Closed;
    in_.clear();
}
std::string TcpSocket::GetData() { return std::exchange(in_, {}); }
void TcpSocket::SendData(const std::string& bytes) {
    if (state_ == Connected) server->heard += bytes;
}

// Lets the next thing happen.
void TcpSocket::LookForAMoment() {
    const std::uint8_t next = server->input.Empty() ? std::uint8_t{FallsSilent} : server->input.Byte();
    if (next == Closes) {
        Close();
        receiver_.Socket_Close();
    } else if (next == BreaksOff) {
        state_ = Failed;
        receiver_.Socket_Error(0, L"");
    } else if (next == FallsSilent) {
        server->silent = true;
    } else if (next == UserAborts) {
        if (server->abort) server->abort();
    } else {
        in_ = server->input.Bytes(next);
        server->said += in_;
        receiver_.Socket_DataArrival(static_cast<std::int32_t>(in_.size()));
    }
}

WaitEnd WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    server->silent = limit < 1s;  // a pause, in which nothing is waited for
    while (!condition()) {
        if (server->silent) return WaitEnd::TimedOut;
        server->socket.LookForAMoment();
    }
    return WaitEnd::Met;
}

void WakeWaits() {}
bool IsQuitting() { return false; }

namespace {

std::size_t Count(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// Takes the commands of a note, as far as they are there; whether all are.
bool TakeCommands(std::string_view& heard, const Note& note) {
    const std::vector<std::wstring> commands = CommandsFor(note);
    return std::ranges::all_of(commands, [&](const std::wstring& command) {
        const std::string line = ToAnsi(command) + "\r\n";
        const bool here = heard.starts_with(line);
        if (here) heard.remove_prefix(line.size());
        return here;
    });
}

void Send(FuzzInput& input) {
    static const std::vector<Note> all = {
        {.text = L"eins"}, {.text = L"zwei\r\ndrei"}, {}, {.text = L"vier"}};
    const std::vector<Note> notes(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(input.Number(4)));
    bool ended = false;
    clsOutgoing session(10s, [&] { ended = true; });
    Server talking{input, session.Socket};
    server = &talking;
    session.Socket.Accept(0);
    session.ConnectionEstablished();
    Require(talking.heard.empty(), "a server speaks first");

    const bool connected = session.IsConnected(), ours = session.SpeaksOurVersion();
    bool aborted = false;
    talking.abort = [&] {
        aborted = true;
        session.Abort();
    };
    std::vector<bool> failed(notes.size());
    session.Send(notes, [&](const clsOutgoing::Failure& failure) {
        Require(!aborted, "nothing fails when the user has ended it");
        const auto which = static_cast<std::size_t>(&failure.note - notes.data());
        Require(which < notes.size() && !failed[which], "a note fails once");
        failed[which] = true;
    });
    const auto failures = static_cast<std::size_t>(std::ranges::count(failed, true));
    const std::size_t sent = std::stoul(session.GetNumberSentNotes());
    Require(ended == !session.IsConnected(), "the end of the connection is told");
    if (!connected || !ours) {
        Require(talking.heard.empty() && failures == 0, "to no server, or another version, nothing is sent");
        Require(sent == (connected ? notes.size() : 0), "another version gets all, as far as one is told");
    } else {
        Require(aborted ? sent + failures <= notes.size() : sent + failures == notes.size(),
                "each note is sent or fails");
        std::string_view heard = talking.heard;
        std::size_t whole = 0, commands = 0;
        for (std::size_t i = 0; i < notes.size(); ++i) {
            if (!TakeCommands(heard, notes[i]) || failed[i]) continue;
            ++whole;
            commands += CommandsFor(notes[i]).size();
        }
        Require(heard.empty(), "only commands are sent, in their order");
        Require(aborted ? sent <= whole : sent == whole, "what counts as sent was sent as a whole");
        Require(aborted || Count(talking.said, "OK") >= commands, "and each command was answered with OK");
    }

    const std::string before = talking.heard;
    session.PrepareConnectionShutdown();
    const bool quits = session.IsConnected() && !aborted;
    Require(talking.heard == before + (quits ? "QUIT\r\n" : ""), "at last one says so");
}

const FuzzTarget kTarget("Outgoing", Send);

}  // namespace
