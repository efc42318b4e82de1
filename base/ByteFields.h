#pragma once
// Numbers and texts as bytes, for files in which a break or a wrong byte has to be noticed. Numbers have
// their lowest byte first; a text is UTF-8 behind the number of its bytes, which has four.

#include <cstdint>
#include <string>
#include <string_view>

// FNV-1a, of 64 bits: a sum begins with kSumStart and takes in one value after the other. Each step makes
// different sums of different ones, so a single value that differs is never lost, and can be taken back.
constexpr std::uint64_t kSumStart = 0xCBF29CE484222325, kSumPrime = 0x100000001B3;
constexpr std::uint64_t SumWith(std::uint64_t sum, std::uint64_t value) { return (sum ^ value) * kSumPrime; }

// That of bytes.
std::uint64_t CheckSum(std::string_view bytes);

template <class Number>
void AddNumber(std::string& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

void AddText(std::string& bytes, std::wstring_view text);

// Takes fields from the beginning of bytes, which must live longer. Where they break off, all further fields
// are zeros and empty texts.
class FieldReader {
  public:
    explicit FieldReader(std::string_view bytes) : bytes_(bytes) {}

    template <class Number>
    Number Take() {
        Number number = 0;
        const std::string_view littleEndian = Bytes(sizeof number);
        for (std::size_t i = 0; i < littleEndian.size(); ++i)
            number |= static_cast<Number>(Number{static_cast<unsigned char>(littleEndian[i])} << (8 * i));
        return number;
    }
    std::string_view Bytes(std::size_t count);
    std::wstring Text();

    std::size_t Left() const { return bytes_.size(); }
    bool Complete() const { return complete_; }  // nothing was missing so far

  private:
    std::string_view bytes_;
    bool complete_ = true;
};
