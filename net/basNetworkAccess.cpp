#include "net/basNetworkAccess.h"

#include <set>
#include <utility>

#include "base/DateText.h"
#include "base/Text.h"
#include "dialogs/Wait.h"
#include "net/clsIncoming.h"
#include "net/clsOutgoing.h"
#include "notes/NoteStore.h"

namespace {

// Numbers of errors, for the sender.
constexpr int kNotKept = 51;
constexpr int kNotAllowed = 70;

}  // namespace

class NetworkAccess::Undecided {
  public:
    // It has its place among the connections from now on. The limits must outlive it.
    Undecided(const SocketCalls::Request& request, ConnectionLimits& limits)
        : request_(request),
          limits_(limits),
          number_(limits.Add(request.address, std::chrono::steady_clock::now())) {}
    ~Undecided() {
        if (request_.handle == SocketCalls::kNoHandle) return;
        SocketCalls::Close(request_.handle);
        limits_.Remove(number_);
    }
    Undecided(const Undecided&) = delete;
    Undecided& operator=(const Undecided&) = delete;

    clsIncoming::Peer Peer() const { return {request_.address, number_}; }
    // The connection, which then keeps its place.
    SocketCalls::Handle Take() { return std::exchange(request_.handle, SocketCalls::kNoHandle); }

  private:
    SocketCalls::Request request_;
    ConnectionLimits& limits_;
    const ConnectionLimits::Number number_;
};

NetworkAccess::NetworkAccess(NoteStore& store, const Options& options) : store_(store), options_(options) {}

NetworkAccess::NetworkAccess(NoteStore& store) : NetworkAccess(store, Options()) {}

NetworkAccess::~NetworkAccess() { Stop(); }

bool NetworkAccess::Listen() {
    if (listensAtAll_ && sckSend.State() != TcpSocket::Listening) {
        sckSend.LocalPort(options_.localPort);
        sckSend.Listen();
    }
    return sckSend.State() == TcpSocket::Listening;
}

void NetworkAccess::Stop() {
    sckSend.Close();
    undecided_.clear();
    for (const auto& session : std::exchange(outgoing_, {})) session->Socket.Close();
    for (const auto& session : incoming_) session->Socket.Close();
    RemoveClosed();
}

std::shared_ptr<clsOutgoing> NetworkAccess::CreateOutgoing() {
    return std::make_shared<clsOutgoing>(options_.patience, [this] { RemoveClosed(); });
}

void NetworkAccess::Connect(const std::shared_ptr<clsOutgoing>& session, const std::wstring& host) {
    cancelled_ = false;
    outgoing_.push_back(session);
    TcpSocket& socket = session->Socket;
    socket.RemotePort(options_.remotePort);
    socket.LocalPort(0);
    socket.Connect(host);
    const WaitEnd end =
        WaitUntil([&] { return cancelled_ || socket.State() != TcpSocket::Connecting; }, options_.patience);
    if (end == WaitEnd::Quitting) return;
    if (cancelled_ || !session->IsConnected())
        Shutdown(session);
    else
        session->ConnectionEstablished();
}

void NetworkAccess::CancelConnect() {
    cancelled_ = true;
    WakeWaits();
}

void NetworkAccess::Shutdown(const std::shared_ptr<clsSession>& session) {
    session->PrepareConnectionShutdown();
    session->Socket.Close();
    RemoveClosed();
}

void NetworkAccess::RemoveClosed() {
    const auto closed = [](const auto& each) { return each->Socket.State() == TcpSocket::Closed; };
    std::erase_if(outgoing_, closed);
    for (const auto& session : incoming_) {
        if (closed(session)) limits_.Remove(session->OtherSide.number);
    }
    std::erase_if(incoming_, closed);
}

void NetworkAccess::ConnectionRequest() {
    const SocketCalls::Request request = sckSend.NextRequest();
    if (request.handle == SocketCalls::kNoHandle) return;
    RemoveClosed();
    const auto now = std::chrono::steady_clock::now();
    const ConnectionLimits::Room room =
        IsQuitting() ? ConnectionLimits::Room() : limits_.RoomFor(request.address, now);
    if (!room.there) {
        SocketCalls::Close(request.handle);
        return;
    }
    if (room.instead) CloseForRoom(*room.instead);
    const auto undecided = std::make_shared<Undecided>(request, limits_);
    if (!MayConnect) return Admit(undecided);
    undecided_.push_back(undecided);
    MayConnect(request.address, [this, asked = std::weak_ptr(undecided)](bool may) {
        const auto decided = asked.lock();
        if (!decided || std::erase(undecided_, decided) == 0) return;
        if (may && !IsQuitting()) Admit(decided);
    });
}

