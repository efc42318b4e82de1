// The address book's dialogs, driven by events.
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "addressbook/NameLookup.h"
#include "addressbook/frmAddressbook.h"
#include "addressbook/frmAddressbookEntryEdit.h"
#include "addressbook/frmAddressbookEntryNew.h"
#include "tests/addressbook/Entries.h"
#include "tests/support/Controls.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Messages.h"

namespace {

using Texts = std::vector<std::wstring>;

constexpr const wchar_t* kNowhere = L"gibt-es-nicht.invalid";
const std::wstring kDuplicate =
    L"Eintrag existiert bereits.|16|Es existiert bereits ein Eintrag für den Computer \"server\".\r\nGeben "
    L"Sie bitte einen anderen Computernamen an.";
const std::wstring kUnreachable =
    L"Computer nicht erreichbar|52|Der Computer mit der Adresse gibt-es-nicht.invalid ist nicht "
    L"erreichbar.\r\nMöchten Sie die Adresse dennoch übernehmen?";

Texts Rows(const EntryList& list) {
    Texts rows;
    for (int row = 0; row < list.Count(); ++row) {
        std::wstring text = list.IsChecked(row) ? L"x" : L"";
        for (int column = 1; column < 4; ++column) text += L"|" + list.Text(row, column);
        rows.push_back(text);
    }
    return rows;
}

class AddressbookDialogs : public testing::Test, protected MessageRecorder {
  protected:
    AddressbookDialogs() {
        answer = MessageAnswer::No;
        AddAddressBookEntry(Entry(L"server", L"10.0.0.9", L"Keller"));
        AddAddressBookEntry(Entry(L"Büro", L"10.0.0.10", L"b"));
        AddAddressBookEntry(Entry(L"anna", L"10.0.0.2", L"A"));
    }
    ~AddressbookDialogs() override {
        EmptyAddressBook();
        RunEvents();
    }

