#include <wx/toplevel.h>

#include "base/FileName.h"
#include "base/Text.h"
#include "dialogs/FileChooser_unix.h"
#include "exchange/ExportPath.h"
#include "exchange/FileDialog.h"

namespace {

GtkFileFilter* AddFilter(GtkFileChooser* chooser, const wchar_t* name, const char* pattern) {
    GtkFileFilter* filter = gtk_file_filter_new();
    gtk_file_filter_set_name(filter, ToUtf8(name).c_str());
    gtk_file_filter_add_pattern(filter, pattern);
    gtk_file_chooser_add_filter(chooser, filter);
    return filter;
}

}  // namespace

std::optional<std::wstring> ChooseFile(wxTopLevelWindow& owner, const FileDialogOptions& options) {
    static std::filesystem::path lastFolder;  // of this run
    if (lastFolder.empty()) lastFolder = DocumentsFolder();
    FileChooser chooser(GTK_WINDOW(owner.GetHandle()), options.DialogTitle, options.save);
    const GtkFileFilter* exportFiles =
        AddFilter(chooser.Native(), L"Kivora-Exportdateien (*.kvr)", "*.[kK][vV][rR]");
    AddFilter(chooser.Native(), L"Alle Dateien (*.*)", "*");
    // Without its ending neither this dialog nor the file manager would know the file again.
    if (options.save) chooser.CompleteWith(".kvr", exportFiles);
    if (!options.name.empty()) {
        gtk_file_chooser_set_current_name(chooser.Native(), ToUtf8(options.name).c_str());
        gtk_file_chooser_set_do_overwrite_confirmation(chooser.Native(), TRUE);
    }
    const std::optional<std::filesystem::path> file = chooser.Choose(lastFolder);
    if (!file) return std::nullopt;
    return FileName(*file);
}
