#pragma once
// Tells a flood of notes from other computers from notes that somebody wants to have. It counts and decides;
// the notes belong to the store. No window, no clock: the time is passed in.
//
// A flood is more than 300 notes of one address within a minute, or more than 1,000 in all that nobody has
// touched since they came, or so much text in those. From then on no more of them are taken, and the user is
// asked once what to do.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

constexpr std::size_t kMostNotesAMinute = 300;
constexpr std::size_t kMostUntouchedNotes = 1000;
constexpr std::size_t kMostUntouchedCharacters = 4'000'000;

class FloodGuard {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // Of the notes that are there, those that came from other computers and were touched by nobody.
    struct Untouched {
        std::size_t notes = 0, characters = 0;
    };

    // Whether a note of that address may be taken in now.
    bool Admits(const std::string& address, Time now, const Untouched& untouched);

    // A note of that address was taken in and has that key.
    void Taken(const std::string& address, Time now, std::int32_t key);

    struct Flood {
        // Whose it is; empty where there are too many untouched notes in all.
        std::string address;
        // The keys of an address's notes that came within that minute. Without an address the flood is all
        // untouched notes.
        std::vector<std::int32_t> keys;
    };

    // The flood that the user is to be asked about next; nothing while there is none, and until the one
    // before was answered.
    std::optional<Flood> Ask();

    // What the user wants: GoOn takes further notes, of that address without this limit, of all computers as
    // many again. Refuse takes none of that address until the program ends, and of all computers none as long
    // as so many are untouched. Deleted: those that came are gone; an address is refused all the same, of
    // all computers more are taken.
    enum class Answer { GoOn, Refuse, Deleted };
    void Answered(Answer answer);

  private:
    // Pending: the user has not answered yet, and nothing is taken until then.
    enum class State { Watched, Pending, Trusted, Refused };
    struct Sender {
        State state = State::Watched;
        std::deque<std::pair<Time, std::int32_t>> lastMinute;  // when they came, and their keys
    };

    void ForgetOld(Time now);

    std::map<std::string, Sender> senders_;
    State all_ = State::Watched;
    std::size_t timesMore_ = 1;  // as many untouched notes as at first
    std::deque<Flood> floods_;   // the user has still to answer
    bool asking_ = false;        // about the first of them
};
