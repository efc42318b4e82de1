#include <wx/button.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include "base/Text.h"
#include "dialogs/Clipboard.h"
#include "notes/NoteWindow.h"
#include "notes/frmFind.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Controls.h"
#include "tests/support/Messages.h"

namespace {

class BinInMemory : public NoteBin {
  public:
    Content Read() const override { return content; }
    KeepResult Remove(const std::vector<BinnedNote>& notes) override {
        for (const BinnedNote& note : notes) std::erase(content.notes, note);
        return {removing};
    }
    Content content;
    KeepFailure removing = KeepFailure::None;
};

class FrmFind : protected MessageRecorder, public StoreTest {
  protected:
    FrmFind() {
        int day = 10;
        for (const wchar_t* text : {L"Käse\r\nund Brot", L"Straße kehren", L"Brot"}) {
            const Note note{.text = text, .creationTime = std::to_wstring(day++) + L".11.2026, 09:05:00"};
            store.AdoptNote(note);
        }
        store.OnDeleteTogether = [this](const std::vector<Note>& notes) {
            if (failure == KeepFailure::None)
                for (const Note& note : notes) bin.content.notes.push_back({L"1", L"jetzt", note});
            return KeepResult{failure};
        };
        frmFind::Open(store, bin);
        find = OpenDialog<frmFind>();
        RunUntil([this] { return find->IsActive(); });
    }
    ~FrmFind() override {
        find->Close();
        RunEvents();
    }

    wxWindow& List() { return find->lstGefunden->Window(); }
    void GoTo(wxRadioButton* page) {
        Choose(page);
        RunPosted();
    }
    // What is found and chosen, and the text that is shown.
    std::wstring Shown() {
        RunPosted();
        return (find->lblAnzahl->GetLabel() + L"|" + find->txtText->GetValue()).ToStdWstring();
    }

    BinInMemory bin;
    KeepFailure failure = KeepFailure::None;
    frmFind* find = nullptr;
};

}  // namespace

TEST_F(FrmFind, NarrowsAndKeepsWhatIsChosen) {
    EXPECT_EQ(Shown(), L"3 Notizen|Brot");  // written last
    find->txtSuchen->SetValue(L"b");
    PressKey(List(), 'A', wxMOD_CONTROL);
    EXPECT_EQ(Shown(), L"2 von 3 Notizen, 2 gewählt|Brot");
    find->txtSuchen->SetValue(L"brot kaese");
    EXPECT_EQ(Shown(), L"1 von 3 Notizen|Käse\nund Brot");
    Press(find->cmdKopieren);
    EXPECT_EQ(WithCrLf(ClipboardText().value_or(L"")), L"Käse\r\nund Brot");

    // What happens elsewhere changes neither words nor choice.
    store.AddNote({.text = L"Brot mit Käse", .creationTime = L"20.11.2026, 09:05:00"});
    EXPECT_EQ(Shown(), L"2 von 4 Notizen|Käse\nund Brot");
    store.Notes()[0]->Text(L"Käsebrot");
    store.SaveNotes();
    EXPECT_EQ(Shown(), L"2 von 4 Notizen|Käsebrot");
    store.DeleteNote(*store.Notes()[0]);
    EXPECT_EQ(Shown(), L"1 von 3 Notizen|Brot mit Käse");
    frmFind::Open(store, bin, L"gibt es nicht");
    EXPECT_EQ(Shown(), L"0 von 3 Notizen|");
    EXPECT_FALSE(find->cmdOK->IsEnabled());
}

