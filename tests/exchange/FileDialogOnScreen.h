#pragma once
// The platform's dialog for choosing a file that is open on the screen.

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/Events.h"

class FileDialogOnScreen {
  public:
    virtual ~FileDialogOnScreen() = default;

    // The dialog that is open and knows its folder; null when there is none.
    static std::unique_ptr<FileDialogOnScreen> Find();

    virtual std::wstring Title() const = 0;
    virtual std::filesystem::path Folder() const = 0;

    // Enters a file with its folder, and takes what was entered.
    virtual void Enter(const std::filesystem::path& file) = 0;
    virtual void Accept() = 0;
    virtual void Cancel() = 0;
};

// Chooses files in the dialog that opens, until it has gone: an answer that comes while a folder is being
// read may get lost. To be ended then.
inline Repeated* ChooseOnScreen(std::function<std::filesystem::path()> file) {
    return Repeated::Every(std::chrono::milliseconds(300), [file = std::move(file)] {
        if (const auto dialog = FileDialogOnScreen::Find()) {
            dialog->Enter(file());
            dialog->Accept();
        }
        return false;
    });
}
