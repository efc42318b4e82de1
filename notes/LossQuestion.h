#pragma once
// What a user is asked before notes leave the program and lose characters on the way.

#include <cstdint>
#include <vector>

class NoteStore;

// True when none of the notes has characters that only the program itself can keep, and when the user lets it
// go on all the same; notes that are gone do not count. doing: as with LossQuestion (model/LostCharacters.h).
// Waits for the answer. False while another such question waits for its own, and when the program quits.
bool MayLoseCharacters(const NoteStore& store, const std::vector<std::int32_t>& noteKeys,
                       const wchar_t* doing);