TEST_F(FrmFind, DeletesTogetherAndBringsBack) {
    find->txtSuchen->SetValue(L"brot");
    PressKey(List(), 'A', wxMOD_CONTROL);
    failure = KeepFailure::DiskFull;
    Press(find->cmdLöschen);
    EXPECT_EQ(store.CountNotes(), 3u);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Papierkorb|16|Die Notizen wurden nicht gelöscht"));
    failure = KeepFailure::None;
    PressKey(List(), WXK_DELETE);
    EXPECT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(Shown(), L"0 von 1 Notiz|");

    GoTo(find->optPapierkorb);
    EXPECT_EQ(Shown(), L"2 Notizen|Käse\nund Brot");
    PressKey(List(), WXK_DELETE);
    EXPECT_EQ(bin.content.notes.size(), 2u);
    Press(find->cmdOK);
    EXPECT_EQ(Shown(), L"1 Notiz|Brot");
    EXPECT_EQ(store.Notes().back()->Text(), L"Käse\r\nund Brot");
    PressKey(List(), 'Z', wxMOD_CONTROL);
    EXPECT_EQ(store.CountNotes(), 3u);
    EXPECT_EQ(ReadStoredImage().notes.size(), 3u);
    EXPECT_EQ(Shown(), L"0 Notizen|");
    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(FrmFind, WhatIsBroughtBackLeavesNoOthersChosen) {
    for (const wchar_t* text : {L"a", L"b", L"c", L"d"})
        bin.content.notes.push_back({L"1", L"jetzt", {text}});
    GoTo(find->optPapierkorb);
    PressKey(List(), 'F', wxMOD_CONTROL);
    TypeKey(WXK_DOWN);
    TypeKey(WXK_DOWN, wxMOD_SHIFT);
    EXPECT_EQ(Shown(), L"4 Notizen, 2 gewählt|b");
    bin.removing = KeepFailure::NoAccess;
    Press(find->cmdOK);
    EXPECT_EQ(Shown(), L"2 Notizen|c");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(
        messages[0].starts_with(L"Papierkorb|16|Die Notizen sind wieder da, konnten aber nicht alle"));
}

TEST_F(FrmFind, ShowsOfEachNoteWhatTellsItApart) {
    store.Notes()[0]->Color(kGreen);
    store.Notes()[2]->Text(L"");
    store.SaveNotes();
    RunPosted();
    const wchar_t* const rows[][3] = {{L"(ohne Text)", L"12.11.2026, 09:05:00", L"gelb"},
                                      {L"Straße kehren", L"11.11.2026, 09:05:00", L"gelb"},
                                      {L"Käse", L"10.11.2026, 09:05:00", L"grün"}};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(CellText(List(), row, column), rows[row][column]);
    bin.content.notes.assign(300, {L"1", L"jetzt", {L"viele"}});
    GoTo(find->optPapierkorb);
    EXPECT_EQ(Shown(), L"300 Notizen|viele");
    EXPECT_EQ(CellText(List(), 299, 0), L"viele");
}

TEST_F(FrmFind, KeysLeadThroughIt) {
    store.ApplyForeground();
    const auto choose = [this](int key, int modifiers) {
        TypeKey(key, modifiers);
        return Shown();
    };
    EXPECT_EQ(choose('B', wxMOD_NONE), L"2 von 3 Notizen|Brot");
    EXPECT_EQ(choose('A', wxMOD_CONTROL), L"2 von 3 Notizen|Brot");
    find->txtSuchen->SelectAll();
    TypeKey('C', wxMOD_CONTROL);
    EXPECT_EQ(wxString(ClipboardText().value_or(L"")).Lower(), L"b");
    for (const bool down : {true, false, true}) {
        TypeKey(down ? WXK_DOWN : WXK_UP);
        EXPECT_EQ(HasKeyboard(List()), down);
        EXPECT_EQ(HasKeyboard(*find->txtSuchen), !down);
    }
    EXPECT_EQ(choose(WXK_DOWN, wxMOD_NONE), L"2 von 3 Notizen|Käse\nund Brot");
    EXPECT_EQ(choose(WXK_UP, wxMOD_SHIFT), L"2 von 3 Notizen, 2 gewählt|Brot");
    TypeKey('C', wxMOD_CONTROL);
    EXPECT_EQ(WithCrLf(ClipboardText().value_or(L"")), L"Brot\r\n\r\nKäse\r\nund Brot");
    EXPECT_EQ(choose('R', wxMOD_NONE), L"2 von 3 Notizen, 2 gewählt|Brot");
    EXPECT_EQ(find->txtSuchen->GetValue().Lower(), L"br");
    TypeKey(WXK_TAB, wxMOD_CONTROL);
    EXPECT_TRUE(find->optPapierkorb->GetValue());
    TypeKey(WXK_TAB, wxMOD_CONTROL);
    EXPECT_TRUE(find->optNotizen->GetValue());
    PressKey(List(), 'F', wxMOD_CONTROL);
    EXPECT_TRUE(HasKeyboard(*find->txtSuchen));
    frmNote& brot = *store.Notes()[2];
    brot.Minimized(true);
    const wxPoint covered = find->GetPosition();
    brot.PlaceAt(covered.x * TwipsPerPixelX(brot), covered.y * TwipsPerPixelY(brot));
    TypeKey(WXK_RETURN);
    EXPECT_TRUE(RunUntil([&] { return brot.IsShown() && brot.IsActive() && !brot.Minimized(); }));
    EXPECT_TRUE(RunUntil([&] { return !find->GetRect().Intersects(brot.WindowRect()); }));
    EXPECT_TRUE(find->IsShown());
}

TEST_F(FrmFind, ADoubleClickShowsTheNote) {
    for (const NotePtr& note : store.Notes()) note->Minimized(true);
    wxUIActionSimulator mouse;
    mouse.MouseMove(List().ClientToScreen(wxPoint(40, 45)));  // on any row
    mouse.MouseDblClick();
    EXPECT_TRUE(RunUntil([&] { return store.CountVisibleNotes() == 1; }));
}

TEST_F(FrmFind, TellsOnceThatTheBinCannotBeRead) {
    bin.content = {{}, 1, {KeepFailure::NoAccess}};
    GoTo(find->optPapierkorb);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Papierkorb|16|Der Papierkorb kann nicht gelesen werden."));
    store.SaveNotes();
    EXPECT_EQ(Shown(), L"0 Notizen, eine Datei im Papierkorb ist nicht lesbar|");
    EXPECT_EQ(messages.size(), 1u);
    bin.content.unreadable = 2;
    PressKey(List(), 'Z', wxMOD_CONTROL);  // says the same, and no more
    store.SaveNotes();
    EXPECT_EQ(Shown(), L"0 Notizen, 2 Dateien im Papierkorb sind nicht lesbar|");
    EXPECT_EQ(messages, std::vector(2, messages[0]));
}
