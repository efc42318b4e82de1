// A message is one file name, which begins with "/", and the NUL behind it, or a packed command. The first
// byte of the answer is what counts: a message is taken when "taken" could be sent, and a sender that gives
// up refuses to be sent anything more. The kernel does one or the other first, so both sides know the same.
// What a command comes to follows when it is done: a line with the exit code, a blank and the number of the
// bytes behind it, and then these, the text.
#include <glib-unix.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <deque>
#include <list>
#include <optional>
#include <thread>

#include "app/HandOver.h"
#include "app/MeetingPlace_unix.h"
#include "base/FileName.h"
#include "base/Text.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kTaken = '+';
constexpr char kRefused = '-';
constexpr std::size_t kLongestMessage = 1 << 18;
// A sender has its few bytes ready; one that is slower than this holds a place that others need.
constexpr guint kSlowestSenderSeconds = 3;
constexpr std::size_t kMostSenders = 16;
constexpr std::chrono::seconds kPatience{5};
constexpr std::chrono::seconds kPatienceForResult{60};
constexpr std::chrono::milliseconds kRetryPause{20};

// An event source of the main loop, removed with its owner.
class Source {
  public:
    Source() = default;
    ~Source() { Remove(); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    void Set(guint id) {
        Remove();
        id_ = id;
    }
    void Remove() {
        if (id_) g_source_remove(id_);
        id_ = 0;
    }
    explicit operator bool() const { return id_ != 0; }

  private:
    guint id_ = 0;
};

class SocketCopy;

struct Sender {
    Sender(SocketCopy* owner, Descriptor connection) : copy(owner), socket(std::move(connection)) {}
    SocketCopy* copy;
    Descriptor socket;
    std::string received;
    Source readable, late;
};

// What was taken, and who waits for what becomes of it.
struct Errand {
    Command command;
    Descriptor asker;  // none for a file
};

// The result of a command on its way to whoever asked for it.
struct Result {
    Result(SocketCopy* owner, Descriptor connection, std::string bytes)
        : copy(owner), asker(std::move(connection)), unsent(std::move(bytes)) {}
    SocketCopy* copy;
    Descriptor asker;
    std::string unsent;
    Source writable;
};

// Nothing as long as it is not complete. A file is a command without a name.
std::optional<Command> MessageOf(const std::string& bytes) {
    if (!bytes.starts_with('/')) return bytes.ends_with('\0') ? Unpacked(FileName(bytes)) : std::nullopt;
    const std::size_t end = bytes.find('\0');
    if (end == bytes.npos) return std::nullopt;
    return Command{L"", {FileName(bytes.substr(0, end))}};
}

class SocketCopy : public RunningCopy {
  public:
    explicit SocketCopy(MeetingPlace place) : place_(std::move(place)) {}

    // The place, and with it the lock, goes last.
    ~SocketCopy() override { StopListening(); }

    void Listen(Receive receive) override {
        receive_ = std::move(receive);
        Accept();
    }

    void Finish() override {
        StopListening();
        while (!errands_.empty()) DeliverOne();
    }

  private:
    // Who still comes waits, and finds out at the end of this process that nobody has taken anything.
    void StopListening() {
        acceptable_.Remove();
        retry_.Remove();
        senders_.clear();
    }

    void Accept() {
        if (!place_.Socket()) return;
        acceptable_.Set(g_unix_fd_add(place_.Socket().Get(), G_IO_IN, OnSender, this));
    }

