#pragma once
// Date and time as people write them: in the form that the user's system is set to, the German one where it
// is set to none.

#include <string>
#include <vector>

std::wstring CurrentDateText();  // "21.11.2026"
std::wstring CurrentTimeText();  // "09:05:00"

// What a note that is written now bears as its creation time: "21.11.2026, 09:05:00".
inline std::wstring CurrentCreationTime() { return CurrentDateText() + L", " + CurrentTimeText(); }

// A creation time in its forms, longest first: whole, without the seconds, the date alone.
std::vector<std::wstring> TimeForms(const std::wstring& time);
