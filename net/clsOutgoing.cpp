#include "net/clsOutgoing.h"

#include "base/Text.h"
#include "dialogs/Wait.h"

namespace {

// Held of what arrives. A receiver that says more than this without being asked is not listened to any
// longer.
constexpr std::size_t kMostUnread = 2 * kLongestReply;

// Answers that are there at once need no loop of events. The window gets its turn all the same.
constexpr auto kBetweenPauses = std::chrono::milliseconds(20);

}  // namespace

void clsOutgoing::Send(const std::vector<Note>& NotesToSend,
                       const std::function<void(const Failure&)>& failed) {
    aborted_ = false;
    sentNotes_ = 0;
    if (!IsConnected()) return;
    for (const Note& note : NotesToSend) {
        if (!SpeaksOurVersion() || SendNote(note, failed)) ++sentNotes_;
        if (IsQuitting()) return;
    }
}

void clsOutgoing::Abort() {
    aborted_ = true;
    WakeWaits();
}

void clsOutgoing::ConnectionEstablished() {
    const std::wstring greeting = ReadLine();
    if (ReplyWord(greeting) == L"OK") remoteVersion_ = RemoteVersion(greeting);
}

void clsOutgoing::PrepareConnectionShutdown() { SendLine(L"QUIT"); }

void clsOutgoing::Socket_DataArrival(std::int32_t) {
    received_.Append(Socket.GetData());
    if (received_.Size() > kMostUnread) Socket.Close();
}

bool clsOutgoing::SendNote(const Note& note, const std::function<void(const Failure&)>& failed) {
    for (const std::wstring& command : CommandsFor(note)) {
        LetOthersRun();
        SendLine(command);
        const std::wstring reply = ReadLine();
        if (aborted_ || IsQuitting()) return false;
        const std::wstring word = ReplyWord(reply);
        if (word == L"OK") continue;
        const auto kind = word == L"ERROR" ? Failure::Refused
                          : word.empty()   ? Failure::NoAnswer
                                           : Failure::Unexpected;
        failed({note, kind, ReplyRest(reply)});
        return false;
    }
    return true;
}

void clsOutgoing::SendLine(const std::wstring& line) {
    if (!IsConnected() || aborted_) return;
    Socket.SendData(ToAnsi(line) + "\r\n");
    // Nothing is pending any more when the connection has ended.
    WaitUntil([this] { return !Socket.SendPending() || aborted_; }, Patience());
}

std::wstring clsOutgoing::ReadLine() {
    std::string line;
    LineBuffer::Took took = LineBuffer::Took::Nothing;
    if (IsConnected()) {
        if (!received_.HasLine()) Socket.LookForAMoment();
        WaitUntil(
            [&] {
                if (took == LineBuffer::Took::Nothing) took = received_.Take(line);
                return took != LineBuffer::Took::Nothing || !IsConnected() || aborted_;
            },
            Patience());
    }
    if (took != LineBuffer::Took::Nothing) return FromAnsi(line);
    received_.Clear();
    return {};
}

void clsOutgoing::LetOthersRun() {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastPause_ < kBetweenPauses) return;
    WaitUntil([this] { return aborted_; }, std::chrono::milliseconds(1));
    lastPause_ = std::chrono::steady_clock::now();
}
