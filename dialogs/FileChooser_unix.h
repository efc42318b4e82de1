#pragma once
// GTK's dialog for choosing a file. Not by way of wxFileDialog: that waits in a loop of GTK's own, which
// quitting the program cannot end.

#include <gtk/gtk.h>

#include <filesystem>
#include <optional>
#include <string>

class FileChooser {
  public:
    // owner: takes no input meanwhile; null for none. save: for a file to be written, else for one that
    // exists.
    FileChooser(GtkWindow* owner, const std::wstring& title, bool save);
    ~FileChooser();  // closes it
    FileChooser(const FileChooser&) = delete;
    FileChooser& operator=(const FileChooser&) = delete;

    // For what else the dialog should offer.
    GtkFileChooser* Native() const { return GTK_FILE_CHOOSER(dialog_); }

    // A chosen name without this ending (".pdf") gets it, before the dialog asks whether an existing file may
    // be replaced. filter: only while this one is chosen; null for always.
    void CompleteWith(const std::string& ending, const GtkFileFilter* filter = nullptr);

    // Shows the dialog in this folder and lets events run until the user has answered. The file, and its
    // folder in the place of that one; nothing when the user cancels or the program quits.
    std::optional<std::filesystem::path> Choose(std::filesystem::path& folder);

  private:
    static void OnResponse(GtkDialog* dialog, int response, gpointer chooser);
    bool AddEnding();

    GtkWidget* const dialog_;
    std::optional<int> answer_;
    std::string ending_;
    const GtkFileFilter* endingFilter_ = nullptr;
};
