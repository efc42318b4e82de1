#include "print/PdfFileDialog_unix.h"

#include "dialogs/FileChooser_unix.h"

std::optional<std::filesystem::path> ChoosePdfFile() {
    static std::filesystem::path lastFolder;  // of this run
    const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    if (lastFolder.empty()) lastFolder = documents ? documents : g_get_home_dir();
    FileChooser chooser(nullptr, L"In Datei drucken (PDF)", true);
    gtk_file_chooser_set_do_overwrite_confirmation(chooser.Native(), TRUE);
    gtk_file_chooser_set_current_name(chooser.Native(), "Notizen.pdf");
    chooser.CompleteWith(".pdf");
    return chooser.Choose(lastFolder);
}
