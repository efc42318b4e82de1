#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include "base/Text.h"
#include "dialogs/Message.h"
#include "dialogs/frmMessage.h"
#include "model/Note.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/basNotes.h"
#include "notes/frmProperties.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Controls.h"
#include "tests/support/Messages.h"
#include "tests/support/Stacking.h"

namespace {

class FrmProperties : public StoreTest {
  protected:
    // Writes a new note or edits one, and does something with the dialog as soon as it is on the screen.
    void Work(frmNote* note, const std::function<void(frmProperties&)>& act) {
        Run<frmProperties>([&] { note ? EditNote(store, *note) : NewNote(store); }, act);
    }
};

}  // namespace

TEST_F(FrmProperties, NewNoteStartsPlainAndTakesWhatWasChosen) {
    Work(nullptr, [](frmProperties& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Neue Notiz");
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        EXPECT_TRUE(dialog.optFarbe[0]->GetValue());
        EXPECT_TRUE(dialog.optAusrichtung[0]->GetValue());
        EXPECT_EQ(dialog.updwnSchriftgrad->GetValue(), 12);
        dialog.txtMessage->SetValue(L"Käse\nBrot");
        Check(dialog.chkForm[1], true);
        Choose(dialog.optFarbe[3]);
        Choose(dialog.optAusrichtung[1]);
        EXPECT_TRUE(dialog.txtMessageRechts->IsShown());
        EXPECT_FALSE(dialog.txtMessage->IsShown());
        for (wxTextCtrl* box : {dialog.txtMessage, dialog.txtMessageRechts, dialog.txtMessageZentr}) {
            EXPECT_EQ(box->GetValue(), L"Käse\nBrot");
            EXPECT_EQ(PaperBehindText(*box), ToColour(DisplayColor(kLightBlue)));
        }
        Press(dialog.cmdOK);
    });
    ASSERT_EQ(store.CountNotes(), 1u);
    const frmNote& note = *store.Notes()[0];
    EXPECT_EQ(note.Text(), L"Käse\r\nBrot");
    EXPECT_TRUE(note.FontNoteBold());
    EXPECT_FALSE(note.FontNoteItalic());
    EXPECT_EQ(note.Color(), kLightBlue);
    EXPECT_EQ(note.FontNoteAlignment(), kAlignRight);
    EXPECT_TRUE(note.IsShown());
    EXPECT_NE(note.CreationTime().find(L", "), std::wstring::npos);
}

TEST_F(FrmProperties, CancellingInAnyWayChangesNothingAndKeepsTheText) {
    frmNote& note = Add(L"alt");
    std::vector<Note> bin;
    store.OnDelete = [&](const Note& deleted) { return bin.push_back(deleted), KeepResult(); };
    const std::function<void(frmProperties&)> ways[] = {
        [this](frmProperties& dialog) {
            NewNote(store);  // returns at once
            Press(dialog.cmdAbbrechen);
        },
        [&](frmProperties& dialog) {
            EditNote(store, note);  // likewise
            EXPECT_FALSE(KeepTextBeingWritten());
            EXPECT_EQ(bin.size(), dialog.TextChanged() ? 1u : 0u);
            EndAllWaits();
        },
    };
    for (const auto& way : ways) {
        for (const wchar_t* text : {L"neu\nΩ", L"alt", L""}) {
            bin.clear();
            Work(&note, [&](frmProperties& dialog) {
                dialog.txtMessage->SetValue(text);
                Choose(dialog.optFarbe[2]);
                way(dialog);
            });
            ResetWaits();
            EXPECT_EQ(note.Text(), L"alt");
            EXPECT_EQ(note.Color(), kYellow);
            EXPECT_EQ(store.CountNotes(), 1u);
            Note expected = note.Content();
            expected.text = L"neu\r\nΩ";
            expected.look.color = kRed;
            EXPECT_EQ(bin, *text == L'n' ? std::vector<Note>{expected} : std::vector<Note>()) << text;
        }
    }
    bin.clear();
    Work(nullptr, [&](frmProperties& dialog) {
        dialog.txtMessage->SetValue(L"x");
        Press(dialog.cmdAbbrechen);
    });
    ASSERT_EQ(bin.size(), 1u);
    EXPECT_EQ(bin[0].text, L"x");
    EXPECT_FALSE(bin[0].creationTime.empty());
}

