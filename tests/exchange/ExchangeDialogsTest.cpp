// Export and import as the user sees them: by the events of their dialogs.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/dnd.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>

#include "base/FileName.h"
#include "base/basMessage.h"
#include "base/basText.h"
#include "exchange/ExportFile.h"
#include "exchange/ExportPath.h"
#include "exchange/basExport.h"
#include "exchange/basImport.h"
#include "exchange/frmExport.h"
#include "exchange/frmImport.h"
#include "registry/clsRegistry.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"

namespace {

namespace fs = std::filesystem;

GtkWindow* FileChooser() {
    GtkWindow* found = nullptr;
    GList* windows = gtk_window_list_toplevels();
    for (GList* window = windows; window; window = window->next) {
        if (GTK_IS_FILE_CHOOSER_DIALOG(window->data)) found = GTK_WINDOW(window->data);
    }
    g_list_free(windows);
    return found;
}

// What a click on a row of the list does: this row alone is selected.
void Click(wxListBox& list, int row) {
    auto* rows = GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(list.GetHandle())));
    GtkTreePath* path = gtk_tree_path_new_from_indices(row, -1);
    gtk_tree_view_set_cursor(rows, path, nullptr, FALSE);
    gtk_tree_path_free(path);
}

class ExchangeTest : public testing::Test {
  protected:
    ExchangeTest() {
        setenv("GSETTINGS_BACKEND", "memory", 1);  // file dialogs remember their size
        Registry().DeleteKey(kSettingsKey);
        fs::remove_all(folder);
        fs::create_directories(folder);
        SetMessageObserver([this](const std::wstring& text, int flags, const std::wstring& title) {
            messages.push_back(std::to_wstring(flags) + L"|" + title + L"|" + text);
            return answer;
        });
    }
    ~ExchangeTest() override {
        SetMessageObserver({});
        ResetWaits();
        store.UnloadAllNotes();
        Registry().DeleteKey(kSettingsKey);
        fs::remove_all(folder);
        RunEvents();
    }

    frmNote& Add(const ExportedNote& record) {
        NotePtr note = store.CreateNote();
        note->Text(record.Text);
        note->CreationTime(record.CreationTime);
        note->Color(record.Color);
        note->Place(record.Left, record.Top, record.Width, record.Height);
        note->FontNoteSize(record.FontNoteSize);
        note->FontNoteBold(record.FontNoteBold);
        note->FontNoteItalic(record.FontNoteItalic);
        note->FontNoteUnderlined(record.FontNoteUnderlined);
        note->FontNoteAlignment(static_cast<std::int16_t>(record.FontNoteAlignment));
        note->HiddenForeground(record.Foreground);
        return store.AdoptNote(std::move(note));
    }
    std::vector<ExportedNote> StoredNotes() const {
        std::vector<ExportedNote> notes;
        for (const NotePtr& note : store.Notes()) {
            notes.push_back({.Text = note->Text(),
                             .CreationTime = note->CreationTime(),
                             .Left = static_cast<std::int32_t>(note->Left()),
                             .Top = static_cast<std::int32_t>(note->Top()),
                             .Width = static_cast<std::int32_t>(note->Width()),
                             .Height = static_cast<std::int32_t>(note->Height()),
                             .Color = note->Color(),
                             .FontNoteAlignment = note->FontNoteAlignment(),
                             .FontNoteSize = note->FontNoteSize(),
                             .FontNoteBold = note->FontNoteBold(),
                             .FontNoteItalic = note->FontNoteItalic(),
                             .FontNoteUnderlined = note->FontNoteUnderlined(),
                             .Foreground = note->Foreground()});
        }
        return notes;
    }

