#include "base/Text.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/support/Toplevels_unix.h"

std::unique_ptr<FileDialogOnScreen> FileDialogOnScreen::Find() {
    GtkWindow* found = nullptr;
    for (GtkWindow* window : Toplevels())
        if (GTK_IS_FILE_CHOOSER_DIALOG(window)) found = window;
    // The folder is read in the background.
    if (!found || !gtk_file_chooser_get_current_folder_file(GTK_FILE_CHOOSER(found))) return nullptr;
    return std::unique_ptr<FileDialogOnScreen>(new FileDialogOnScreen(found));
}

std::wstring FileDialogOnScreen::Title() const { return FromUtf8(gtk_window_get_title(GTK_WINDOW(window_))); }

std::filesystem::path FileDialogOnScreen::Folder() const {
    g_autofree char* folder = gtk_file_chooser_get_current_folder(GTK_FILE_CHOOSER(window_));
    return folder;
}

void FileDialogOnScreen::Choose(const std::filesystem::path& file) {
    GtkFileChooser* const chooser = GTK_FILE_CHOOSER(window_);
    if (gtk_file_chooser_get_action(chooser) == GTK_FILE_CHOOSER_ACTION_OPEN) {
        gtk_file_chooser_set_filename(chooser, file.c_str());
    } else {
        gtk_file_chooser_set_current_folder(chooser, file.parent_path().c_str());
        gtk_file_chooser_set_current_name(chooser, file.filename().c_str());
    }
    gtk_dialog_response(GTK_DIALOG(window_), GTK_RESPONSE_ACCEPT);
}

// As by Esc, after which GTK destroys the dialog.
void FileDialogOnScreen::Cancel() { g_signal_emit_by_name(window_, "close"); }
