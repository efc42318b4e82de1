#include "tests/net/SoakPeers.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <stdexcept>

#include "tests/net/RawPeer.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// A computer has at most that many connections, so that none of the well-behaved is refused.
constexpr unsigned kOfOneComputer = 16;
constexpr unsigned kFirstHostile = 2, kFirstSender = 100;

std::string Garbage(std::mt19937& random, std::size_t size) {
    const char* const words[] = {"NOTE_NEW", "NOTE_TEXT ", "\r\n", "\r", "\n", "NOTE_COLOR 1", "QUIT "};
    std::string bytes;
    while (bytes.size() < size) {
        if (random() % 2)
            bytes += static_cast<char>(random());
        else
            bytes += words[random() % std::size(words)];
    }
    return bytes;
}

// What a hostile connection sends next, and how long it then does nothing; no pause ends it.
struct Step {
    std::string bytes;
    std::chrono::milliseconds pause{0};
};

const struct {
    const char* name;
    bool listens;  // takes the answers
    Step (*next)(std::mt19937& random);
} kAttacks[] = {
    {"idle", true,
     [](std::mt19937&) {
         return Step{"", 1h};
     }},
    {"slow bytes", true,
     [](std::mt19937& random) {
         return Step{std::string(1, "NOTE_TEXT x\r\n"[random() % 13]), 300ms};
     }},
    {"huge lines", true,
     [](std::mt19937& random) {
         return Step{std::string(60'000, 'x') + "\r\n"[random() % 2], 50ms};
     }},
    {"long texts", true,
     [](std::mt19937& random) {
         return Step{random() % 50 ? "NOTE_TEXT " + std::string(5000, 'x') + "\r\n" : "NOTE_NEW\r\n", 50ms};
     }},
    {"garbage", true,
     [](std::mt19937& random) {
         return Step{Garbage(random, 20'000), 50ms};
     }},
    {"never reads", false,
     [](std::mt19937&) {
         return Step{std::string(20'000, '\n') + "UNSINN\r\n", 20ms};
     }},
    {"silent amid a note", true,
     [](std::mt19937&) {
         return Step{"NOTE_NEW\r\nNOTE_TEXT halb", 1h};
     }},
    {"storm", false, [](std::mt19937&) { return Step{}; }},
};

// Takes a whole note in and says what went wrong; nothing when all was well.
std::optional<std::string> SendNote(RawConnection& connection, const std::string& text) {
    for (const std::string& line :
         {std::string("NOTE_NEW"), "NOTE_TEXT " + text, std::string("NOTE_FONT_SIZE 12"),
          std::string("NOTE_FONT_BOLD 0"), std::string("NOTE_COLOR 65280"), std::string("NOTE_FINISHED")}) {
        connection.Send(line + "\r\n");
        const std::string answer = connection.Line(15s);
        if (answer != "OK") return line + ": " + answer;
    }
    return std::nullopt;
}

}  // namespace

SoakPeers::SoakPeers(std::uint16_t port, unsigned connections, double notesASecond) : port_(port) {
    const unsigned hostile = connections / 2, senders = connections - hostile;
    for (unsigned i = 0; i < hostile; ++i) threads_.emplace_back([this, i] { Attack(i); });
    for (unsigned i = 0; i < senders; ++i)
        threads_.emplace_back([=, this] { SendNotes(i, senders, notesASecond); });
}

void SoakPeers::Stop() {
    stop_ = true;
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
}

bool SoakPeers::Wait(std::chrono::milliseconds time) const {
    for (const auto end = Clock::now() + time; !stop_ && Clock::now() < end;)
        std::this_thread::sleep_for(std::min<Clock::duration>(end - Clock::now(), 100ms));
    return !stop_;
}

void SoakPeers::Attack(unsigned number) {
    std::mt19937 random(number);
    const auto& attack = kAttacks[number % std::size(kAttacks)];
    unsigned long made = 0;
    while (!stop_) {
        try {
            RawConnection connection = RawConnection::To(port_, kFirstHostile + number / kOfOneComputer);
            ++made;
            for (Step step = attack.next(random); !stop_; step = attack.next(random)) {
                connection.TrySend(step.bytes);
                if (step.pause == 0ms || !Wait(step.pause)) break;
                if (attack.listens && !connection.Discard()) break;
            }
        } catch (const std::runtime_error&) {
        }
        Wait(20ms);
    }
    const std::lock_guard lock(mutex_);
    attacks[attack.name] += made;
}

void SoakPeers::SendNotes(unsigned number, unsigned senders, double notesASecond) {
    std::optional<RawConnection> connection;
    const auto turn = [&](double turns) {
        return std::chrono::milliseconds(std::lround(1000 * turns / notesASecond));
    };
    int sent = 0;
    for (bool go = Wait(turn(number)); go; go = Wait(turn(senders))) {
        const std::string text = "Rechner " + std::to_string(number) + " Notiz " + std::to_string(++sent);
        const auto begin = Clock::now();
        std::optional<std::string> failed = "no connection";
        // One that was silent for long may have been closed meanwhile.
        for (int attempt = 0; attempt < 2 && failed; ++attempt) {
            try {
                if (attempt > 0 || !connection) {
                    connection.reset();
                    connection.emplace(RawConnection::To(port_, kFirstSender + number / kOfOneComputer));
                    failed = "greeting: " + connection->Line(15s);
                }
                failed = SendNote(*connection, text);
                if (failed && !failed->starts_with("NOTE_NEW")) break;
            } catch (const std::runtime_error&) {
            }
        }
        const std::lock_guard lock(mutex_);
        times.push_back(std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin));
        if (failed)
            failures.push_back(text + ": " + *failed);
        else
            acknowledged.push_back(text);
    }
}
