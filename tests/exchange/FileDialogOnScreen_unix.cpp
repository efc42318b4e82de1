#include "base/Text.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/support/Toplevels_unix.h"

namespace {

class GtkFileDialog : public FileDialogOnScreen {
  public:
    explicit GtkFileDialog(GtkFileChooser* chooser) : chooser_(chooser) {}

    std::wstring Title() const override { return FromUtf8(gtk_window_get_title(GTK_WINDOW(chooser_))); }
    std::filesystem::path Folder() const override {
        char* current = gtk_file_chooser_get_current_folder(chooser_);
        const std::filesystem::path folder = current;
        g_free(current);
        return folder;
    }
    void Enter(const std::filesystem::path& file) override {
        if (gtk_file_chooser_get_action(chooser_) == GTK_FILE_CHOOSER_ACTION_OPEN) {
            gtk_file_chooser_set_filename(chooser_, file.c_str());
        } else {
            gtk_file_chooser_set_current_folder(chooser_, file.parent_path().c_str());
            gtk_file_chooser_set_current_name(chooser_, file.filename().c_str());
        }
    }
    void Accept() override { gtk_dialog_response(GTK_DIALOG(chooser_), GTK_RESPONSE_ACCEPT); }
    // As by Esc, after which GTK destroys the dialog.
    void Cancel() override { g_signal_emit_by_name(chooser_, "close"); }

  private:
    GtkFileChooser* chooser_;
};

}  // namespace

std::unique_ptr<FileDialogOnScreen> FileDialogOnScreen::Find() {
    GtkFileChooser* found = nullptr;
    for (GtkWindow* window : Toplevels())
        if (GTK_IS_FILE_CHOOSER_DIALOG(window)) found = GTK_FILE_CHOOSER(window);
    // The folder is read in the background.
    if (!found || !gtk_file_chooser_get_current_folder_file(found)) return nullptr;
    return std::make_unique<GtkFileDialog>(found);
}
