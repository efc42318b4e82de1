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

// Answers the dialog that is open, again after half a second if it is still there: an answer that comes while
// a folder is being read may get lost. Gives up in the end.
class Answer {
  public:
    Answer(const Row& row, const fs::path& folder) : row_(row), folder_(folder) {
        const auto give = +[](gpointer answer) -> gboolean {
            static_cast<Answer*>(answer)->Give();
            return G_SOURCE_CONTINUE;
        };
        source_ = g_timeout_add(50, give, this);
    }
    ~Answer() { g_source_remove(source_); }

  private:
    void Give() {
        GList* windows = gtk_window_list_toplevels();
        GtkFileChooser* chooser = nullptr;
        for (GList* each = windows; each; each = each->next) {
            if (GTK_IS_FILE_CHOOSER_DIALOG(each->data)) chooser = GTK_FILE_CHOOSER(each->data);
        }
        g_list_free(windows);
        if (!chooser) return;
        GtkDialog* const dialog = GTK_DIALOG(chooser);
        if (++tries_ > 200) return gtk_dialog_response(dialog, GTK_RESPONSE_CANCEL);
        char* const current = gtk_file_chooser_get_current_folder(chooser);
        const bool there = current && folder_ == current;
        g_free(current);
        if (!there) return (void)gtk_file_chooser_set_current_folder(chooser, folder_.c_str());
        if (waiting_-- > 0) return;
        waiting_ = 10;
        GSList* filters = gtk_file_chooser_list_filters(chooser);
        GSList* filter = row_.allFiles ? g_slist_last(filters) : filters;
        gtk_file_chooser_set_filter(chooser, GTK_FILE_FILTER(filter->data));
        g_slist_free(filters);
        gtk_file_chooser_set_current_name(chooser, row_.typed);
        gtk_dialog_response(dialog, GTK_RESPONSE_ACCEPT);
    }

    const Row& row_;
    const fs::path& folder_;
    guint source_ = 0;
    int tries_ = 0, waiting_ = 0;
};

// GLib asks for the folders of content types when a file dialog first describes one, and then reads all types
// anew without giving back what it has read for pictures until then. Asked before that, it loses nothing.
class ContentTypes : public testing::Environment {
  public:
    void SetUp() override { g_content_type_get_mime_dirs(); }
};

const testing::Environment* const contentTypes = testing::AddGlobalTestEnvironment(new ContentTypes);

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
        const Answer answer(row, folder);
        EXPECT_EQ(ChooseFile(owner, {.DialogTitle = L"Test", .save = true}), FileName(folder / row.chosen));
    }
    fs::remove_all(folder);
}
