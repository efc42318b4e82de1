#include "print/PdfFileDialog_unix.h"

#include <gtk/gtk.h>

#include <memory>

#include "base/basWait.h"

namespace {

std::filesystem::path lastFolder;  // of this run

struct DestroyWidget {
    void operator()(GtkWidget* widget) const { gtk_widget_destroy(widget); }
};

void OnResponse(GtkDialog*, int response, gpointer answer) {
    *static_cast<std::optional<int>*>(answer) = response;
    WakeWaits();
}

}  // namespace

std::optional<std::filesystem::path> ChoosePdfFile() {
    const std::unique_ptr<GtkWidget, DestroyWidget> dialog(gtk_file_chooser_dialog_new(
        "In Datei drucken (PDF)", nullptr, GTK_FILE_CHOOSER_ACTION_SAVE, "A_bbrechen", GTK_RESPONSE_CANCEL,
        "_Speichern", GTK_RESPONSE_ACCEPT, nullptr));
    gtk_dialog_set_default_response(GTK_DIALOG(dialog.get()), GTK_RESPONSE_ACCEPT);
    GtkFileChooser* chooser = GTK_FILE_CHOOSER(dialog.get());
    gtk_file_chooser_set_do_overwrite_confirmation(chooser, TRUE);
    const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    if (lastFolder.empty()) lastFolder = documents ? documents : g_get_home_dir();
    gtk_file_chooser_set_current_folder(chooser, lastFolder.c_str());
    gtk_file_chooser_set_current_name(chooser, "Notizen.pdf");

    std::optional<int> answer;
    g_signal_connect(dialog.get(), "response", G_CALLBACK(OnResponse), &answer);
    gtk_window_present(GTK_WINDOW(dialog.get()));
    if (WaitUntil([&] { return answer.has_value(); }) == WaitEnd::Quitting) return std::nullopt;
    if (*answer != GTK_RESPONSE_ACCEPT) return std::nullopt;

    const std::unique_ptr<char, decltype(&g_free)> name(gtk_file_chooser_get_filename(chooser), g_free);
    if (!name) return std::nullopt;
    const std::filesystem::path file = name.get();
    lastFolder = file.parent_path();
    return file;
}
