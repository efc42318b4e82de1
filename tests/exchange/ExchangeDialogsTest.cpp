// Export and import as the user sees them: by the events of their dialogs.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dnd.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>

#include "base/DataFolder.h"
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
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Support.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class ExchangeTest : public testing::Test {
  protected:
    ExchangeTest() {
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

    fs::path Write(const wchar_t* name, const std::string& bytes) const {
        std::ofstream(folder / FilePath(name), std::ios::binary) << bytes;
        return folder / FilePath(name);
    }
    static std::string Content(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::wstring Name(const wchar_t* name) const { return FileName(folder / FilePath(name)); }

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

    const fs::path folder = SharedDataFolder() / FilePath(L"kivora austausch ü test");
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
        dialog.txtPfad->SetValue(Name(L"alle ä.kvr"));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_EQ(Content(FilePath(Name(L"alle ä.kvr"))), FileBytes(notes));

    store.UnloadAllNotes();
    recorder.calls.clear();
    Import([&](frmImport& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Importieren");
        dialog.txtDatei->SetValue(Name(L"alle ä.kvr"));
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
        dialog.txtPfad->SetValue(Name(L"a.kvr"));
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
    const fs::path path = Write(L"alt.kvr", old);
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
    const fs::path path = Write(L"alt.kvr", "");
    SetMessageObserver({});
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        After(100ms, [&] {
            wxWindow* box = wxFindWindowByLabel(L"Datei existiert bereits");
            EXPECT_TRUE(box && box->GetParent() == &dialog);
            if (box) Press(wxWindow::FindWindowById(wxID_CANCEL, box));
        });
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
        {"no room", FileWithoutRoom(), {}, 0},
        {"text too long", Name(L"lang.kvr"), {}, 2},
        {"note gone", Name(L"gelöscht.kvr"), [&](frmExport&) { store.DeleteNote(first); }, 0},
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

TEST_F(ExchangeTest, ListPreviewAndImportMeanTheSameRecord) {
    std::mt19937 random(12);
    std::vector<ExportedNote> notes;
    for (int i = 0; i < 60; ++i) {
        ExportedNote note = SampleFiles()[i % 2].notes[static_cast<std::size_t>(i) % 4];
        note.Text = L"Notiz " + std::to_wstring(i) + std::wstring(random() % 400, L'ö');
        notes.push_back(note);
    }
    notes[40].Text.clear();  // ends the file
    const fs::path path = Write(L"viele.kvr", FileBytes(notes));
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
    const fs::path good = Write(L"gut.kvr", FileBytes(SampleFiles()[1].notes));
    const fs::path empty = Write(L"leer.kvr", "");
    const fs::path ended = Write(L"ende.kvr", FileBytes({{.Text = L""}, {.Text = L"zwei"}}));
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
    const fs::path path = Write(L"a.kvr", FileBytes(SampleFiles()[0].notes));
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
    const fs::path path = Write(L"a.kvr", FileBytes(notes));
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
    const fs::path path = Write(L"a.kvr", FileBytes(notes));
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    std::string texts;
    const std::string text =
        FileBytes({{.Text = std::wstring(65'535, L'x'), .CreationTime = std::wstring(65'535, L'y')}});
    while (texts.size() < kMostImportedCharacters + text.size()) texts += text;
    Write(L"a.kvr", texts);
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
void WithFileDialog(wxButton* button, std::function<void(FileDialogOnScreen&)> act) {
    bool found = false;
    auto* visit = Repeated::Every(50ms, [&] {
        const auto dialog = FileDialogOnScreen::Find();
        found = dialog != nullptr;
        if (found) act(*dialog);
        return found;
    });
    Press(button);
    EXPECT_TRUE(found);
    if (!found) visit->End();
    EXPECT_FALSE(FileDialogOnScreen::Find());
}

void AcceptSoon() {
    After(300ms, [] {
        if (const auto dialog = FileDialogOnScreen::Find()) dialog->Accept();
    });
}

TEST_F(ExchangeTest, FileDialogsGiveNames) {
    Add({.Text = L"eins"});
    const fs::path path = Write(L"quelle ü.kvr", FileBytes(SampleFiles()[0].notes));
    Import([&](frmImport& dialog) {
        WithFileDialog(dialog.cmdDurchsuchen, [&](FileDialogOnScreen& chooser) {
            EXPECT_EQ(chooser.Title(), L"Kivora-Exportdatei öffnen...");
            chooser.Enter(path);
            AcceptSoon();
        });
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 4u);
        WithFileDialog(dialog.cmdDurchsuchen, [&](FileDialogOnScreen& chooser) {
            EXPECT_TRUE(fs::equivalent(chooser.Folder(), folder)) << "not the folder used last";
            chooser.Cancel();
        });
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(ExchangeTest, WriteProtectedFilesAreNotChosen) {
    Add({.Text = L"eins"});
    const fs::path path = Write(L"fest.kvr", "");
    WriteProtect(path);
    if (!IsOnlyWriteProtected(path)) {
        fs::permissions(path, fs::perms::owner_all);
        GTEST_SKIP() << "Wine marks every file as one to be archived, too";
    }
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(L"vorher");
        // Chooses the protected file until that is complained of, then another.
        auto* choose = Repeated::Every(300ms, [&] {
            const auto chooser = FileDialogOnScreen::Find();
            if (!chooser) return false;
            chooser->Enter(messages.empty() ? path : folder / "neu.kvr");
            chooser->Accept();
            return false;
        });
        Press(dialog.cmdSearch);
        choose->End();
        EXPECT_EQ(dialog.txtPfad->GetValue(), Name(L"neu.kvr"));
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(messages, Messages{L"16|Schreibgeschützte Datei|Sie haben eine existierende Datei gewählt, "
                                 L"welche als schreibgeschützt markiert ist.\r\nWählen Sie bitte einen "
                                 L"anderen Dateinamen."});
    fs::permissions(path, fs::perms::owner_all);
}

TEST_F(ExchangeTest, QuittingEndsAnOpenFileDialog) {
    Import([&](frmImport& dialog) {
        WithFileDialog(dialog.cmdDurchsuchen, [](FileDialogOnScreen&) { EndAllWaits(); });
    });
    EXPECT_FALSE(OpenDialog<frmImport>());
    ResetWaits();
    EXPECT_EQ(opened, 1);
}

TEST_F(ExchangeTest, ADroppedFileFillsTheBox) {
    const fs::path path = Write(L"gezogen.kvr", FileBytes(SampleFiles()[0].notes));
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