void NetworkAccess::Admit(const std::shared_ptr<Undecided>& request) {
    const clsIncoming::Peer peer = request->Peer();
    const auto session = std::make_shared<clsIncoming>(
        peer, options_.patience, [this] { RemoveClosed(); },
        [this, address = peer.address](const Note& note) { return TakeIn(note, address); },
        [this, number = peer.number](std::size_t held, bool complete) { Heard(number, held, complete); });
    session->Socket.Accept(request->Take());
    incoming_.push_back(session);
    session->ConnectionEstablished();
}

void NetworkAccess::AskAgain() {
    if (!MayConnect) return;
    for (const std::shared_ptr<clsIncoming>& session : std::vector(incoming_)) {
        MayConnect(session->OtherSide.address, [this, asked = std::weak_ptr(session)](bool may) {
            const auto session = asked.lock();
            if (may || !session) return;
            session->Socket.Close();
            RemoveClosed();
        });
    }
}

void NetworkAccess::ListensAtAll(bool listens) {
    listensAtAll_ = listens;
    if (listens) return;
    sckSend.Close();
    undecided_.clear();
    for (const std::shared_ptr<clsIncoming>& session : incoming_) session->Socket.Close();
    RemoveClosed();
}

void NetworkAccess::CloseForRoom(ConnectionLimits::Number number) {
    std::erase_if(undecided_, [=](const auto& each) { return each->Peer().number == number; });
    for (const auto& session : incoming_) {
        if (session->OtherSide.number == number) session->Socket.Close();
    }
    RemoveClosed();
}

void NetworkAccess::Heard(ConnectionLimits::Number number, std::size_t heldBytes, bool complete) {
    if (complete) limits_.Spoke(number, std::chrono::steady_clock::now());
    limits_.Holds(number, heldBytes);
    if (!limits_.HoldTooMuch()) return;
    // Others may hold less than when they were heard last.
    for (const auto& session : incoming_) limits_.Holds(session->OtherSide.number, session->HeldBytes());
    while (limits_.HoldTooMuch()) CloseForRoom(*limits_.Largest());
}

std::optional<clsIncoming::Refusal> NetworkAccess::TakeIn(const Note& received, const std::string& address) {
    const NoteStore::UntouchedNotes untouched = store_.CountUntouchedNotes();
    if (!floodGuard_.Admits(address, std::chrono::steady_clock::now(),
                            {untouched.notes, untouched.characters})) {
        AskAboutFlood();
        return clsIncoming::Refusal{kNotAllowed, L"Too many notes. They are refused for now"};
    }
    Note note = received;
    note.creationTime = CurrentCreationTime();
    const KeepResult kept = store_.AddNoteIfKept(note);
    if (!kept.Kept()) return clsIncoming::Refusal{kNotKept, FromUtf8(kept.detail)};
    frmNote& taken = *store_.Notes().back();
    taken.Untouched(true);
    floodGuard_.Taken(address, std::chrono::steady_clock::now(), taken.NoteKey());
    return std::nullopt;
}

void NetworkAccess::AskAboutFlood() {
    if (!OnFlood) return;
    std::optional<FloodGuard::Flood> flood = floodGuard_.Ask();
    if (!flood) return;
    flood_ = std::move(*flood);
    OnFlood(flood_);
}

KeepResult NetworkAccess::AnswerFlood(FloodGuard::Answer answer) {
    KeepResult deleted;
    if (answer == FloodGuard::Answer::Deleted) deleted = DeleteFlood();
    floodGuard_.Answered(deleted.Kept() ? answer : FloodGuard::Answer::Refuse);
    AskAboutFlood();
    return deleted;
}

KeepResult NetworkAccess::DeleteFlood() {
    const std::set<std::int32_t> keys(flood_.keys.begin(), flood_.keys.end());
    std::vector<frmNote*> notes;
    for (const NotePtr& note : store_.Notes()) {
        if (note->Untouched() && (flood_.address.empty() || keys.contains(note->NoteKey())))
            notes.push_back(note.get());
    }
    return store_.DeleteFlood(notes);
}
