#include "bench/Lines.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

#include "bench/Figures.h"
#include "bench/Process.h"
#include "bench/Store.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::uint16_t kPort = 5998;
constexpr int kLines = 10'000, kLinesOfANote = 500;
constexpr int kNotes = 250;  // more from one computer in a minute are a flood

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

sockaddr_in Loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// A connection that sends lines and reads a line for each.
class Connection {
  public:
    explicit Connection(int socket) : socket_(socket) {
        const int on = 1;
        setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    ~Connection() { close(socket_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void Send(const std::string& line) {
        const std::string bytes = line + "\r\n";
        Require(send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size()),
                "the connection has broken");
    }
    // Empty at its end.
    std::string Line() {
        for (std::size_t end; (end = held_.find("\r\n")) == held_.npos;) {
            char bytes[4096];
            const ssize_t got = recv(socket_, bytes, sizeof bytes, 0);
            if (got <= 0) return "";
            held_.append(bytes, static_cast<std::size_t>(got));
        }
        const std::string line = held_.substr(0, held_.find("\r\n"));
        held_.erase(0, line.size() + 2);
        return line;
    }
    void Ask(const std::string& line) {
        Send(line);
        Require(Line().starts_with("OK"), "a line was refused");
    }

  private:
    const int socket_;
    std::string held_;
};

int Connected() {
    const sockaddr_in address = Loopback(kPort);
    for (const auto end = Clock::now() + 30s; Clock::now() < end; std::this_thread::sleep_for(20ms)) {
        const int tried = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (connect(tried, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return tried;
        close(tried);
    }
    throw std::runtime_error("nobody listens");
}

// Answers every line of one connection.
int Echo() {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = Loopback(kPort);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return 1;
    listen(listener, 1);
    Connection connection(accept(listener, nullptr, nullptr));
    close(listener);
    connection.Send("OK");
    while (!connection.Line().empty()) connection.Send("OK");
    return 0;
}

double ASecond(int count, const std::function<void()>& work) {
    const auto begin = Clock::now();
    work();
    return count / std::chrono::duration<double>(Clock::now() - begin).count();
}

void MeasureServer(const char* program) {
    Connection connection(Connected());
    Require(connection.Line().starts_with("OK"), "there is no greeting");
    connection.Ask("NOTE_NEW");
    Figure("lines received", program, "/s", ASecond(kLines, [&] {
               for (int i = 0; i < kLines; ++i)
                   connection.Ask(i % kLinesOfANote == 0 ? "NOTE_NEW" : "NOTE_TEXT eine Zeile von mehreren");
           }));
    Figure(
        "notes received", program, "/s", ASecond(kNotes, [&] {
            for (int i = 0; i < kNotes; ++i) {
                for (const char* line :
                     {"NOTE_NEW", "NOTE_TEXT Milch und Brot holen", "NOTE_TEXT um fünf anrufen",
                      "NOTE_FONT_SIZE 12", "NOTE_FONT_BOLD 0", "NOTE_FONT_ITALIC 0", "NOTE_FONT_UNDERLINED 0",
                      "NOTE_FONT_ALIGNMENT 0", "NOTE_COLOR 65535", "NOTE_FINISHED"})
                    connection.Ask(line);
            }
        }));
}

}  // namespace

void MeasureLines(const std::string& kivora) {
    {
        const User user({});
        Process program(std::vector<std::string>{kivora});
        MeasureServer(kKivora);
    }
    Process echo(Echo);
    MeasureServer(kFloor);
}