    static gboolean OnSender(gint, GIOCondition, gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        Descriptor socket = copy.place_.Accept();
        if (!socket) {
            if (errno != EMFILE && errno != ENFILE && errno != ENOMEM && errno != ENOBUFS)
                return G_SOURCE_CONTINUE;
            // Out of descriptors: the sender stays in the queue, and asking for it at once again is no use.
            copy.acceptable_.Remove();
            copy.retry_.Set(g_timeout_add_seconds(1, OnRetry, self));
            return G_SOURCE_CONTINUE;
        }
        const int fd = socket.Get();
        Sender& sender = copy.senders_.emplace_back(&copy, std::move(socket));
        sender.readable.Set(g_unix_fd_add(fd, G_IO_IN, OnReadable, &sender));
        sender.late.Set(g_timeout_add_seconds(kSlowestSenderSeconds, OnLate, &sender));
        if (copy.senders_.size() >= kMostSenders) copy.acceptable_.Remove();
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnRetry(gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        copy.retry_.Remove();
        copy.Accept();
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnLate(gpointer data) {
        auto& sender = *static_cast<Sender*>(data);
        sender.copy->Dismiss(sender);
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnReadable(gint fd, GIOCondition, gpointer data) {
        auto& sender = *static_cast<Sender*>(data);
        char buffer[4096];
        const ssize_t count = recv(fd, buffer, sizeof buffer, 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return G_SOURCE_CONTINUE;
        if (count <= 0) {
            sender.copy->Dismiss(sender);
            return G_SOURCE_CONTINUE;
        }
        sender.received.append(buffer, static_cast<std::size_t>(count));
        const char first = sender.received[0];
        const bool possible = first == '/' || (first > '0' && first <= '9');
        if (std::optional<Command> message = MessageOf(sender.received)) {
            if (Answer(sender, kTaken)) sender.copy->Take(std::move(*message), sender);
            sender.copy->Dismiss(sender);
        } else if (!possible || sender.received.size() > kLongestMessage) {
            Answer(sender, kRefused);
            sender.copy->Dismiss(sender);
        }
        return G_SOURCE_CONTINUE;
    }

    // False when the sender has given up. One byte always fits.
    static bool Answer(const Sender& sender, char answer) {
        return send(sender.socket.Get(), &answer, 1, MSG_NOSIGNAL) == 1;
    }

    void Dismiss(Sender& sender) {
        senders_.remove_if([&](const Sender& other) { return &other == &sender; });
        if (!acceptable_ && !retry_) Accept();
    }

    void Take(Command command, Sender& sender) {
        const bool file = command.name.empty();
        sender.readable.Remove();
        errands_.push_back({std::move(command), file ? Descriptor() : std::move(sender.socket)});
        if (!deliver_) deliver_.Set(g_idle_add_full(G_PRIORITY_DEFAULT, OnDeliver, this, nullptr));
    }

    static gboolean OnDeliver(gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        copy.DeliverOne();
        if (copy.errands_.empty()) copy.deliver_.Remove();
        return G_SOURCE_CONTINUE;
    }

    void DeliverOne() {
        if (errands_.empty()) return;
        Errand errand = std::move(errands_.front());
        errands_.pop_front();
        if (!receive_) return;
        const CommandAnswer answer = receive_(errand.command);
        if (!errand.asker) return;
        const std::string text = ToUtf8(answer.text);
        Result& result = results_.emplace_back(
            this, std::move(errand.asker),
            std::to_string(answer.exitCode) + ' ' + std::to_string(text.size()) + '\n' + text);
        result.writable.Set(g_unix_fd_add(result.asker.Get(), G_IO_OUT, OnWritable, &result));
        SendMore(result);
    }

    static gboolean OnWritable(gint, GIOCondition, gpointer data) {
        auto& result = *static_cast<Result*>(data);
        result.copy->SendMore(result);
        return G_SOURCE_CONTINUE;
    }

    // Forgets the result when it is sent, or cannot be.
    void SendMore(Result& result) {
        const ssize_t count =
            send(result.asker.Get(), result.unsent.data(), result.unsent.size(), MSG_NOSIGNAL);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (count > 0) result.unsent.erase(0, static_cast<std::size_t>(count));
        if (count < 0 || result.unsent.empty())
            results_.remove_if([&](const Result& other) { return &other == &result; });
    }

    MeetingPlace place_;
    Source acceptable_, retry_, deliver_;
    std::list<Sender> senders_;
    std::deque<Errand> errands_;
    std::list<Result> results_;
    Receive receive_;
};

// Waits until the socket is ready for what is asked. False at the deadline.
bool Ready(const Descriptor& socket, short events, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return false;
        pollfd waiting{socket.Get(), events, 0};
        const int count = poll(&waiting, 1, static_cast<int>(left));
        if (count > 0) return true;
        if (count < 0 && errno != EINTR) return false;
    }
}

bool Send(const Descriptor& socket, const std::string& message, Clock::time_point deadline) {
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t count = send(socket.Get(), message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno != EINTR && (errno != EAGAIN || !Ready(socket, POLLOUT, deadline))) {
            return false;
        }
    }
    return true;
}

// One attempt: the connection on which the message was taken. Nothing when the copy ended, has not begun to
// listen, or did not answer in time: then the message is withdrawn.
struct Asked {
    bool taken;
    Descriptor connection;
};
std::optional<Asked> Ask(const MeetingPlace& place, const std::string& message, Clock::time_point deadline) {
    Descriptor socket = place.Connect();
    if (!socket) return std::nullopt;
    if (!Send(socket, message, deadline)) return std::nullopt;
    if (!Ready(socket, POLLIN, deadline)) shutdown(socket.Get(), SHUT_RD);
    char answer = 0;  // it may have come in between
    if (recv(socket.Get(), &answer, 1, 0) != 1) return std::nullopt;
    return Asked{answer == kTaken, std::move(socket)};
}

// Asks until there is an answer. Without one, `running` says whether there is a running copy at all.
struct Handed {
    bool running = false;
    Descriptor connection{};  // where the message was taken
};
Handed Hand(const std::string& message) {
    const Clock::time_point deadline = Clock::now() + kPatience;
    const MeetingPlace place;
    if (message.size() > kLongestMessage) return {place.IsLocked()};
    for (;;) {
        if (std::optional<Asked> asked = Ask(place, message, deadline))
            return {true, asked->taken ? std::move(asked->connection) : Descriptor()};
        if (!place.IsLocked()) return {};
        if (Clock::now() + kRetryPause >= deadline) return {true};
        std::this_thread::sleep_for(kRetryPause);
    }
}

// What comes up to the end of the connection.
std::string Rest(const Descriptor& socket, Clock::time_point deadline) {
    std::string bytes;
    char buffer[4096];
    while (Ready(socket, POLLIN, deadline)) {
        const ssize_t count = recv(socket.Get(), buffer, sizeof buffer, 0);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) break;
        if (count > 0) bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
}

std::string Bytes(const std::wstring& message) { return FilePath(message).native(); }

}  // namespace

std::unique_ptr<RunningCopy> RunningCopy::Claim() {
    MeetingPlace place;
    if (!place.Lock()) return nullptr;
    return std::make_unique<SocketCopy>(std::move(place));
}

bool HandOver(const std::wstring& fileName) {
    const Handed handed = Hand(Bytes(AbsoluteFileName(fileName)) + '\0');
    return static_cast<bool>(handed.connection);
}

HandedOver HandOver(const Command& command) {
    const Handed handed = Hand(Bytes(Packed(command)));
    if (!handed.running) return {HandedOver::NobodyThere};
    if (!handed.connection) return {HandedOver::Silent};
    const std::string result = Rest(handed.connection, Clock::now() + kPatienceForResult);
    int exitCode = 0;
    std::size_t size = 0;
    if (std::sscanf(result.c_str(), "%d %zu", &exitCode, &size) != 2) return {HandedOver::Lost};
    const std::size_t end = result.find('\n') + 1;
    if (result.size() - end != size) return {HandedOver::Lost};
    return {HandedOver::Answered, {exitCode, FromUtf8(result.substr(end))}};
}
