#pragma once
// The platform's dialog for choosing a file that is open on the screen.

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/Events.h"

class FileDialogOnScreen {
  public:
    // The dialog that is open and knows its folder; null when there is none.
    static std::unique_ptr<FileDialogOnScreen> Find();

    std::wstring Title() const;
    std::filesystem::path Folder() const;
    // Enters a file with its folder, and takes what was entered.
    void Choose(const std::filesystem::path& file);
    void Cancel();

  private:
    explicit FileDialogOnScreen(void* window) : window_(window) {}

    void* const window_;  // as the platform knows it
};

// Chooses files in the dialog that opens, until it has gone: an answer that comes while a folder is being
// read may get lost. To be ended then.
inline Repeated* ChooseOnScreen(std::function<std::filesystem::path()> file) {
    return Repeated::Every(std::chrono::milliseconds(300), [file = std::move(file)] {
        if (const auto dialog = FileDialogOnScreen::Find()) dialog->Choose(file());
        return false;
    });
}
