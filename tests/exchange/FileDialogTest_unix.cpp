#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <stdlib.h>
#include <wx/dialog.h>

#include <string>

#include "base/FileName.h"
#include "exchange/FileDialog.h"

namespace fs = std::filesystem;

namespace {

struct Row {
    const char* typed;
    bool allFiles;  // instead of export files
    const char* chosen;
};

// Answers the dialog that is open; goes on until there is one that knows its folder.
struct Answer {
    Row row;
    fs::path folder;

    static gboolean Give(gpointer data) {
        const auto& answer = *static_cast<const Answer*>(data);
        GList* windows = gtk_window_list_toplevels();
        GtkFileChooser* chooser = nullptr;
        for (GList* each = windows; each; each = each->next) {
            if (GTK_IS_FILE_CHOOSER_DIALOG(each->data)) chooser = GTK_FILE_CHOOSER(each->data);
        }
        g_list_free(windows);
        if (!chooser || !gtk_file_chooser_get_current_folder_file(chooser)) return G_SOURCE_CONTINUE;
        GSList* filters = gtk_file_chooser_list_filters(chooser);
        GSList* filter = answer.row.allFiles ? g_slist_last(filters) : filters;
        gtk_file_chooser_set_filter(chooser, GTK_FILE_FILTER(filter->data));
        g_slist_free(filters);
        gtk_file_chooser_set_current_folder(chooser, answer.folder.c_str());
        gtk_file_chooser_set_current_name(chooser, answer.row.typed);
        gtk_dialog_response(GTK_DIALOG(chooser), GTK_RESPONSE_ACCEPT);
        return G_SOURCE_REMOVE;
    }
};

}  // namespace

TEST(FileDialog, SavedFilesGetTheirEnding) {
    std::string pattern = (fs::temp_directory_path() / "kivora-dateien-XXXXXX").native();
    const fs::path folder = mkdtemp(pattern.data());
    wxDialog owner(nullptr, wxID_ANY, L"Test");
    owner.Show();
    const Row rows[] = {{"ohne", false, "ohne.kvr"},
                        {"am 21.11", false, "am 21.11.kvr"},
                        {"groß.KVR", false, "groß.KVR"},
                        {"anders.txt", true, "anders.txt"}};
    for (const Row& row : rows) {
        Answer answer{row, folder};
        g_timeout_add(50, &Answer::Give, &answer);
        EXPECT_EQ(ChooseFile(owner, {.DialogTitle = L"Test", .save = true}), FileName(folder / row.chosen));
    }
    fs::remove_all(folder);
}
