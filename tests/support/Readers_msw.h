#pragma once
// Stands in for the service of Windows that tells screen readers the names and roles of windows, from the
// start of the tests on, and keeps what the program tells it. What runs under Wine has no other.

#include <windows.h>

#include <optional>
#include <string>

std::optional<std::wstring> NameGivenTo(HWND window);
std::optional<LONG> RoleGivenTo(HWND window);
