#pragma once
// Where unsaved work goes when the program has to end and nobody can be asked: a file that is private to the
// user and lies elsewhere than the notes. The next start takes it in and then removes it.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "model/AddressBook.h"
#include "model/Note.h"
#include "registry/KeepResult.h"

struct UnsavedImage {
    bool autostart = false;
    std::vector<Note> notes = {};
    std::vector<clsAddressBookEntry> entries = {};
    // Of what was last kept (NoteStore::Stored): where that is still all there is, the image takes its place.
    std::optional<std::uint64_t> stored = {};
    // Files that the program had taken over from another copy, but could not import.
    std::vector<std::wstring> files = {};

    bool operator==(const UnsavedImage&) const = default;
};

// A kept file with all notes (KeptFile.h), which can be imported like any other, and behind it the rest.
std::string EmergencyBytes(const UnsavedImage& image);
// Nothing for a file that was altered or cut off.
std::optional<UnsavedImage> ReadEmergencyBytes(const std::string& bytes);

// What is to be done with the notes that are there.
struct Takeover {
    std::vector<std::pair<std::size_t, Note>> same;  // which of them is this one, also where it stands
    std::vector<Note> added;
    std::vector<std::size_t> gone;
};
// replaces: the image takes the place of all that is there; else nothing goes. A note is also the same as
// what the registry gives back of it.
Takeover TakeoverOf(const std::vector<Note>& there, const std::vector<Note>& notes, bool replaces);

// Writes a new file into the first of the folders that takes one, and returns when it is on the disk.
KeepResult WriteEmergencyFile(const UnsavedImage& image, const std::vector<std::filesystem::path>& folders);
// The files that were written by copies with this data folder, oldest first. Folders that others could have
// written into are not looked at.
std::vector<std::filesystem::path> EmergencyFiles(const std::vector<std::filesystem::path>& folders);

// The folders in question, best first: those whose files are still there after the session has ended come
// before those that go with it.
std::vector<std::filesystem::path> EmergencyFolders();
// Makes the folder if it is missing. False unless it is one of this user, no link, and closed to all others.
bool IsPrivateFolder(const std::filesystem::path& folder);
