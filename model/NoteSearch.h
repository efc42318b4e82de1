#pragma once
// Finding notes by words. A note is found when every word occurs somewhere in its text, in any case, with
// umlauts and ß written as such or as ae, oe, ue and ss.

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Note.h"

// A text as it is compared: in capitals, with AE, OE, UE and SS, in UTF-8.
std::string Folded(std::wstring_view text);

// The first line in which there is something to read, as far as a list shows it.
std::wstring FirstLine(std::wstring_view text);

// A number that grows with the time that a note bears, as far as it can be read from it: a day, month and
// year with points between them, and a time of 24 hours. 0 for any other.
std::int64_t WrittenWhen(std::wstring_view creationTime);

// A note that is searched. The keys of two that are searched together differ.
struct SearchedNote {
    std::wstring key;
    std::wstring date;  // as it is listed
    Note note;

    bool operator==(const SearchedNote&) const = default;
};

class NoteSearch {
  public:
    // From now on these are searched, in this order. What was known of a note is kept as long as its text
    // stays the same, so a change of one among thousands costs little. False when they are all as they were.
    bool Search(std::vector<SearchedNote> notes);
    // The words that are to occur; all notes are found while there are none.
    void Find(std::wstring_view words);

    std::size_t Count() const { return all_.size(); }
    // The notes that are found, in their order.
    std::size_t CountFound() const { return found_.size(); }
    const SearchedNote& Found(std::size_t index) const { return all_[found_[index]].searched; }

  private:
    struct Entry {
        SearchedNote searched;
        std::string folded;
    };

    bool Matches(const Entry& entry) const;
    void FindAmongAll();

    std::vector<Entry> all_;
    std::wstring typed_;
    std::vector<std::string> words_;
    std::vector<std::size_t> found_;
};
