#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include "base/FileName.h"
#include "base/basText.h"
#include "base/basWait.h"
#include "exchange/ExportPath.h"
#include "exchange/FileDialog.h"

namespace {

std::filesystem::path lastFolder;  // of this run

struct DialogCloser {
    void operator()(GtkWidget* dialog) const { gtk_widget_destroy(dialog); }
};

void AddFilter(GtkFileChooser* chooser, const wchar_t* name, const char* pattern) {
    GtkFileFilter* filter = gtk_file_filter_new();
    gtk_file_filter_set_name(filter, ToUtf8(name).c_str());
    gtk_file_filter_add_pattern(filter, pattern);
    gtk_file_chooser_add_filter(chooser, filter);
}

void OnResponse(GtkDialog*, int response, gpointer answer) {
    *static_cast<std::optional<int>*>(answer) = response;
    WakeWaits();
}

}  // namespace

std::optional<std::wstring> ChooseFile(wxTopLevelWindow& owner, const FileDialogOptions& options) {
    // Not the toolkit's dialog: that waits in a loop which quitting the program cannot end.
    const std::unique_ptr<GtkWidget, DialogCloser> dialog(gtk_file_chooser_dialog_new(
        ToUtf8(options.DialogTitle).c_str(), GTK_WINDOW(owner.GetHandle()),
        options.save ? GTK_FILE_CHOOSER_ACTION_SAVE : GTK_FILE_CHOOSER_ACTION_OPEN, "A_bbrechen",
        GTK_RESPONSE_CANCEL, options.save ? "_Speichern" : "Ö_ffnen", GTK_RESPONSE_ACCEPT, nullptr));
    gtk_dialog_set_default_response(GTK_DIALOG(dialog.get()), GTK_RESPONSE_ACCEPT);
    GtkFileChooser* chooser = GTK_FILE_CHOOSER(dialog.get());
    AddFilter(chooser, L"Kivora-Exportdateien (*.kvr)", "*.[kK][vV][rR]");
    AddFilter(chooser, L"Alle Dateien (*.*)", "*");
    const std::filesystem::path folder = lastFolder.empty() ? DocumentsFolder() : lastFolder;
    gtk_file_chooser_set_current_folder(chooser, folder.c_str());

    std::optional<int> answer;
    g_signal_connect(dialog.get(), "response", G_CALLBACK(OnResponse), &answer);
    gtk_window_set_modal(GTK_WINDOW(dialog.get()), TRUE);
    gtk_window_present(GTK_WINDOW(dialog.get()));
    if (WaitUntil([&] { return answer.has_value(); }) == WaitEnd::Quitting) return std::nullopt;
    if (*answer != GTK_RESPONSE_ACCEPT) return std::nullopt;

    const std::unique_ptr<char, decltype(&g_free)> name(gtk_file_chooser_get_filename(chooser), g_free);
    if (!name) return std::nullopt;
    const std::filesystem::path file = name.get();
    lastFolder = file.parent_path();
    return FileName(file);
}
