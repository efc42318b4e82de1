#pragma once
// Where in the registry the program keeps what is its user's.

// With its last backslash. The number is that of the first version that kept notes there.
inline constexpr const wchar_t* kSettingsKey = L"HKLM\\Software\\Kivora\\1.5\\";

// Settings of the program stand beside that key: a save of the notes replaces all that it holds.
inline constexpr const wchar_t* kReceiveValue = L"HKLM\\Software\\Kivora\\Receive";

// Below it lie notes and address book entries, in keys whose names begin so.
inline constexpr const wchar_t* kNotePrefix = L"Note";
inline constexpr const wchar_t* kEntryPrefix = L"AddressBookEntry";
