#include "net/clsOutgoing.h"

#include <algorithm>

#include "base/basText.h"
#include "dialogs/basMessage.h"
#include "dialogs/basWait.h"

namespace {

constexpr std::size_t kNamedCharacters = 25;

// What a receiver says goes into a message box; one that says more than this means no good.
constexpr std::size_t kShownCharacters = 2000;

// Held of what arrives. A receiver that says more than this without being asked is not listened to any
// longer.
constexpr std::size_t kMostUnread = 2 * kLongestLine;

// Answers that are there at once need no loop of events. The window gets its turn all the same.
constexpr auto kBetweenPauses = std::chrono::milliseconds(20);

std::wstring Named(const NoteContent& note) {
    return L"\"" + note.text.substr(0, kNamedCharacters) + L"...\"";
}

std::wstring Shown(std::wstring text) {
    text.resize(std::min(text.size(), kShownCharacters));
    std::replace(text.begin(), text.end(), L'\0', L' ');
    return text;
}

}  // namespace

void clsOutgoing::Send(const std::vector<NoteContent>& NotesToSend) {
    aborted_ = false;
    sentNotes_ = 0;
    if (!IsConnected()) return;
    for (const NoteContent& note : NotesToSend) {
        if (remoteVersion_ != kProtocolVersion || SendNote(note)) ++sentNotes_;
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
    received_.Append(Socket->GetData());
    if (received_.Size() > kMostUnread) Socket->Close();
}

bool clsOutgoing::SendNote(const NoteContent& note) {
    for (const std::wstring& command : CommandsFor(note)) {
        LetOthersRun();
        SendLine(command);
        const std::wstring reply = ReadLine();
        if (IsQuitting() || !CheckReply(reply, note)) return false;
    }
    return true;
}

void clsOutgoing::SendLine(const std::wstring& line) {
    if (!IsConnected() || aborted_) return;
    sendPending_ = true;
    Socket->SendData(ToAnsi(line) + "\r\n");
    WaitUntil([this] { return !sendPending_ || !IsConnected() || aborted_; }, Patience());
}

std::wstring clsOutgoing::ReadLine() {
    std::string line;
    LineBuffer::Took took = LineBuffer::Took::Nothing;
    if (IsConnected()) {
        if (!received_.HasLine()) Socket->LookForAMoment();
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

bool clsOutgoing::CheckReply(const std::wstring& reply, const NoteContent& note) const {
    if (aborted_) return false;
    const std::wstring word = ReplyWord(reply);
    if (word == L"OK") return true;
    std::wstring message;
    if (word == L"ERROR") {
        message = L"Beim Versenden der Notiz " + Named(note) + L" ist ein Fehler aufgetreten.";
    } else if (word.empty()) {
        message = L"Der Ziel-Computer antwortet nicht.";
    } else {
        message = L"Beim Versenden der Notiz " + Named(note) + L" ist ein unerwarteter Fehler aufgetreten.";
    }
    ShowMessage(message + L"\r\nDer Ziel-Computer sendete die Fehlermeldung: " + Shown(ReplyRest(reply)),
                kCritical, L"Fehler beim Versenden der Notiz");
    return false;
}

void clsOutgoing::LetOthersRun() {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastPause_ < kBetweenPauses) return;
    WaitUntil([this] { return aborted_; }, std::chrono::milliseconds(1));
    lastPause_ = std::chrono::steady_clock::now();
}
