#include "base/SortKey.h"

#include "base/CaseFold.h"

namespace {

constexpr wchar_t kFirst = 0xC0;
// The characters from U+00C0 to U+017F as they are sorted.
constexpr std::wstring_view kSorted =
    L"AAAAAAÆCEEEEIIIIDNOOOOO×OUUUUYÞßAAAAAAÆCEEEEIIIIDNOOOOO÷OUUUUYÞY"
    L"AAAAAACCCCCCCCDDDDEEEEEEEEEEGGGGGGGGHHHHIIIIIIIIIIĲĲJJKKKLLLLLLL"
    L"LLLNNNNNNNNNOOOOOOŒŒRRRRRRSSSSSSSSTTTTTTUUUUUUUUUUUUWWYYYZZZZZZS";
static_assert(kSorted.size() == 0x180 - kFirst);

constexpr struct {
    wchar_t character;
    const wchar_t* letters;
} kPairs[] = {{L'ß', L"SS"}, {L'ẞ', L"SS"}, {L'Æ', L"AE"}, {L'Œ', L"OE"}, {L'Ĳ', L"IJ"}, {L'Þ', L"TH"}};

bool IsAccent(wchar_t c) { return c >= 0x300 && c <= 0x36F; }

}  // namespace

std::wstring SortKey(std::wstring_view text) {
    const std::wstring capitals = InCapitals(text);
    std::wstring key;
    key.reserve(2 * capitals.size() + 1);
    for (wchar_t c : capitals) {
        if (c >= kFirst && c < kFirst + static_cast<wchar_t>(kSorted.size()))
            c = kSorted[static_cast<std::size_t>(c - kFirst)];
        const wchar_t* letters = nullptr;
        for (const auto& pair : kPairs)
            if (pair.character == c) letters = pair.letters;
        if (letters)
            key += letters;
        else if (!IsAccent(c))
            key += c;
    }
    key += L'\0';
    return key + capitals;
}
