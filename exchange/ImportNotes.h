#pragma once
// Bringing notes from files into the store (ImportFile.h says from which).

#include <string>

class NoteStore;

// Takes the notes of the named file into the store, up to the first record without text. They are neither
// shown nor saved; the caller does that. False when there is no such file or it cannot be read, then the
// notes before the failure are taken; when it holds more than is taken from one file or does not answer, then
// none is.
bool ImportNotes(NoteStore& store, const std::wstring& fileName);

// Tells the user that notes of the named file could not be imported and, where that is known, why.
inline constexpr const wchar_t* kImportFailure = L"Fehler beim Importieren";  // the title
std::wstring ImportFailureText(const std::wstring& fileName, const std::wstring& reason = {});
void ShowImportFailure(const std::wstring& fileName, const std::wstring& reason = {});

// "Importieren": lets the user choose a file and its notes, takes them into the store, saves and shows them.
// When the dialog is open already it comes to the front instead.
void ImportNotes(NoteStore& store);
