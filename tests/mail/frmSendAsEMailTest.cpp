#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "mail/MailCodePage.h"
#include "mail/MailText.h"
#include "mail/SendAsEMail.h"
#include "mail/frmSendAsEMail.h"
#include "model/LostCharacters.h"
#include "tests/mail/MailProgram.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Messages.h"

namespace {

class FrmSendAsEMail : protected MessageRecorder, public StoreTest {
  protected:
    frmNote& Add(const std::wstring& text) { return store.AdoptNote({.text = text}); }

    void Send(const std::function<void(frmSendAsEMail&)>& act) {
        const auto send = [this](const std::wstring& address) { return addresses.push_back(address), false; };
        Run<frmSendAsEMail>([&] { SendNotesAsEMail(store, send); }, act);
    }

    std::vector<std::wstring> addresses;
};

}  // namespace

TEST_F(FrmSendAsEMail, OffersOKWhileANoteIsChosen) {
    Add(L"eins\r\nzwei");
    Add(L"drei");
    Send([](frmSendAsEMail& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Per E-Mail versenden");
        ASSERT_EQ(dialog.lstNotizen->GetCount(), 2u);
        EXPECT_EQ(dialog.lstNotizen->GetString(0), L"eins zwei");
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdAlle);
        EXPECT_TRUE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdRefresh);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_TRUE(addresses.empty());
}

TEST_F(FrmSendAsEMail, HandsTheChosenNotesOverInListOrder) {
    Add(L"eins ä \"x\" & 5 %");
    Add(L"zwei");
    const std::wstring longText(300'000, L'x');
    Add(L"drei" + longText);
    Send([](frmSendAsEMail& dialog) {
        dialog.txtEmpfänger->SetValue(L"Jörg <a@b>");
        dialog.txtBetreff->SetValue(L"Grüße & mehr");
        Press(dialog.cmdAlle);
        dialog.lstNotizen->Deselect(1);
        Press(dialog.cmdOK);
    });
    ASSERT_EQ(addresses.size(), 1u);
    const std::wstring start =
        L"mailto:Jörg <a@b>?Subject=Grüße & mehr&Body="
        L"%0D%0A%0D%0A%0D%0A%2D%2D%0D%0A"
        L"eins%20" +
        EncodeMailChar(L"ä") +
        L"%20%22x%22%20%26%205%20%25%0D%0A%2D%2D%0D%0A"
        L"drei" +
        longText +
        L"%0D%0A%2D%2D%0D%0A"
        L"%2D%2D%0D%0ANotizen%20aus%20Kivora%201%2E6%0D%0A%28";
    EXPECT_EQ(addresses[0].substr(0, start.size()), start);
    EXPECT_TRUE(addresses[0].ends_with(L"%29%0D%0A%2D%2D%0D"));
    // Nobody knows how much of so long an address arrives.
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Per E-Mail versenden|48|Der Text ist zu lang"));
    const wxClipboardLocker clipboard;
    wxTextDataObject text;
    ASSERT_TRUE(wxTheClipboard->GetData(text));
    EXPECT_NE(text.GetText().ToStdWstring().find(L"eins ä \"x\""), std::wstring::npos);
    EXPECT_NE(text.GetText().ToStdWstring().find(longText), std::wstring::npos);
}

TEST_F(FrmSendAsEMail, WhatMailCannotCarryIsAskedForFirst) {
    Add(L"Ω");
    answer = MessageAnswer::No;
    Send([&](frmSendAsEMail& dialog) {
        Press(dialog.cmdAlle);
        Press(dialog.cmdOK);
        if (MailHasAllCharacters()) return;
        EXPECT_EQ(dialog.State(), DialogState::Waiting);
        EXPECT_EQ(messages, std::vector<std::wstring>{L"Zeichen gehen verloren|52|" +
                                                      LossQuestion({L"Ω"}, L"per E-Mail senden")});
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(addresses.size(), MailHasAllCharacters() ? 1u : 0u);
    EXPECT_EQ(messages.size(), MailHasAllCharacters() ? 0u : 1u);
}

TEST_F(FrmSendAsEMail, ANoteThatIsGoneIsReportedAndNothingIsSent) {
    Add(L"eins");
    frmNote& gone = Add(L"zwei");
    Send([&](frmSendAsEMail& dialog) {
        Press(dialog.cmdAlle);
        store.DeleteNote(gone);
        Press(dialog.cmdOK);
    });
    EXPECT_TRUE(addresses.empty());
    EXPECT_EQ(messages,
              std::vector<std::wstring>{
                  L"Notiz existiert nicht|16|Eine zum Versenden vorgesehene Notiz existiert nicht mehr.\r\n"
                  L"Der Vorgang wird abgebrochen."});
}

// Whatever the address is, the program for such addresses gets it as it is.
TEST_F(FrmSendAsEMail, NothingInAnAddressRunsAnything) {
    const std::wstring address =
        MailAddress(L"$(touch x)`id`;a@b|c 'e' ü", L"-x > /tmp/f && $HOME * \\ %s %PATH%",
                    EncodeMailBody(MailBody({L"$(touch y) \"d\""})));
    MailProgram program;
    EXPECT_TRUE(OpenAddress(address));
    EXPECT_TRUE(RunUntil([&] { return program.Got() != L""; }));
    EXPECT_EQ(program.Got(), address);
}
