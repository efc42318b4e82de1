#include <fcntl.h>
#include <unistd.h>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "exchange/ExportPath.h"
#include "exchange/KeptNotes.h"
#include "exchange/PatientRead.h"
#include "tests/exchange/ExchangeTest.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/support/SmallDisk_unix.h"
#include "tests/support/Toplevels_unix.h"

namespace {

namespace fs = std::filesystem;

// Whoever opens the file meanwhile waits, as for a network that has gone, and soon asks whether to go on.
class WithoutAnswer {
  public:
    explicit WithoutAnswer(const fs::path& file) : file_(open(file.c_str(), O_RDWR)) {
        readPatience = std::chrono::milliseconds(1);
        EXPECT_EQ(fcntl(file_, F_SETLEASE, F_WRLCK), 0);
    }
    ~WithoutAnswer() {
        close(file_);
        readPatience = patience_;
    }
    WithoutAnswer(const WithoutAnswer&) = delete;
    WithoutAnswer& operator=(const WithoutAnswer&) = delete;

  private:
    const int file_;
    const std::chrono::milliseconds patience_ = readPatience;
};

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

TEST_F(ExchangeTest, AFileThatDoesNotAnswerIsWaitedForAsLongAsTheUserWants) {
    const auto before = std::signal(SIGIO, SIG_IGN);  // tells that somebody is kept waiting
    const fs::path path = Write(L"a.kvr", FileBytes({{.Text = L"eins"}}));
    std::optional<WithoutAnswer> silent(path);
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    Import([&](frmImport& dialog) {
        answer = MessageAnswer::No;
        dialog.txtDatei->SetValue(FileName(path));
        EXPECT_TRUE(dialog.lstNotizen->IsEmpty());
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        EXPECT_EQ(messages, Messages{L"Importieren|52|Die Datei " + FileName(path) +
                                     L" antwortet nicht.\r\n\r\nSoll weiter auf sie gewartet werden?"});
        SetMessageObserver([&](const std::wstring&, int, const std::wstring&) {
            silent.reset();
            return MessageAnswer::Yes;
        });
        dialog.txtDatei->SetValue(FileName(path));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 1u);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(store.CountNotes(), 1u);
    std::signal(SIGIO, before);
}

TEST_F(ExchangeTest, AFullDiskLeavesTheFileAndIsTold) {
    Add({.Text = std::wstring(5000, L'x')});
    const fs::path path = Write(L"alt.kvr", "alt");
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        const SmallDisk disk(1000);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(Content(path), "alt");
    ASSERT_EQ(messages.size(), 2u) << "the question and the failure";
    EXPECT_TRUE(messages[1].starts_with(L"Fehler|16|Beim Exportieren der Notiz(en)"));
    EXPECT_NE(messages[1].find(L"\r\n\r\nAuf dem Laufwerk ist kein Platz mehr frei."), std::wstring::npos);
}

TEST_F(ExchangeTest, NoNoteIsDeletedWhenOneOfTheBinsFilesIsNotKept) {
    const SmallDisk disk(100'000);
    // The first file ends with a text of that length; the second one would fit.
    EXPECT_FALSE(KeepDeletedNotes({{.text = std::wstring(16'000'000, L'x')}, {.text = L"klein"}}).Kept());
}

TEST_F(ExchangeTest, SavedFilesGetTheirEnding) {
    const struct {
        const wchar_t* typed;
        bool allFiles;
        const wchar_t* chosen;
    } rows[] = {{L"ohne", false, L"ohne.kvr"},
                {L"am 21.11", false, L"am 21.11.kvr"},
                {L"groß.KVR", false, L"groß.KVR"},
                {L"anders.txt", true, L"anders.txt"}};
    Export([&](frmExport& dialog) {
        for (const auto& row : rows) {
            Repeated* const choosing = ChooseOnScreen([&] {
                if (row.allFiles) ShowAllFiles();
                return folder / FilePath(row.typed);
            });
            Press(dialog.cmdSearch);
            EXPECT_EQ(dialog.txtPfad->GetValue(), Name(row.chosen));
            choosing->End();
        }
        Press(dialog.cmdAbbrechen);
    });
}

TEST(ExportPath, ATildeMeansTheHomeFolder) {
    const fs::path home = g_get_home_dir();
    const std::pair<const wchar_t*, fs::path> rows[] = {
        {L"~", home},          {L"~/b ü.kvr", home / "b ü.kvr"},
        {L"~b/c", "~b/c"},     {L"a~.kvr", "a~.kvr"},
        {L"/x/~/y", "/x/~/y"}, {L"", ""}};
    for (const auto& [typed, path] : rows)
        EXPECT_EQ(TypedPath(typed).lexically_normal(), path.lexically_normal());
}

}  // namespace
