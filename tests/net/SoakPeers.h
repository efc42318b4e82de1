#pragma once
// The other computers of the soak, each a thread with one connection: those that send notes as they should,
// and those that do everything else. All of them are loopback addresses of this machine.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class SoakPeers {
  public:
    // Half of the connections are hostile; the others send so many notes a second together.
    SoakPeers(std::uint16_t port, unsigned connections, double notesASecond);
    ~SoakPeers() { Stop(); }
    // Ends all connections.
    void Stop();

    // After Stop. The texts of notes that were answered with OK, what others were answered, and the time from
    // each note's first command to its last answer.
    std::vector<std::string> acknowledged;
    std::vector<std::string> failures;
    std::vector<std::chrono::microseconds> times;
    // How many connections the hostile ones of each kind have made.
    std::map<std::string, unsigned long> attacks;

  private:
    void Attack(unsigned number);
    void SendNotes(unsigned number, unsigned senders, double notesASecond);
    bool Wait(std::chrono::milliseconds time) const;

    const std::uint16_t port_;
    std::atomic<bool> stop_ = false;
    std::mutex mutex_;
    std::vector<std::thread> threads_;
};
