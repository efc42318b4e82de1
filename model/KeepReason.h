#pragma once
// Why notes could not be read or kept, or another file not be written, in words for their user.

#include <string>
#include <system_error>

#include "registry/KeepResult.h"

// What is wrong and what helps, in whole sentences; the number of the error only where it is none of those
// that are expected. `file` is the one that it is about, beginning with "die Datei". Empty for a result that
// was kept.
std::wstring ReasonText(const KeepResult& result, const std::wstring& file = L"die Datei mit Ihren Notizen");

// One sentence for a file that the user has named. Empty where its name is at fault, and nothing else is
// known.
std::wstring FileReasonText(const std::error_code& error);
