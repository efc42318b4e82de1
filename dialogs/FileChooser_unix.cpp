#include "dialogs/FileChooser_unix.h"

#include <memory>

#include "base/Text.h"
#include "dialogs/DialogStack.h"
#include "dialogs/Wait.h"
#include "res/Theme.h"

namespace {

// A path that GTK has allocated for its caller, if there is one.
std::optional<std::filesystem::path> Path(char* given) {
    const std::unique_ptr<char, decltype(&g_free)> name(given, g_free);
    if (!name) return std::nullopt;
    return name.get();
}

std::optional<std::filesystem::path> ChosenIn(GtkFileChooser* chooser) {
    return Path(gtk_file_chooser_get_filename(chooser));
}

std::optional<std::filesystem::path> FolderOf(GtkFileChooser* chooser) {
    return Path(gtk_file_chooser_get_current_folder(chooser));
}

}  // namespace

FileChooser::FileChooser(GtkWindow* owner, const std::wstring& title, bool save)
    : dialog_(gtk_file_chooser_dialog_new(
          ToUtf8(title).c_str(), owner, save ? GTK_FILE_CHOOSER_ACTION_SAVE : GTK_FILE_CHOOSER_ACTION_OPEN,
          "A_bbrechen", GTK_RESPONSE_CANCEL, save ? "_Speichern" : "Ö_ffnen", GTK_RESPONSE_ACCEPT, nullptr)) {
    LoadTheme();
    g_object_ref(dialog_);  // GTK destroys it when it is closed by Esc or its frame
    gtk_dialog_set_default_response(GTK_DIALOG(dialog_), GTK_RESPONSE_ACCEPT);
    gtk_window_set_modal(GTK_WINDOW(dialog_), owner != nullptr);
    gtk_window_set_keep_above(GTK_WINDOW(dialog_), DialogsAbove::Any());
}

FileChooser::~FileChooser() {
    gtk_widget_destroy(dialog_);
    g_object_unref(dialog_);
}

void FileChooser::CompleteWith(const std::string& ending, const GtkFileFilter* filter) {
    ending_ = ending;
    endingFilter_ = filter;
}

std::optional<std::filesystem::path> FileChooser::Choose(std::filesystem::path& folder) {
    gtk_file_chooser_set_current_folder(Native(), folder.c_str());
    answer_.reset();
    g_signal_connect(dialog_, "response", G_CALLBACK(OnResponse), this);
    gtk_window_present(GTK_WINDOW(dialog_));
    const WaitEnd end = WaitUntil([&] { return answer_.has_value(); });
    g_signal_handlers_disconnect_by_data(dialog_, this);
    if (end == WaitEnd::Quitting || *answer_ != GTK_RESPONSE_ACCEPT) return std::nullopt;

    const std::optional<std::filesystem::path> file = ChosenIn(Native());
    if (file) folder = file->parent_path();
    return file;
}

void FileChooser::OnResponse(GtkDialog* dialog, int response, gpointer chooser) {
    auto* self = static_cast<FileChooser*>(chooser);
    if (response == GTK_RESPONSE_ACCEPT && self->AddEnding()) {
        // Once more for the whole name.
        gtk_dialog_response(dialog, response);
        return;
    }
    self->answer_ = response;
    WakeWaits();
}

bool FileChooser::AddEnding() {
    if (ending_.empty()) return false;
    if (endingFilter_ && gtk_file_chooser_get_filter(Native()) != endingFilter_) return false;
    std::optional<std::filesystem::path> file = ChosenIn(Native());
    if (!file || g_ascii_strcasecmp(file->extension().c_str(), ending_.c_str()) == 0) return false;
    *file += ending_;
    // A folder that is set anew is read anew, and an answer that comes meanwhile may get lost.
    if (FolderOf(Native()) != file->parent_path())
        gtk_file_chooser_set_current_folder(Native(), file->parent_path().c_str());
    gtk_file_chooser_set_current_name(Native(), file->filename().c_str());
    return true;
}