TEST_F(FrmProperties, EditingShowsTheNoteAndGivesItBack) {
    frmNote& note = Add(L"eins\r\nzwei");
    note.Color(0x777777);
    note.FontNoteSize(25);
    note.FontNoteUnderlined(true);
    note.FontNoteAlignment(kAlignCentre);
    const double width = note.Width();
    Work(&note, [](frmProperties& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Notiz bearbeiten");
        EXPECT_TRUE(dialog.txtMessageZentr->IsShown());
        EXPECT_EQ(dialog.txtMessageZentr->GetValue(), L"eins\nzwei");
        EXPECT_TRUE(dialog.chkForm[0]->GetValue());
        EXPECT_EQ(dialog.updwnSchriftgrad->GetValue(), 25);
        EXPECT_TRUE(dialog.optFarbe[0]->GetValue());
        EXPECT_TRUE(RunUntil([&] { return dialog.IsActive(); }));
        PressKey(*dialog.txtMessageZentr, WXK_RETURN, wxMOD_CONTROL);
    });
    EXPECT_EQ(note.Text(), L"eins\r\nzwei");
    EXPECT_GT(note.Width(), width) << "it has the size that such a text needs";
    EXPECT_EQ(ReadStoredImage().notes.at(0).note, note.Content()) << "it is saved";
    EXPECT_EQ(note.Color(), kYellow);  // the foreign colour became the one that was shown
    EXPECT_TRUE(note.FontNoteUnderlined());
}

TEST_F(FrmProperties, EachStyleHasItsBoxAndASizeItsNumber) {
    frmProperties* dialog = new frmProperties(L"Notiz bearbeiten");
    for (std::size_t i = 0; i < std::size(kNoteStyles); ++i) {
        NoteLook look;
        look.*kNoteStyles[i].flag = true;
        dialog->Fill({.text = L"x", .look = look});
        EXPECT_EQ(dialog->chkForm[i]->GetLabel(), kNoteStyles[i].caption);
        EXPECT_EQ(dialog->txtMessage->GetFont(), NoteFont(look));
        EXPECT_NE(NoteFont(look), NoteFont({})) << "nobody would see it";
        EXPECT_EQ(dialog->Written({}).look, look);
        Check(dialog->chkForm[i], false);
        EXPECT_EQ(dialog->txtMessage->GetFont(), NoteFont({}));
    }
    // A size counts while it is typed, too.
    for (const auto& [typed, size] : {std::pair(L"20", 20), {L"3", 8}, {L"99", 25}}) {
        wxSpinCtrl& box = *dialog->updwnSchriftgrad;
        box.SetValue(wxString(typed));
        EXPECT_EQ(dialog->Written({}).look.size, size);
        wxCommandEvent text(wxEVT_TEXT, box.GetId());
        wxSpinEvent spin(wxEVT_SPINCTRL, box.GetId());
        box.ProcessWindowEvent(size == 20 ? text : static_cast<wxEvent&>(spin));
        EXPECT_EQ(dialog->txtMessage->GetFont(), NoteFont({.size = size}));
    }
    dialog->Destroy();
}

TEST_F(FrmProperties, TakesNoMoreThanCanBeReadBackAndSaysSo) {
    const struct {
        wxString before, pasted;
        std::size_t kept;
        const wchar_t* told;
    } rows[] = {
        {L"", wxString(L'b', 6000), 4095, L"Die letzten 1905 Zeichen des eingefügten Textes"},
        {wxString(L'a', 4090), wxString(L'b', 6000), 5, L"Die letzten 5995 Zeichen des eingefügten Textes"},
        {wxString(L'a', 4095), L"b", 0, L"Ein Zeichen"},
        // In one line: GTK would lay it out for minutes.
        {L"ab", wxString(L'ü', 300000), 2046, L"Die letzten 297954 Zeichen des eingefügten Textes"},
    };
    for (const auto& row : rows) {
        MessageRecorder shown;
        frmProperties* dialog = new frmProperties(L"Neue Notiz");
        dialog->Show();
        dialog->txtMessage->SetValue(row.before);
        dialog->txtMessage->SetInsertionPointEnd();
        // A paste goes through the control's own code, which is not to be disturbed on its way.
        ASSERT_TRUE(wxTheClipboard->Open());
        wxTheClipboard->SetData(new wxTextDataObject(row.pasted));
        wxTheClipboard->Close();
        dialog->txtMessage->Paste();
        EXPECT_TRUE(RunUntil([&] { return !shown.messages.empty(); }));
        for (wxTextCtrl* box : {dialog->txtMessage, dialog->txtMessageRechts, dialog->txtMessageZentr})
            EXPECT_EQ(box->GetValue(), row.before + row.pasted.substr(0, row.kept));
        const bool one = row.pasted.length() == 1;
        EXPECT_EQ(shown.messages,
                  std::vector<std::wstring>{L"Text zu lang|48|Die Notiz ist voll. " + std::wstring(row.told) +
                                            (one ? L" wurde" : L" wurden") + L" weggelassen."});
        dialog->txtMessage->Paste();
        ASSERT_TRUE(RunUntil([&] { return shown.messages.size() == 2; }));
        dialog->Destroy();
    }
}

