#include "base/FileChooser_unix.h"

#include <memory>

#include "base/basText.h"
#include "base/basWait.h"

namespace {

void OnResponse(GtkDialog*, int response, gpointer answer) {
    *static_cast<std::optional<int>*>(answer) = response;
    WakeWaits();
}

}  // namespace

FileChooser::FileChooser(GtkWindow* owner, const std::wstring& title, bool save)
    : dialog_(gtk_file_chooser_dialog_new(
          ToUtf8(title).c_str(), owner, save ? GTK_FILE_CHOOSER_ACTION_SAVE : GTK_FILE_CHOOSER_ACTION_OPEN,
          "A_bbrechen", GTK_RESPONSE_CANCEL, save ? "_Speichern" : "Ö_ffnen", GTK_RESPONSE_ACCEPT, nullptr)) {
    gtk_dialog_set_default_response(GTK_DIALOG(dialog_), GTK_RESPONSE_ACCEPT);
    gtk_window_set_modal(GTK_WINDOW(dialog_), owner != nullptr);
}

FileChooser::~FileChooser() { gtk_widget_destroy(dialog_); }

std::optional<std::filesystem::path> FileChooser::Choose(std::filesystem::path& folder) {
    gtk_file_chooser_set_current_folder(Native(), folder.c_str());
    std::optional<int> answer;
    g_signal_connect(dialog_, "response", G_CALLBACK(OnResponse), &answer);
    gtk_window_present(GTK_WINDOW(dialog_));
    const WaitEnd end = WaitUntil([&] { return answer.has_value(); });
    g_signal_handlers_disconnect_by_data(dialog_, &answer);
    if (end == WaitEnd::Quitting || *answer != GTK_RESPONSE_ACCEPT) return std::nullopt;

    const std::unique_ptr<char, decltype(&g_free)> name(gtk_file_chooser_get_filename(Native()), g_free);
    if (!name) return std::nullopt;
    const std::filesystem::path file = name.get();
    folder = file.parent_path();
    return file;
}
