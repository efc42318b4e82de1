#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "base/Text.h"
#include "dialogs/Clipboard.h"
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

TEST_F(FrmSendAsEMail, HandsTheChosenNotesOverInListOrder) {
    const std::wstring first = L"eins ä \"x\" & 5 %\r\nzwei", third = L"drei" + std::wstring(300'000, L'x');
    for (const std::wstring& text : {first, std::wstring(L"zwei"), third}) Add(text);
    const auto choose = [this](frmSendAsEMail& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Per E-Mail versenden");
        ASSERT_EQ(dialog.lstNotizen->GetCount(), 3u);
        EXPECT_EQ(dialog.lstNotizen->GetString(0), L"eins ä \"x\" & 5 % zwei");
        dialog.txtEmpfänger->SetValue(L"Jörg <a@b>");
        dialog.txtBetreff->SetValue(L"Grüße & mehr");
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdAlle);
        EXPECT_TRUE(dialog.cmdOK->IsEnabled());
        dialog.lstNotizen->Deselect(1);
        SendNotesAsEMail(store, {});  // it is open already
    };
    Send([&](frmSendAsEMail& dialog) {
        choose(dialog);
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_TRUE(addresses.empty());
    Send([&](frmSendAsEMail& dialog) {
        choose(dialog);
        Press(dialog.cmdOK);
    });
    const std::wstring body = MailBody({first, third});
    ASSERT_EQ(addresses.size(), 1u);
    EXPECT_TRUE(addresses[0] == MailAddress(L"Jörg <a@b>", L"Grüße & mehr", EncodeMailBody(body)));
    // Nobody knows how much of so long an address arrives.
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Per E-Mail versenden|48|Der Text ist zu lang"));
    EXPECT_TRUE(WithCrLf(ClipboardText().value_or(L"")) == body);
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
