#pragma once
// Export files belong to the program: opening one imports its notes, printing one prints them.

#include <string>
#include <vector>

// Enters the file type with its icon and its two commands in the registry and, where that is another place,
// with the user's desktop. To be called at every start, from wherever the program may have been moved to.
// Failures are silent. Always true.
bool RegisterFileExtensions();

// A key below HKEY_CLASSES_ROOT and its unnamed value.
struct AssociationEntry {
    const wchar_t* key;
    std::wstring value;
};
std::vector<AssociationEntry> AssociationEntries(const std::wstring& program);

// Does on its own what the desktop needs beyond the registry: on Linux when the program is next idle.
// `changed`: the registry said something else before.
void RegisterWithDesktop(bool changed);
