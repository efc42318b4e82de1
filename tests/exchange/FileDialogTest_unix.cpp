#include <gtest/gtest.h>
#include <wx/dialog.h>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "exchange/FileDialog.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/support/Toplevels_unix.h"

namespace fs = std::filesystem;

namespace {

// Instead of export files only.
void ShowAllFiles() {
    for (GtkWindow* window : Toplevels()) {
        if (!GTK_IS_FILE_CHOOSER_DIALOG(window)) continue;
        GSList* const filters = gtk_file_chooser_list_filters(GTK_FILE_CHOOSER(window));
        gtk_file_chooser_set_filter(GTK_FILE_CHOOSER(window), GTK_FILE_FILTER(g_slist_last(filters)->data));
        g_slist_free(filters);
    }
}

// GLib asks for the folders of content types when a file dialog first describes one, and then reads all types
// anew without giving back what it has read for pictures until then. Asked before that, it loses nothing.
class ContentTypes : public testing::Environment {
  public:
    void SetUp() override { g_content_type_get_mime_dirs(); }
};

const testing::Environment* const contentTypes = testing::AddGlobalTestEnvironment(new ContentTypes);

}  // namespace

TEST(FileDialog, SavedFilesGetTheirEnding) {
    const fs::path folder = SharedDataFolder() / "kivora-dateien";
    fs::create_directories(folder);
    wxDialog owner(nullptr, wxID_ANY, L"Test");
    owner.Show();
    const struct {
        const char* typed;
        bool allFiles;
        const char* chosen;
    } rows[] = {{"ohne", false, "ohne.kvr"},
                {"am 21.11", false, "am 21.11.kvr"},
                {"groß.KVR", false, "groß.KVR"},
                {"anders.txt", true, "anders.txt"}};
    for (const auto& row : rows) {
        Repeated* const choosing = ChooseOnScreen([&] {
            if (row.allFiles) ShowAllFiles();
            return folder / row.typed;
        });
        EXPECT_EQ(ChooseFile(owner, {.DialogTitle = L"Test", .save = true}), FileName(folder / row.chosen));
        choosing->End();
    }
    fs::remove_all(folder);
}
