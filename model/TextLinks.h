#pragma once
// The web and mail addresses that stand in a note's text. What is found can be given to the desktop as it is:
// it begins with http://, https:// or mailto:, and holds neither blanks nor quotation marks, nor characters
// that show nothing. Texts come from other computers too.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct TextLink {
    std::size_t start = 0, end = 0;  // where it stands in the text
    std::wstring address = {};       // what it opens

    bool Contains(std::size_t at) const { return at >= start && at < end; }
    bool operator==(const TextLink&) const = default;
};

// In the order of the text: what begins with http://, https://, mailto: or www., and mail addresses that
// stand alone, without the punctuation of the sentence around them. Of mailto: only the address counts,
// because what may follow it can attach files.
std::vector<TextLink> LinksIn(std::wstring_view text);
