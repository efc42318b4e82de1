#pragma once
// The order in which Germans look things up, the same on every system and in every locale.

#include <string>
#include <string_view>

// Of two texts the one with the smaller key comes first: without regard to case, umlauts and letters with
// accents among those without, ß as ss. Texts that differ in nothing else come with the plain letter first.
std::wstring SortKey(std::wstring_view text);