TEST_F(FrmProperties, UndoAndRedoGoOverAllBoxes) {
    frmProperties* dialog = new frmProperties(L"Notiz bearbeiten");
    dialog->Fill({.text = L"eins\r\nzwei"});
    dialog->Show();
    ASSERT_TRUE(RunUntil([&] { return dialog->IsActive(); }));
    dialog->txtMessage->SetValue(L"eins\nzwei drei");
    dialog->txtMessageRechts->SetValue(L"eins\nzwei drei vier");
    EXPECT_EQ(dialog->txtMessageZentr->GetValue(), L"eins\nzwei drei vier");
    const struct {
        int key, modifiers;
        wxString text;
    } rows[] = {
        {'Z', wxMOD_CONTROL, L"eins\nzwei drei"},      {'Z', wxMOD_CONTROL, L"eins\nzwei"},
        {'Z', wxMOD_CONTROL, L"eins\nzwei"},           {'Z', wxMOD_CONTROL | wxMOD_SHIFT, L"eins\nzwei drei"},
        {'Y', wxMOD_CONTROL, L"eins\nzwei drei vier"}, {'Y', wxMOD_CONTROL, L"eins\nzwei drei vier"},
        {'Z', wxMOD_CONTROL, L"eins\nzwei drei"},
    };
    const std::array<wxTextCtrl*, 3> boxes = {dialog->txtMessage, dialog->txtMessageRechts,
                                              dialog->txtMessageZentr};
    std::size_t step = 0;
    for (const auto& row : rows) {
        Choose(dialog->optAusrichtung[step % 3]);
        PressKey(*boxes[step++ % 3], row.key, row.modifiers);
        for (wxTextCtrl* box : boxes) EXPECT_EQ(box->GetValue(), row.text) << step;
        EXPECT_EQ(dialog->Written({}).text, WithCrLf(row.text.ToStdWstring())) << step;
    }
    // What is typed next comes where the caret was put.
    dialog->txtMessage->WriteText(L"!");
    EXPECT_EQ(dialog->Written({}).text, L"eins\r\nzwei drei!");
    dialog->Fill({});
    dialog->txtMessage->SetValue(L"x");
    EXPECT_TRUE(dialog->cmdOK->IsEnabled());
    PressKey(*dialog->txtMessage, 'Z', wxMOD_CONTROL);
    EXPECT_FALSE(dialog->cmdOK->IsEnabled());
    dialog->txtMessageZentr->SetValue(L"x");
    dialog->txtMessageZentr->SetValue(L"");
    EXPECT_FALSE(dialog->cmdOK->IsEnabled());
    dialog->Destroy();
}

TEST_F(FrmProperties, NoteDeletedMeanwhileIsReported) {
    frmNote& note = Add(L"weg");
    // A dialog that belonged to the active window would go with the note.
    ASSERT_TRUE(RunUntil([&] {
        if (!note.IsActive()) note.TakeFocus();
        return note.IsActive();
    }));
    const MessageRecorder shown;
    Work(&note, [&](frmProperties& dialog) {
        dialog.txtMessage->SetValue(L"geändert");
        store.DeleteNote(note);
        RunEvents();
        EXPECT_TRUE(IsOnScreen(dialog));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(shown.messages,
              std::vector<std::wstring>{
                  L"Notiz zwischenzeitlich gelöscht|16|Die bearbeitete Notiz ist zwischenzeitlich gelöscht "
                  L"worden.\r\nDie Änderungen werden verworfen."});
    EXPECT_EQ(store.CountNotes(), 0u);
}

// Whoever quits while another dialog is still open must not lose what was confirmed.
TEST_F(FrmProperties, WhatIsConfirmedIsANoteAlthoughALaterDialogStaysOpen) {
    Work(nullptr, [&](frmProperties& dialog) {
        dialog.txtMessage->SetValue(L"Milch");
        WhenShown<frmMessage> later([&](frmMessage& message) {
            Press(dialog.cmdOK);
            EXPECT_FALSE(dialog.IsShown());
            EXPECT_EQ(store.CountNotes(), 1u);
            NewNote(store);  // returns at once
            EXPECT_FALSE(dialog.IsShown());
            Press(message.FindWindow(wxID_OK));
        });
        ShowMessage(L"Später", kInformation, L"Hinweis");
    });
    EXPECT_EQ(store.CountNotes(), 1u);
}
