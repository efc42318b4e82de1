#pragma once
// All that the program keeps: the notes, the autostart flag and the address book. They lie under one key of
// the registry and are read and written here and nowhere else, everything at once.
//
// The subkeys of notes are numbered without gaps in the order of writing, those of address book entries too.
// Reading takes them in the registry's order, which is alphabetical: "Note10" comes before "Note2".

#include <cstdint>
#include <vector>

#include "model/AddressBook.h"
#include "model/Note.h"
#include "registry/KeepResult.h"
#include "registry/SettingsKey.h"

struct StoredNote {
    std::int32_t key = 0;  // that names the note in the running program: its place among all subkeys
    Note note;
    std::wstring tooLong;  // the text when it is longer than what reads back, and the note's is empty
};

struct StoredImage {
    bool autostart = false;  // the program starts with the user's session
    std::vector<StoredNote> notes;
    std::vector<clsAddressBookEntry> entries;  // names may be there more than once
};

// What is there; values that are missing read as empty or 0. Nothing where it cannot be read for now
// (RegistryHealth.h).
StoredImage ReadStoredImage();

// Replaces all there is, as ReplaceKey does.
KeepResult WriteStoredImage(bool autostart, const std::vector<const Note*>& notes,
                            const std::vector<clsAddressBookEntry>& entries);

// A number that is another one when WriteStoredImage would write anything else than a different order. With
// Digested::AsRead it is that of what ReadStoredImage would give afterwards, whatever the registry makes of
// long texts and rare characters.
enum class Digested { Exactly, AsRead };
std::uint64_t DigestOf(bool autostart, const std::vector<const Note*>& notes,
                       const std::vector<clsAddressBookEntry>& entries, Digested how = Digested::Exactly);
