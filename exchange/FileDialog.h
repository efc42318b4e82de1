#pragma once
// The platform's dialogs for choosing a file. The program goes on meanwhile, and quitting it closes them.

#include <filesystem>
#include <optional>
#include <string>

class wxTopLevelWindow;

struct FileDialogOptions {
    std::wstring DialogTitle = {};
    bool save = false;       // for a file to be written, else for one that exists
    std::wstring name = {};  // suggested for it; then the dialog also asks before one is replaced
};

// Lets the user choose an export file; nothing when that is cancelled. Begins in the folder of the last file
// chosen in this run, at first in that of the user's documents. `owner` takes no input meanwhile.
std::optional<std::wstring> ChooseFile(wxTopLevelWindow& owner, const FileDialogOptions& options);