    fs::path Write(const char* name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    static std::string Content(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::wstring Name(const char* name) const { return FileName(folder / name); }

    // Runs the command and does something with its dialog.
    template <class Dialog>
    void Run(const std::function<void(Dialog&)>& act, const std::function<void()>& command) {
        const WhenShown<Dialog> user([&](Dialog& dialog) {
            ++opened;
            act(dialog);
        });
        command();
    }
    void Export(const std::function<void(frmExport&)>& act) {
        Run<frmExport>(act, [this] { ExportNotes(store); });
    }
    void Import(const std::function<void(frmImport&)>& act) {
        Run<frmImport>(act, [this] { ImportNotes(store); });
    }

    const fs::path folder = fs::temp_directory_path() / "kivora austausch ü test";
    const std::wstring exportFailed =
        L"16|Fehler|Beim Exportieren der Notiz(en) ist ein Fehler aufgetreten.\r\nMöglicherweise existiert "
        L"eine zum Exportieren vorgesehene Notiz nicht mehr oder der Dateiname ist ungültig.";
    NoteRecorder recorder;
    NoteStore store{recorder};
    std::vector<std::wstring> messages;
    MessageAnswer answer = MessageAnswer::Yes;
    int opened = 0;
};

using Messages = std::vector<std::wstring>;

TEST_F(ExchangeTest, ExportedNotesAreReadByAnotherReaderAndComeBack) {
    std::vector<ExportedNote> notes;
    for (const SampleFile& sample : SampleFiles())
        notes.insert(notes.end(), sample.notes.begin(), sample.notes.end());
    for (const ExportedNote& note : notes) Add(note);
    Export([&](frmExport& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Exportieren");
        EXPECT_EQ(dialog.lstNotizen->GetCount(), notes.size());
        EXPECT_EQ(dialog.lstNotizen->GetString(0), Flattened(notes[0].Text));
        dialog.txtPfad->SetValue(Name("alle ä.kvr"));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_EQ(Content(folder / "alle ä.kvr"), FileBytes(notes));

    store.UnloadAllNotes();
    recorder.calls.clear();
    Import([&](frmImport& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Importieren");
        dialog.txtDatei->SetValue(Name("alle ä.kvr"));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(StoredNotes(), notes);
    for (const NotePtr& note : store.Notes()) EXPECT_TRUE(note->IsShown());
    NoteStore saved(recorder);
    saved.LoadNotes();
    EXPECT_EQ(saved.CountNotes(), notes.size());
    saved.UnloadAllNotes();
    EXPECT_EQ(opened, 2);
}

TEST_F(ExchangeTest, GeometryIsRoundedToTheEvenNeighbour) {
    frmNote& note = Add({.Text = L"x", .CreationTime = L""});
    note.Place(2.5, 3.5, 1500.5, 1000.51);
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(Name("a.kvr"));
        Press(dialog.cmdOK);
    });
    const std::optional<ExportedNote> record = RecordOf(folder / "a.kvr", 0);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->Left, 2);
    EXPECT_EQ(record->Top, 4);
    EXPECT_EQ(record->Width, 1500);
    EXPECT_EQ(record->Height, 1001);
}

TEST_F(ExchangeTest, OKNeedsAPathAndANote) {
    Add({.Text = L"eins"});
    Add({.Text = L"zwei"});
    Export([&](frmExport& dialog) {
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        dialog.txtPfad->SetValue(L"a");
        EXPECT_TRUE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdKeine);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Click(*dialog.lstNotizen, 1);
        EXPECT_TRUE(dialog.cmdOK->IsEnabled());
        EXPECT_EQ(dialog.ChosenNotes(), std::vector<std::int32_t>{store.Notes()[1]->NoteKey()});
        Add({.Text = L"drei"});
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 2u);
        Press(dialog.cmdRefresh);
        EXPECT_EQ(dialog.ChosenNotes().size(), 3u);
        dialog.txtPfad->SetValue(L"");
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(ExchangeTest, OverwritingIsAskedForAndKeepsTheRest) {
    Add({.Text = L"neu", .CreationTime = L""});
    const std::string old(100, '\x07');
    const fs::path path = Write("alt.kvr", old);
    answer = MessageAnswer::No;
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        Press(dialog.cmdOK);
        EXPECT_EQ(dialog.Tag(), L"waiting");
        EXPECT_EQ(dialog.txtPfad->GetValue(), FileName(path));
        EXPECT_EQ(Content(path), old);
        answer = MessageAnswer::Yes;
        Press(dialog.cmdOK);
    });
    const std::wstring question = L"52|Datei existiert bereits|Die Datei " + FileName(path) +
                                  L" existiert bereits.\r\nSoll sie überschrieben werden?";
    EXPECT_EQ(messages, (Messages{question, question}));
    const std::string record =
        FileBytes({{.Text = L"neu", .CreationTime = L"", .Color = kYellow, .FontNoteSize = 0}});
    const std::string content = Content(path);
    EXPECT_EQ(content.size(), old.size());
    EXPECT_EQ(content.substr(0, 5), record.substr(0, 5));
    EXPECT_EQ(content.substr(record.size()), old.substr(record.size()));
}

TEST_F(ExchangeTest, TheQuestionStaysAboveTheDialog) {
    Add({.Text = L"neu"});
    const fs::path path = Write("alt.kvr", "");
    SetMessageObserver({});
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        const auto answerNo = [](gpointer data) -> gboolean {
            auto* parent = static_cast<frmExport*>(data);
            wxWindow* box = wxFindWindowByLabel(L"Datei existiert bereits");
            EXPECT_TRUE(box && box->GetParent() == parent);
            if (box) Press(wxWindow::FindWindowById(wxID_CANCEL, box));
            return G_SOURCE_REMOVE;
        };
        g_timeout_add(100, answerNo, &dialog);
        Press(dialog.cmdOK);
        EXPECT_EQ(dialog.Tag(), L"waiting");
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(fs::file_size(path), 0u);
}

TEST_F(ExchangeTest, EveryFailureOfAnExportIsToldInOneMessage) {
    frmNote& first = Add({.Text = L"eins", .CreationTime = L""});
    Add({.Text = L"zwei", .CreationTime = L""});
    Add({.Text = std::wstring(65'536, L'x')});
    const fs::path vanished = folder / "weg";
    const struct {
        const char* name;
        std::wstring path;
        std::function<void(frmExport&)> before;
        std::size_t written;
    } rows[] = {
        {"folder missing", FileName(vanished / "a.kvr"), {}, 0},
        {"a folder", FileName(folder), {}, 0},
        {"no space", L"/dev/full", {}, 0},
        {"text too long", Name("lang.kvr"), {}, 2},
        {"note gone", Name("gelöscht.kvr"), [&](frmExport&) { store.DeleteNote(first); }, 0},
    };
    for (const auto& row : rows) {
        messages.clear();
        Export([&](frmExport& dialog) {
            dialog.txtPfad->SetValue(row.path);
            if (row.before) row.before(dialog);
            Press(dialog.cmdOK);
        });
        EXPECT_EQ(messages, Messages{exportFailed}) << row.name;
        EXPECT_EQ(ListExport(FilePath(row.path)).size(), row.written) << row.name;
    }
    EXPECT_EQ(store.CountNotes(), 2u);
}

TEST_F(ExchangeTest, ATildeMeansTheHomeFolder) {
    const fs::path home = g_get_home_dir();
    const struct {
        const wchar_t* typed;
        fs::path path;
    } rows[] = {{L"~", home},          {L"~/b ü.kvr", home / "b ü.kvr"},
                {L"~b/c", "~b/c"},     {L"a~.kvr", "a~.kvr"},
                {L"/x/~/y", "/x/~/y"}, {L"", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(TypedPath(row.typed).lexically_normal(), row.path.lexically_normal());
}

TEST_F(ExchangeTest, ListPreviewAndImportMeanTheSameRecord) {
    std::mt19937 random(12);
    std::vector<ExportedNote> notes;
    for (int i = 0; i < 60; ++i) {
        ExportedNote note = SampleFiles()[i % 2].notes[static_cast<std::size_t>(i) % 4];
        note.Text = L"Notiz " + std::to_wstring(i) + std::wstring(random() % 400, L'ö');
        notes.push_back(note);
    }
    notes[40].Text.clear();  // ends the file
    const fs::path path = Write("viele.kvr", FileBytes(notes));
    std::vector<ExportedNote> expected;
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(path));
        ASSERT_EQ(dialog.lstNotizen->GetCount(), 40u);
        wxArrayInt selected;
        EXPECT_EQ(dialog.lstNotizen->GetSelections(selected), 40);
        EXPECT_EQ(dialog.txtNotiz->GetValue(), notes[0].Text);
        for (unsigned i = 0; i < 40; ++i) {
            Click(*dialog.lstNotizen, static_cast<int>(i));
            EXPECT_EQ(dialog.txtNotiz->GetValue(), notes[i].Text) << i;
            EXPECT_TRUE(notes[i].Text.starts_with(dialog.lstNotizen->GetString(i).ToStdWstring())) << i;
            EXPECT_EQ(dialog.txtNotiz->GetFont().GetPointSize(), notes[i].FontNoteSize) << i;
            EXPECT_EQ(dialog.txtNotiz->GetFont().GetUnderlined(), notes[i].FontNoteUnderlined) << i;
        }
        Press(dialog.cmdKeine);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        for (const int row : {3, 4, 20, 39}) {
            dialog.lstNotizen->SetSelection(row);
            expected.push_back(notes[static_cast<std::size_t>(row)]);
        }
        dialog.lstNotizen->Deselect(4);
        expected.erase(expected.begin() + 1);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(StoredNotes(), expected);
}

TEST_F(ExchangeTest, FilesWithoutNotesHaveNoPreview) {
    const fs::path good = Write("gut.kvr", FileBytes(SampleFiles()[1].notes));
    const fs::path empty = Write("leer.kvr", "");
    const fs::path ended = Write("ende.kvr", FileBytes({{.Text = L""}, {.Text = L"zwei"}}));
    Import([&](frmImport& dialog) {
        for (const fs::path& path : {fs::path(), empty, ended, folder, folder / "fehlt.kvr"}) {
            dialog.txtDatei->SetValue(FileName(good));
            EXPECT_TRUE(dialog.cmdOK->IsEnabled()) << path;
            EXPECT_TRUE(dialog.lstNotizen->IsEnabled()) << path;
            EXPECT_TRUE(dialog.txtNotiz->IsEnabled()) << path;
            dialog.txtDatei->SetValue(FileName(path));
            EXPECT_FALSE(dialog.cmdOK->IsEnabled()) << path;
            EXPECT_FALSE(dialog.lstNotizen->IsEnabled()) << path;
            EXPECT_EQ(dialog.txtNotiz->GetValue(), L"Keine Vorschau möglich.") << path;
            EXPECT_EQ(dialog.txtNotiz->GetFont().GetPointSize(), 8) << path;
            EXPECT_EQ(dialog.txtNotiz->GetFont().GetWeight(), wxFONTWEIGHT_NORMAL) << path;
            EXPECT_EQ(dialog.txtNotiz->GetFont().GetStyle(), wxFONTSTYLE_ITALIC) << path;
            EXPECT_FALSE(dialog.txtNotiz->GetFont().GetUnderlined()) << path;
        }
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_EQ(store.CountNotes(), 0u);
}

TEST_F(ExchangeTest, AFileThatHasGoneBringsNothing) {
    const fs::path path = Write("a.kvr", FileBytes(SampleFiles()[0].notes));
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(path));
        fs::remove(path);
        Click(*dialog.lstNotizen, 1);
        EXPECT_EQ(dialog.txtNotiz->GetValue(), L"Keine Vorschau möglich.");
        Press(dialog.cmdAlle);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_EQ(store.CountNotes(), 0u);
}

TEST_F(ExchangeTest, VeryManyRecordsAreShownSoon) {
    std::vector<ExportedNote> notes(100'000, SampleFiles()[0].notes[0]);
    notes.back().Text = L"letzte";
    const fs::path path = Write("a.kvr", FileBytes(notes));
    Import([&](frmImport& dialog) {
        const auto start = std::chrono::steady_clock::now();
        dialog.txtDatei->SetValue(FileName(path));
        RunEvents(std::chrono::milliseconds(1));
        const auto span = std::chrono::steady_clock::now() - start;
        EXPECT_LT(span, std::chrono::seconds(3));
        RecordProperty("milliseconds",
                       static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(span).count()));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), notes.size());
        Press(dialog.cmdKeine);
        dialog.lstNotizen->SetSelection(99'999);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(StoredNotes(), std::vector<ExportedNote>{notes.back()});
}

TEST_F(ExchangeTest, MoreThanBecomesWindowsIsRefusedAsAWhole) {
    const std::vector<ExportedNote> notes(kMostImportedNotes + 1, {.Text = L"1"});
    const fs::path path = Write("a.kvr", FileBytes(notes));
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    std::string texts;
    const std::string text =
        FileBytes({{.Text = std::wstring(65'535, L'x'), .CreationTime = std::wstring(65'535, L'y')}});
    while (texts.size() < kMostImportedCharacters + text.size()) texts += text;
    Write("a.kvr", texts);
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(path));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{L"16|Fehler beim Importieren|Beim Importieren der Notizen aus " +
                                 FileName(path) + L" ist ein Fehler aufgetreten."});
    EXPECT_EQ(store.CountNotes(), 0u);
    EXPECT_FALSE(ImportNotes(store, L""));
}

// The file dialog of the dialog that is open; closed by what `act` does with it.
void WithFileChooser(wxButton* button, const std::function<void(GtkWindow*)>& act) {
    bool found = false;
    struct Visit {
        const std::function<void(GtkWindow*)>& act;
        bool& found;
    } visit{act, found};
    const unsigned timer = g_timeout_add(
        50,
        [](gpointer data) -> gboolean {
            auto& each = *static_cast<Visit*>(data);
            GtkWindow* chooser = FileChooser();
            if (!chooser) return G_SOURCE_CONTINUE;
            // The folder is read in the background.
            if (!gtk_file_chooser_get_current_folder_file(GTK_FILE_CHOOSER(chooser)))
                return G_SOURCE_CONTINUE;
            each.found = true;
            each.act(chooser);
            return G_SOURCE_REMOVE;
        },
        &visit);
    Press(button);
    EXPECT_TRUE(found);
    if (!found) g_source_remove(timer);
    EXPECT_FALSE(FileChooser());
}

TEST_F(ExchangeTest, FileDialogsGiveNames) {
    Add({.Text = L"eins"});
    const fs::path path = Write("quelle ü.kvr", FileBytes(SampleFiles()[0].notes));
    Import([&](frmImport& dialog) {
        WithFileChooser(dialog.cmdDurchsuchen, [&](GtkWindow* chooser) {
            EXPECT_EQ(FromUtf8(gtk_window_get_title(chooser)), L"Kivora-Exportdatei öffnen...");
            gtk_file_chooser_set_filename(GTK_FILE_CHOOSER(chooser), path.c_str());
            g_timeout_add(
                300,
                [](gpointer window) -> gboolean {
                    gtk_dialog_response(GTK_DIALOG(window), GTK_RESPONSE_ACCEPT);
                    return G_SOURCE_REMOVE;
                },
                chooser);
        });
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 4u);
        WithFileChooser(dialog.cmdDurchsuchen, [&](GtkWindow* chooser) {
            char* current = gtk_file_chooser_get_current_folder(GTK_FILE_CHOOSER(chooser));
            EXPECT_EQ(current, folder.native()) << "the folder used last";
            g_free(current);
            gtk_dialog_response(GTK_DIALOG(chooser), GTK_RESPONSE_CANCEL);
        });
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(ExchangeTest, WriteProtectedFilesAreNotChosen) {
    Add({.Text = L"eins"});
    const fs::path path = Write("fest.kvr", "");
    fs::permissions(path, fs::perms::owner_read);
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(L"vorher");
        // Chooses the protected file until that is complained of, then another.
        const std::function<void()> choose = [&] {
            GtkWindow* chooser = FileChooser();
            if (!chooser) return;
            const fs::path name = messages.empty() ? path : folder / "neu.kvr";
            gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(chooser), name.parent_path().c_str());
            gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(chooser), name.filename().c_str());
            gtk_dialog_response(GTK_DIALOG(chooser), GTK_RESPONSE_ACCEPT);
        };
        const unsigned timer = g_timeout_add(
            300,
            [](gpointer data) -> gboolean {
                (*static_cast<const std::function<void()>*>(data))();
                return G_SOURCE_CONTINUE;
            },
            const_cast<std::function<void()>*>(&choose));
        Press(dialog.cmdSearch);
        g_source_remove(timer);
        EXPECT_EQ(dialog.txtPfad->GetValue(), Name("neu.kvr"));
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(messages, Messages{L"16|Schreibgeschützte Datei|Sie haben eine existierende Datei gewählt, "
                                 L"welche als schreibgeschützt markiert ist.\r\nWählen Sie bitte einen "
                                 L"anderen Dateinamen."});
}

TEST_F(ExchangeTest, QuittingEndsAnOpenFileDialog) {
    Import([&](frmImport& dialog) {
        WithFileChooser(dialog.cmdDurchsuchen, [](GtkWindow*) { EndAllWaits(); });
    });
    EXPECT_FALSE(OpenDialog<frmImport>());
    ResetWaits();
    EXPECT_EQ(opened, 1);
}

TEST_F(ExchangeTest, ADroppedFileFillsTheBox) {
    const fs::path path = Write("gezogen.kvr", FileBytes(SampleFiles()[0].notes));
    Import([&](frmImport& dialog) {
        for (wxWindow* window :
             {static_cast<wxWindow*>(&dialog), static_cast<wxWindow*>(dialog.txtDatei),
              static_cast<wxWindow*>(dialog.lstNotizen), static_cast<wxWindow*>(dialog.txtNotiz)}) {
            dialog.txtDatei->SetValue(L"");
            auto* target = dynamic_cast<wxFileDropTarget*>(window->GetDropTarget());
            ASSERT_TRUE(target);
            wxArrayString names;
            names.push_back(FileName(path));
            EXPECT_TRUE(target->OnDropFiles(0, 0, names));
            EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
            EXPECT_EQ(dialog.lstNotizen->GetCount(), 4u);
        }
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(ExchangeTest, EachDialogExistsOnce) {
    Export([&](frmExport& dialog) {
        ExportNotes(store);  // returns at once
        Press(dialog.cmdAbbrechen);
    });
    Import([&](frmImport& dialog) {
        ImportNotes(store);
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(opened, 2);
    EXPECT_FALSE(OpenDialog<frmExport>());
    EXPECT_FALSE(OpenDialog<frmImport>());
}

}  // namespace
