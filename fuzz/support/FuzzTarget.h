#pragma once
// A fuzz target takes any bytes for what comes from outside and requires of the program what it promises for
// all of them. `./test fuzz` lets libFuzzer invent the bytes; the tests go through those of fuzz/corpus.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The bytes, taken from their beginning. Behind their end everything is 0 or empty.
class FuzzInput {
  public:
    explicit FuzzInput(std::string_view bytes) : bytes_(bytes) {}

    bool Empty() const { return bytes_.empty(); }
    std::uint8_t Byte();
    // 0 to `most`, of one byte.
    std::size_t Number(std::size_t most) { return Byte() % (most + 1); }
    std::string_view Bytes(std::size_t count);
    std::string_view Rest() { return Bytes(bytes_.size()); }
    // Up to the next 0x1E, which no field holds, so that the files of the corpus can be written by hand.
    std::string_view Field();
    std::wstring Text();  // a field of UTF-8

  private:
    std::string_view bytes_;
};

// A promise that does not hold.
class BrokenPromise : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

inline void Require(bool holds, const char* promise) {
    if (!holds) throw BrokenPromise(promise);
}

// One is defined at the end of each target's file. Its name is that of its folder in fuzz/corpus.
struct FuzzTarget {
    using Run = void (*)(FuzzInput& input);
    FuzzTarget(const char* itsName, Run itsRun);
    const char* name;
    Run run;
};

// All that are linked into this program.
std::vector<const FuzzTarget*>& FuzzTargets();
