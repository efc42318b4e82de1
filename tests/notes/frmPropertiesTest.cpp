#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/clipbrd.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include "dialogs/basMessage.h"
#include "dialogs/frmMessage.h"
#include "model/Note.h"
#include "model/StoredImage.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/basNotes.h"
#include "notes/frmProperties.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Controls.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Messages.h"
#include "tests/support/Stacking.h"

namespace {

class FrmProperties : public testing::Test {
  protected:
    FrmProperties() { Registry().DeleteKey(kSettingsKey); }
    ~FrmProperties() override { Registry().DeleteKey(kSettingsKey); }

    // Writes a new note or edits one, and does something with the dialog as soon as it is on the screen.
    void Work(frmNote* note, const std::function<void(frmProperties&)>& act) {
        bool opened = false;
        wxTheApp->CallAfter([&] {
            frmProperties* dialog = OpenDialog<frmProperties>();
            ASSERT_TRUE(dialog);
            opened = true;
            act(*dialog);
        });
        if (note)
            EditNote(store, *note);
        else
            NewNote(store);
        EXPECT_TRUE(opened);
    }
    frmNote& Add(const std::wstring& text) { return store.AddNote({.text = text}).note; }

    NoteRecorder recorder;
    NoteStore store{recorder};
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
        EXPECT_EQ(dialog.txtMessageRechts->GetValue(), L"Käse\nBrot");
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

TEST_F(FrmProperties, TheTextStandsOnThePaperThatWasChosenLast) {
    Work(nullptr, [](frmProperties& dialog) {
        dialog.txtMessage->SetValue(L"Käse");
        Check(dialog.chkForm[1], true);  // makes the text a style of its own
        Choose(dialog.optFarbe[1]);
        for (wxTextCtrl* box : {dialog.txtMessage, dialog.txtMessageRechts, dialog.txtMessageZentr})
            EXPECT_EQ(PaperBehindText(*box), ToColour(DisplayColor(kGreen)));
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(FrmProperties, CancellingInAnyWayChangesNothing) {
    frmNote& note = Add(L"alt");
    const std::function<void(frmProperties&)> ways[] = {
        [this](frmProperties& dialog) {
            NewNote(store);  // returns at once
            Press(dialog.cmdAbbrechen);
        },
        [](frmProperties& dialog) { dialog.Close(); },
        [](frmProperties& dialog) {
            wxKeyEvent key(wxEVT_CHAR_HOOK);
            key.m_keyCode = WXK_ESCAPE;
            dialog.ProcessWindowEvent(key);
        },
    };
    for (const auto& way : ways) {
        Work(&note, [&](frmProperties& dialog) {
            dialog.txtMessage->SetValue(L"neu");
            Choose(dialog.optFarbe[2]);
            way(dialog);
        });
        EXPECT_EQ(note.Text(), L"alt");
        EXPECT_EQ(note.Color(), kYellow);
        EXPECT_EQ(store.CountNotes(), 1u);
    }
}

TEST_F(FrmProperties, EditingShowsTheNoteAndGivesItBack) {
    frmNote& note = Add(L"eins\r\nzwei");
    note.Color(0x777777);
    note.FontNoteSize(25);
    note.FontNoteUnderlined(true);
    note.FontNoteAlignment(kAlignCentre);
    Work(&note, [](frmProperties& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Notiz bearbeiten");
        EXPECT_TRUE(dialog.txtMessageZentr->IsShown());
        EXPECT_EQ(dialog.txtMessageZentr->GetValue(), L"eins\nzwei");
        EXPECT_TRUE(dialog.chkForm[0]->GetValue());
        EXPECT_EQ(dialog.updwnSchriftgrad->GetValue(), 25);
        EXPECT_TRUE(dialog.optFarbe[0]->GetValue());
        wxKeyEvent key(wxEVT_CHAR_HOOK);
        key.m_keyCode = WXK_RETURN;
        key.SetControlDown(true);
        dialog.ProcessWindowEvent(key);
    });
    EXPECT_EQ(note.Text(), L"eins\r\nzwei");
    EXPECT_EQ(note.Color(), kYellow);  // the foreign colour became the one that was shown
    EXPECT_TRUE(note.FontNoteUnderlined());
}

TEST_F(FrmProperties, EachStyleHasItsBox) {
    frmProperties* dialog = new frmProperties(L"Notiz bearbeiten");
    for (std::size_t i = 0; i < std::size(kNoteStyles); ++i) {
        NoteLook look;
        look.*kNoteStyles[i].flag = true;
        dialog->Fill({.text = L"x", .look = look});
        EXPECT_EQ(dialog->chkForm[i]->GetLabel(), kNoteStyles[i].caption);
        EXPECT_EQ(dialog->txtMessage->GetFont(), NoteFont(look));
        EXPECT_EQ(dialog->Written({}).look, look);
    }
    dialog->Destroy();
}

TEST_F(FrmProperties, TheThreeBoxesStayAlike) {
    frmProperties* dialog = new frmProperties(L"Neue Notiz");
    const std::array<wxTextCtrl*, 3> boxes = {dialog->txtMessage, dialog->txtMessageRechts,
                                              dialog->txtMessageZentr};
    for (wxTextCtrl* typedInto : boxes) {
        typedInto->SetValue(L"gleich");
        for (wxTextCtrl* box : boxes) EXPECT_EQ(box->GetValue(), L"gleich");
        EXPECT_TRUE(dialog->cmdOK->IsEnabled());
        typedInto->SetValue(L"");
        for (wxTextCtrl* box : boxes) EXPECT_EQ(box->GetValue(), L"");
        EXPECT_FALSE(dialog->cmdOK->IsEnabled());
    }
    dialog->Destroy();
}

TEST_F(FrmProperties, TakesNoMoreThanCanBeReadBack) {
    frmProperties* dialog = new frmProperties(L"Neue Notiz");
    const auto set = [&](const wxString& text) {
        dialog->txtMessage->SetValue(text);
        return RunUntil([&] { return dialog->txtMessage->GetValue().length() == 2047; });
    };
    EXPECT_TRUE(set(wxString(L'ä', 3000)));
    EXPECT_EQ(dialog->txtMessageZentr->GetValue(), wxString(L'ä', 2047));
    EXPECT_TRUE(set(wxString(L'\n', 3000)));
    dialog->Destroy();
}

TEST_F(FrmProperties, PastingTooMuchKeepsWhatFits) {
    // A paste goes through the control's own code, which is not to be disturbed on its way.
    frmProperties* dialog = new frmProperties(L"Neue Notiz");
    dialog->Show();
    for (const std::size_t before : {std::size_t{0}, std::size_t{4090}}) {
        dialog->txtMessage->SetValue(wxString(L'a', before));
        dialog->txtMessage->SetInsertionPointEnd();
        ASSERT_TRUE(wxTheClipboard->Open());
        wxTheClipboard->SetData(new wxTextDataObject(wxString(L'b', 6000)));
        wxTheClipboard->Close();
        dialog->txtMessage->Paste();
        const wxString expected = wxString(L'a', before) + wxString(L'b', 4095 - before);
        EXPECT_TRUE(RunUntil([&] { return dialog->txtMessage->GetValue() == expected; })) << before;
    }
    dialog->Destroy();
}

TEST_F(FrmProperties, SizeCountsWhileItIsTyped) {
    frmProperties* dialog = new frmProperties(L"Neue Notiz");
    const std::pair<const wchar_t*, int> rows[] = {{L"20", 20}, {L"3", 8}, {L"99", 25}};
    for (const auto& [typed, size] : rows) {
        dialog->updwnSchriftgrad->SetValue(wxString(typed));
        EXPECT_EQ(dialog->Written({}).look.size, size);
    }
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