    Texts Book() const {
        Texts texts;
        for (const auto& entry : AddressBook())
            texts.push_back(entry.PCName() + L"|" + entry.IP() + L"|" + entry.Comment());
        return texts;
    }
};

TEST_F(AddressbookDialogs, PickingReturnsTheCheckedRowsInTheirOrder) {
    const WhenShown<frmAddressbook> user([](frmAddressbook& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Netzwerk-Adressbuch");
        EXPECT_EQ(Rows(*dialog.lvwEntries),
                  (Texts{L"|server|10.0.0.9|Keller", L"|Büro|10.0.0.10|b", L"|anna|10.0.0.2|A"}));
        EXPECT_FALSE(dialog.cmdBearbeiten->IsEnabled());
        EXPECT_TRUE(RunUntil([&] { return dialog.IsActive() && HasKeyboard(dialog.lvwEntries->Window()); }));
        ClickBox(dialog.lvwEntries->Window(), 0);
        ClickBox(dialog.lvwEntries->Window(), 2);
        EXPECT_TRUE(dialog.cmdBearbeiten->IsEnabled() && dialog.cmdLöschen->IsEnabled());
        ClickHeading(dialog.lvwEntries->Window(), 1);
        EXPECT_EQ(Rows(*dialog.lvwEntries),
                  (Texts{L"x|anna|10.0.0.2|A", L"|Büro|10.0.0.10|b", L"x|server|10.0.0.9|Keller"}));
        ClickHeading(dialog.lvwEntries->Window(), 1);
        EXPECT_EQ(Rows(*dialog.lvwEntries)[0], L"x|server|10.0.0.9|Keller");
        ClickHeading(dialog.lvwEntries->Window(), 1);
        EXPECT_EQ(Rows(*dialog.lvwEntries)[0], L"x|anna|10.0.0.2|A");
        const std::pair<int, const wchar_t*> keys[] = {{'2', L"|Büro|10.0.0.10|b"},
                                                       {'3', L"x|anna|10.0.0.2|A"},
                                                       {'3', L"x|server|10.0.0.9|Keller"},
                                                       {'1', L"x|anna|10.0.0.2|A"}};
        for (const auto& [key, first] : keys) {
            PressKey(dialog.lvwEntries->Window(), key, wxMOD_CONTROL);
            EXPECT_EQ(Rows(*dialog.lvwEntries)[0], first);
        }
        EXPECT_TRUE(ShowAddressBook(true).empty()) << "it is open already";
        Press(dialog.cmdOK);
    });
    Texts chosen;
    for (const auto& entry : ShowAddressBook(true)) chosen.push_back(entry.PCName());
    EXPECT_EQ(chosen, (Texts{L"anna", L"server"}));
}

TEST_F(AddressbookDialogs, KeepingItHasNoOK) {
    const WhenShown<frmAddressbook> user([](frmAddressbook& dialog) {
        EXPECT_FALSE(dialog.cmdOK->IsShown());
        EXPECT_EQ(dialog.cmdAbbrechen->GetLabel(), L"&Schließen");
        Press(dialog.cmdAlle);
        EXPECT_EQ(dialog.CheckedEntries().size(), 3u);
        Press(dialog.cmdKeine);
        EXPECT_FALSE(dialog.cmdLöschen->IsEnabled());
        ClickBox(dialog.lvwEntries->Window(), 0);
        ClickBox(dialog.lvwEntries->Window(), 1);
        Press(dialog.cmdLöschen);
        EXPECT_EQ(Rows(*dialog.lvwEntries), Texts{L"|anna|10.0.0.2|A"});
        EXPECT_FALSE(dialog.cmdBearbeiten->IsEnabled() || dialog.cmdLöschen->IsEnabled());
        Press(dialog.cmdAlle);
        const WhenShown<frmAddressbookEntryNew> undecided([&](frmAddressbookEntryNew& entry) {
            entry.txtPCName->SetValue(L"Clara");
            for (wxButton* each : {dialog.cmdLöschen, dialog.cmdBearbeiten, dialog.cmdNeu}) Press(each);
            Press(entry.cmdAbbrechen);
        });
        Press(dialog.cmdNeu);
        dialog.Close();
    });
    EXPECT_TRUE(ShowAddressBook(false).empty());
    EXPECT_EQ(Book(), Texts{L"anna|10.0.0.2|A"});
    EXPECT_TRUE(messages.empty());
}

TEST_F(AddressbookDialogs, ANewEntryIsCheckedFirst) {
    const WhenShown<frmAddressbook> user([&](frmAddressbook& list) {
        ClickHeading(list.lvwEntries->Window(), 1);
        const WhenShown<frmAddressbookEntryNew> writer([&](frmAddressbookEntryNew& dialog) {
            EXPECT_FALSE(dialog.cmdOK->IsEnabled());
            dialog.txtPCName->SetValue(L"server");
            EXPECT_FALSE(dialog.cmdOK->IsEnabled());
            dialog.txtIP->SetValue(kNowhere);
            EXPECT_TRUE(dialog.cmdOK->IsEnabled());
            dialog.txtIP->SetValue(L"");
            EXPECT_TRUE(RunUntil([&] { return dialog.IsActive(); }));
            PressKey(*dialog.txtIP, L',');
            EXPECT_EQ(dialog.txtIP->GetValue(), L"");
            PressKey(*dialog.txtIP, L'7');
            EXPECT_TRUE(RunUntil([&] { return dialog.txtIP->GetValue() == L"7"; }))
                << dialog.txtIP->GetValue().utf8_string();
            dialog.txtIP->SetValue(kNowhere);
            // No longer than the registry gives back.
            dialog.txtComment->SetValue(std::wstring(4095, L'ä'));
            dialog.txtComment->AppendText(L"x");
            EXPECT_EQ(dialog.txtComment->GetValue().length(), 4095u);
            dialog.txtComment->SetValue(L"neu");
            Press(dialog.cmdOK);
            EXPECT_EQ(messages, Texts{kDuplicate});
            dialog.txtPCName->SetValue(L"Clara");
            Press(dialog.cmdOK);
            EXPECT_EQ(messages, (Texts{kDuplicate, kUnreachable}));
            EXPECT_EQ(dialog.Tag(), L"waiting");
            EXPECT_TRUE(dialog.txtIP->IsEnabled());
            answer = MessageAnswer::Yes;
            Press(dialog.cmdOK);
            EXPECT_EQ(dialog.Tag(), L"ok");
        });
        Press(list.cmdNeu);
        EXPECT_EQ(Rows(*list.lvwEntries)[2], L"|Clara|gibt-es-nicht.invalid|neu");
        Press(list.cmdAbbrechen);
    });
    ShowAddressBook(false);
    EXPECT_EQ(AddressBook().size(), 4u);
}

TEST_F(AddressbookDialogs, EditingTakesOverWhatIsLeft) {
    auto* dialog = new frmAddressbookEntryEdit;
    wxTheApp->CallAfter([&] {
        RunEvents();
        EXPECT_EQ(dialog->txtPCName->GetValue(), L"server");
        EXPECT_EQ(dialog->txtIP->GetValue(), L"10.0.0.9");
        const auto select = [&](int row) { Click(*dialog->lstEdit, row); };
        dialog->txtComment->SetValue(L"Dach");
        dialog->txtPCName->SetValue(L"Server");
        select(1);
        EXPECT_EQ(messages.size(), 1u) << "in another case it is the same name";
        messages.clear();
        dialog->txtPCName->SetValue(L"server");
        select(1);
        EXPECT_EQ(dialog->txtPCName->GetValue(), L"Büro");
        EXPECT_EQ(Book()[0], L"server|10.0.0.9|Dach");

        // Renaming moves an entry to the end; another's name is refused and keeps the row.
        dialog->txtPCName->SetValue(L"server");
        select(2);
        EXPECT_EQ(messages, Texts{kDuplicate});
        EXPECT_EQ(dialog->lstEdit->GetSelection(), 1);
        dialog->txtPCName->SetValue(L"Zimmer");
        dialog->txtIP->SetValue(L"127.0.0.1");
        select(2);
        EXPECT_EQ(dialog->lstEdit->GetString(1), L"Zimmer");
        EXPECT_EQ(Book().back(), L"Zimmer|127.0.0.1|b");

        // An address that leads nowhere needs a Yes, in whatever way the dialog is left.
        dialog->txtIP->SetValue(kNowhere);
        Press(dialog->cmdSchliessen);
        EXPECT_EQ(messages.back(), kUnreachable);
        EXPECT_EQ(dialog->State(), DialogState::Waiting);
        answer = MessageAnswer::Yes;
        EXPECT_TRUE(RunUntil([&] { return dialog->IsActive(); }));
        TypeKey(WXK_ESCAPE);
    });
    dialog->ShowModal(AddressBook());
    dialog->Destroy();
    EXPECT_EQ(Book(),
              (Texts{L"server|10.0.0.9|Dach", L"anna|gibt-es-nicht.invalid|A", L"Zimmer|127.0.0.1|b"}));
}

TEST_F(AddressbookDialogs, LeavingABoxTakesItOver) {
    auto* dialog = new frmAddressbookEntryEdit;
    wxTheApp->CallAfter([&] {
        EXPECT_TRUE(RunUntil([&] { return dialog->IsActive(); }));
        dialog->txtComment->SetFocus();
        EXPECT_TRUE(RunUntil([&] { return dialog->txtComment->HasFocus(); }));
        dialog->txtComment->SetValue(L"Garten");
        wxFrame other(nullptr, wxID_ANY, L"anderes Fenster");
        other.Show();
        other.Raise();
        EXPECT_TRUE(RunUntil([&] { return !dialog->IsActive(); }));
        RunPosted();
        EXPECT_EQ(Book()[0], L"server|10.0.0.9|Keller") << "it was not left";
        dialog->Raise();
        EXPECT_TRUE(RunUntil([&] { return dialog->txtComment->HasFocus(); }));
        dialog->txtPCName->SetValue(L"Hof");
        dialog->lstEdit->SetFocus();
        EXPECT_TRUE(RunUntil([&] { return Book().back() == L"Hof|10.0.0.9|Garten"; }));
        dialog->txtComment->SetValue(L"Tor");
        Press(dialog->cmdSchliessen);
    });
    dialog->ShowModal(AddressBook());
    dialog->Destroy();
    EXPECT_EQ(Book().back(), L"Hof|10.0.0.9|Tor");
}

TEST_F(AddressbookDialogs, WhatIsTypedWhileAnAddressIsLookedUpIsKept) {
    const struct {
        const char* name;
        bool closing, impatient;
        const wchar_t* expected;
    } rows[] = {
        {"another entry is chosen", false, false, L"neu|gibt-es-nicht.invalid|inzwischen"},
        {"the dialog is closed", true, false, L"neu|gibt-es-nicht.invalid|inzwischen"},
        // That gives the look-up up, and with it the address and the name.
        {"it is closed once more", true, true, L"server|10.0.0.9|inzwischen"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto* dialog = new frmAddressbookEntryEdit;
        // The question that ends the look-up comes at a time of our own.
        answer = MessageAnswer::Yes;
        onMessage = [&] {
            EXPECT_FALSE(dialog->txtIP->IsEditable());
            EXPECT_TRUE(dialog->txtPCName->IsEnabled() && dialog->txtPCName->IsEditable());
            dialog->txtPCName->SetValue(L"neu");
            dialog->txtComment->SetValue(L"inzwischen");
            if (row.impatient) {
                wxTheApp->CallAfter([&] { Press(dialog->cmdSchliessen); });
                WaitUntil([&] { return dialog->State() != DialogState::Waiting; });
            }
        };
        wxTheApp->CallAfter([&] {
            RunEvents();
            dialog->txtIP->SetValue(kNowhere);
            if (!row.closing) Click(*dialog->lstEdit, 1);
            Press(dialog->cmdSchliessen);
        });
        dialog->ShowModal({*GetAddressBookEntry(L"server"), *GetAddressBookEntry(L"anna")});
        dialog->Destroy();
        const Texts book = Book();
        EXPECT_EQ(std::count(book.begin(), book.end(), row.expected), 1);
        for (const wchar_t* name : {L"neu", L"server"}) RemoveAddressBookEntry(name);
        AddAddressBookEntry(Entry(L"server", L"10.0.0.9", L"Keller"));
    }
}

TEST_F(AddressbookDialogs, NamesAreLookedUpWhileEventsGoOn) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {{L"  localhost  ", L"127.0.0.1"},
                                                              {L"192.168.0.7", L"192.168.0.7"},
                                                              {kNowhere, L""},
                                                              {L"   ", L""},
                                                              {L"ä ö", L""}};
    for (const auto& [name, address] : rows)
        EXPECT_EQ(ResolveHostAddress(name), address) << wxString(name).utf8_string();
    EXPECT_EQ(ResolveHostAddress(L"localhost", [] { return true; }), L"") << "abandoned";
    EXPECT_FALSE(AcceptAddress(kNowhere, [] { return true; }));
    EXPECT_TRUE(messages.empty()) << "nobody is there to be asked";
    {
        const NameLookup given_up(L"localhost", [](const std::vector<std::wstring>&) { ADD_FAILURE(); });
    }
    // The answer may destroy its look-up.
    bool answered = false;
    std::unique_ptr<NameLookup> lookup;
    lookup = std::make_unique<NameLookup>(L"127.0.0.1", [&](const std::vector<std::wstring>&) {
        lookup.reset();
        answered = true;
    });
    EXPECT_TRUE(RunUntil([&] { return answered; }));
}

}  // namespace
