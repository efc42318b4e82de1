// Export and import as the user sees them: by the events of their dialogs.
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "base/Text.h"
#include "exchange/ImportFile.h"
#include "model/LostCharacters.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "tests/exchange/ExchangeTest.h"
#include "tests/support/Controls.h"

namespace {

namespace fs = std::filesystem;

TEST_F(ExchangeTest, ExportedNotesAreReadByAnotherReaderAndComeBack) {
    const std::vector<ExportedNote> notes = SampleNotes();
    for (const ExportedNote& note : notes) Add(note);
    Export([&](frmExport& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Exportieren");
        ExportNotes(store);  // it is open already
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
        ImportNotes(store);
        dialog.txtDatei->SetValue(Name(L"alle ä.kvr"));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(StoredNotes(), notes);
    for (const NotePtr& note : store.Notes()) EXPECT_TRUE(note->IsShown());
    NoteStore saved(recorder);
    saved.LoadNotes();
    EXPECT_EQ(saved.CountNotes(), notes.size());
    saved.UnloadAllNotes();
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
    const std::wstring question = L"Datei existiert bereits|52|Die Datei " + FileName(path) +
                                  L" existiert bereits.\r\nSoll sie überschrieben werden?";
    EXPECT_EQ(messages, (Messages{question, question}));
    const std::string record =
        FileBytes({{.Text = L"neu", .CreationTime = L"", .Color = kYellow, .FontNoteSize = 0}});
    const std::string content = Content(path);
    EXPECT_EQ(content.size(), old.size());
    EXPECT_EQ(content.substr(0, 5), record.substr(0, 5));
    EXPECT_EQ(content.substr(record.size()), old.substr(record.size()));
}

TEST_F(ExchangeTest, WhatAnExportCannotCarryIsAskedForFirst) {
    Add({.Text = L"Käse"});
    Add({.Text = L"Ω ja"});
    const fs::path path = Write(L"alt.kvr", "");
    answer = MessageAnswer::No;
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        Press(dialog.cmdOK);
        EXPECT_EQ(messages,
                  Messages{L"Zeichen gehen verloren|52|" + LossQuestion({L"Ω ja"}, L"exportieren")});
        EXPECT_EQ(dialog.Tag(), L"waiting");
        EXPECT_EQ(fs::file_size(path), 0u);
        answer = MessageAnswer::Yes;
        Press(dialog.cmdOK);
        EXPECT_EQ(messages.size(), 3u) << "and may the file be overwritten";
    });
    EXPECT_EQ(ListNotes(path), (std::vector<std::wstring>{L"Käse", L"? ja"}));
}

TEST_F(ExchangeTest, EveryFailureOfAnExportIsToldInOneMessage) {
    const std::wstring exportFailed =
        L"Fehler|16|Beim Exportieren der Notiz(en) ist ein Fehler aufgetreten.\r\nMöglicherweise existiert "
        L"eine zum Exportieren vorgesehene Notiz nicht mehr oder der Dateiname ist ungültig.";
    frmNote& first = Add({.Text = L"eins", .CreationTime = L""});
    Add({.Text = L"zwei", .CreationTime = L""});
    Add({.Text = std::wstring(65'536, L'x')});
    const struct {
        const char* name;
        std::wstring path;
        std::function<void(frmExport&)> before;
        std::size_t written;
    } rows[] = {
        {"a folder", FileName(folder), {}, 0},
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
        EXPECT_EQ(ListNotes(FilePath(row.path)).size(), row.written) << row.name;
    }
    EXPECT_EQ(store.CountNotes(), 2u);
}

TEST_F(ExchangeTest, ListPreviewAndImportMeanTheSameRecord) {
    std::vector<ExportedNote> notes;
    for (std::size_t i = 0; i < 60; ++i) {
        notes.push_back(SampleNotes()[i % 4]);
        notes[i].Text = L"Notiz " + std::to_wstring(i) + std::wstring(i * i * 37 % 400, L'ö');
    }
    notes[40].Text.clear();  // ends the file
    const fs::path path = Write(L"viele.kvr", FileBytes(notes));
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(path));
        ASSERT_EQ(dialog.lstNotizen->GetCount(), 40u);
        EXPECT_EQ(dialog.ChosenRecords(), std::vector<bool>(40, true));
        EXPECT_EQ(dialog.txtNotiz->GetValue(), notes[0].Text);
        for (unsigned i = 0; i < 40; ++i) {
            Click(*dialog.lstNotizen, static_cast<int>(i));
            EXPECT_EQ(dialog.txtNotiz->GetValue(), notes[i].Text) << i;
            EXPECT_TRUE(notes[i].Text.starts_with(dialog.lstNotizen->GetString(i).ToStdWstring())) << i;
            const NoteLook look = ToNote(notes[i]).look;
            EXPECT_EQ(dialog.txtNotiz->GetFont(), NoteFont(look)) << i;
            EXPECT_EQ(dialog.txtNotiz->GetBackgroundColour(), ToColour(DisplayColor(look.color))) << i;
            EXPECT_EQ(dialog.txtNotiz->HasFlag(wxTE_RIGHT), look.alignment == kAlignRight) << i;
            EXPECT_EQ(dialog.txtNotiz->HasFlag(wxTE_CENTRE), look.alignment == kAlignCentre) << i;
        }
        Press(dialog.cmdKeine);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        for (const int row : {3, 4, 20, 39}) dialog.lstNotizen->SetSelection(row);
        dialog.lstNotizen->Deselect(4);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(StoredNotes(), (std::vector{notes[3], notes[20], notes[39]}));
}

TEST_F(ExchangeTest, FilesWithoutNotesHaveNoPreviewAndBringNothing) {
    const fs::path good = Write(L"gut.kvr", FileBytes(SampleNotes()));
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
            EXPECT_EQ(dialog.txtNotiz->GetFont(), NoteFont({.size = 8, .italic = true})) << path;
        }
        // One that goes meanwhile.
        dialog.txtDatei->SetValue(FileName(good));
        fs::remove(good);
        Click(*dialog.lstNotizen, 1);
        EXPECT_EQ(dialog.txtNotiz->GetValue(), L"Keine Vorschau möglich.");
        Press(dialog.cmdAlle);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{});
    EXPECT_EQ(store.CountNotes(), 0u);
}

// A text has no place; it gets that of a new note and the size that it needs.
TEST_F(ExchangeTest, ATextFileBecomesANewNote) {
    const fs::path text = Write(L"b.TXT", "Käse\n\xF0\x9F\x98\x80 ja");
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(text));
        EXPECT_EQ(dialog.txtNotiz->GetValue(), L"Käse\n\U0001F600 ja");
        Press(dialog.cmdOK);
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    const frmNote& note = *store.Notes()[0];
    EXPECT_EQ(note.Text(), L"Käse\r\n\U0001F600 ja");
    EXPECT_GT(note.Width(), kSmallestPixels * TwipsPerPixelX(note));
    EXPECT_GT(note.Left(), 0);
}

TEST_F(ExchangeTest, MoreThanBecomesWindowsIsRefusedAsAWhole) {
    const std::vector<ExportedNote> many(kMostImportedNotes + 1, {.Text = L"1"});
    const std::wstring longest(65'535, L'x');
    const std::vector<ExportedNote> large(kMostImportedCharacters / 65'535 / 2 + 1,
                                          {.Text = longest, .CreationTime = longest});
    const fs::path path = Write(L"a.kvr", FileBytes(large));
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    Write(L"a.kvr", FileBytes(many));
    Import([&](frmImport& dialog) {
        dialog.txtDatei->SetValue(FileName(path));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Messages{L"Fehler beim Importieren|16|Beim Importieren der Notizen aus " +
                                 FileName(path) + L" ist ein Fehler aufgetreten."});
    EXPECT_EQ(store.CountNotes(), 0u);
    EXPECT_FALSE(ImportNotes(store, L""));
}

}  // namespace
