#include "model/NoteSearch.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"

namespace {

constexpr std::size_t kListedCharacters = 200;

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n' || c == 0xA0; }

// What a capital is compared as, together with a mark behind it that makes an umlaut of it.
std::wstring_view Spelling(wchar_t capital, wchar_t next) {
    constexpr wchar_t kTwoPointsAbove = 0x308;
    const bool umlaut = next == kTwoPointsAbove;
    switch (capital) {
        case L'Ä':
            return L"AE";
        case L'Ö':
            return L"OE";
        case L'Ü':
            return L"UE";
        case L'ß':
        case L'ẞ':
            return L"SS";
        case L'A':
            return umlaut ? L"AE" : L"";
        case L'O':
            return umlaut ? L"OE" : L"";
        case L'U':
            return umlaut ? L"UE" : L"";
        default:
            return L"";
    }
}

std::vector<std::string> Words(std::wstring_view text) {
    std::vector<std::string> words;
    for (auto from = text.begin(); from != text.end();) {
        const auto begin = std::find_if_not(from, text.end(), IsBlank);
        from = std::find_if(begin, text.end(), IsBlank);
        if (begin != from) words.push_back(Folded({begin, from}));
    }
    return words;
}

}  // namespace

std::string Folded(std::wstring_view text) {
    const std::wstring capitals = InCapitals(text);
    std::wstring folded;
    folded.reserve(capitals.size());
    for (std::size_t i = 0; i < capitals.size(); ++i) {
        const std::wstring_view spelling =
            Spelling(capitals[i], i + 1 < capitals.size() ? capitals[i + 1] : L'\0');
        if (spelling.empty()) {
            folded += capitals[i];
        } else {
            folded += spelling;
            if (capitals[i] < 0x80) ++i;  // the mark
        }
    }
    return ToUtf8(folded);
}

std::wstring FirstLine(std::wstring_view text) {
    const auto begin = std::find_if_not(text.begin(), text.end(), IsBlank);
    const std::wstring_view line(
        begin, std::find_if(begin, text.end(), [](wchar_t c) { return c == L'\r' || c == L'\n'; }));
    return Flattened(line.substr(0, kListedCharacters));
}

std::int64_t WrittenWhen(std::wstring_view creationTime) {
    std::array<std::int64_t, 6> numbers{};
    std::size_t count = 0;
    std::wstring marks;
    bool inside = false;
    for (const wchar_t c : creationTime) {
        const bool digit = c >= L'0' && c <= L'9';
        if (digit) {
            if (!inside && ++count > numbers.size()) return 0;
            std::int64_t& number = numbers[count - 1];
            number = 10 * number + (c - L'0');
            if (number > 9999) return 0;
        } else {
            marks += c;
        }
        inside = digit;
    }
    if (count != numbers.size() || !marks.starts_with(L"..") || !marks.ends_with(L"::")) return 0;
    std::swap(numbers[0], numbers[2]);
    return std::accumulate(numbers.begin(), numbers.end(), std::int64_t{0},
                           [](std::int64_t sum, std::int64_t number) { return 100 * sum + number; });
}

bool NoteSearch::Search(std::vector<SearchedNote> notes) {
    if (std::equal(notes.begin(), notes.end(), all_.begin(), all_.end(),
                   [](const SearchedNote& note, const Entry& entry) { return note == entry.searched; }))
        return false;
    std::unordered_map<std::wstring_view, Entry*> known;
    for (Entry& entry : all_) known[entry.searched.key] = &entry;
    std::vector<Entry> all;
    all.reserve(notes.size());
    for (SearchedNote& note : notes) {
        const auto found = known.find(note.key);
        const bool same = found != known.end() && found->second->searched.note.text == note.note.text;
        std::string folded = same ? std::move(found->second->folded) : Folded(note.note.text);
        all.push_back({std::move(note), std::move(folded)});
    }
    all_ = std::move(all);
    FindAmongAll();
    return true;
}

bool NoteSearch::Matches(const Entry& entry) const {
    return std::ranges::all_of(
        words_, [&](const std::string& word) { return entry.folded.find(word) != entry.folded.npos; });
}

void NoteSearch::FindAmongAll() {
    found_.clear();
    for (std::size_t i = 0; i < all_.size(); ++i) {
        if (Matches(all_[i])) found_.push_back(i);
    }
}

void NoteSearch::Find(std::wstring_view words) {
    // Who types on finds some of what is found already.
    const bool narrower = words.starts_with(typed_);
    typed_ = words;
    words_ = Words(words);
    if (narrower)
        std::erase_if(found_, [this](std::size_t index) { return !Matches(all_[index]); });
    else
        FindAmongAll();
}
