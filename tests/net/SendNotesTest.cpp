// "Notizen im Netzwerk versenden" with its dialogs.
#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/gauge.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "addressbook/frmAddressbook.h"
#include "dialogs/Message.h"
#include "dialogs/frmMessage.h"
#include "model/LostCharacters.h"
#include "model/StoredImage.h"
#include "net/SendNotes.h"
#include "net/frmSendOverNetwork.h"
#include "net/frmSendOverNetworkProgress.h"
#include "notes/NoteChoice.h"
#include "registry/clsRegistry.h"
#include "tests/addressbook/Entries.h"
#include "tests/net/NetworkTest.h"

namespace {

using Texts = std::vector<std::wstring>;

const std::wstring kNoConnection =
    L"Keine Verbindung zum Ziel-Computer|16|Es konnte keine Verbindung zum Ziel-Computer aufgebaut "
    L"werden.\r\n"
    L"Versuchen Sie es später bitte erneut.";

class SendNotes : public NetworkTest {
  protected:
    SendNotes() {
        for (const wchar_t* text : {L"eins", L"zwei"}) {
            store.AddNote(
                {.text = text, .look = {.size = 25, .bold = true, .alignment = kAlignRight, .color = kRed}});
        }
    }

    // Runs the operation; `fill` sees to its first dialog.
    void Send(const std::function<void(frmSendOverNetwork&)>& fill) {
        Run<frmSendOverNetwork>([this] { SendNotesOverNetwork(*network, store); }, fill);
        EXPECT_FALSE(OpenDialog<frmSendOverNetworkProgress>());
        // Where the program sends to itself, the receiving one ends by events of its own.
        EXPECT_TRUE(RunUntil([&] { return network->CountSessions() == 0; }));
    }
};

TEST_F(SendNotes, ChosenNotesGoToTheRecipientAndARefusalIsShown) {
    store.AddNote({.text = L"drei"});
    std::vector<std::string> lines;
    std::optional<RawServer> server(std::in_place, Answering("NOTE_TEXT eins", "ERROR  voll", &lines));
    Open(server->Port());
    Send([](frmSendOverNetwork& dialog) {
        dialog.txtEmpfänger->SetValue(L"127.0.0.1");
        Press(dialog.cmdAbbrechen);
    });
    Send([](frmSendOverNetwork& dialog) {
        EXPECT_EQ(dialog.Frame1->lstNotizen->GetCount(), 3u);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        dialog.txtEmpfänger->SetValue(L" , ");
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        dialog.txtEmpfänger->SetValue(L"127.0.0.1");
        Press(dialog.Frame1->cmdKeine);
        for (const unsigned note : {0u, 1u})
            static_cast<wxCheckListBox*>(dialog.Frame1->lstNotizen)->Check(note);
        dialog.Frame1->OnChange();
        Press(dialog.cmdOK);
    });
    server.reset();  // it may still be reading
    EXPECT_EQ(lines, (std::vector<std::string>{"NOTE_NEW", "NOTE_TEXT eins", "NOTE_NEW", "NOTE_TEXT zwei",
                                               "NOTE_FONT_SIZE 25", "NOTE_FONT_BOLD 1", "NOTE_FONT_ITALIC 0",
                                               "NOTE_FONT_UNDERLINED 0", "NOTE_FONT_ALIGNMENT 1",
                                               "NOTE_COLOR 255", "NOTE_FINISHED", "QUIT"}));
    EXPECT_EQ(messages,
              Texts{L"Fehler beim Versenden der Notiz|16|Beim Versenden der Notiz \"eins...\" ist ein "
                    L"Fehler aufgetreten.\r\nDer Ziel-Computer sendete die Fehlermeldung: voll"});
}

TEST_F(SendNotes, RecipientsComeFromTheAddressBookAndEachIsTried) {
    AddAddressBookEntry(Entry(L"a", L"127.0.0.1"));
    AddAddressBookEntry(Entry(L"b", L"niemand.invalid"));
    AddAddressBookEntry(Entry(L"c", L"localhost"));
    Open();
    const std::uint16_t port = network->LocalPort();
    network.reset();
    network.emplace(store, NetworkAccess::Options{port, port, kForever});
    Send([](frmSendOverNetwork& dialog) {
        wxTheApp->CallAfter([] {
            auto* book = OpenDialog<frmAddressbook>();
            ASSERT_TRUE(book);
            Press(book->cmdAlle);
            Press(book->cmdOK);
        });
        Registry().DeleteKey(kSettingsKey);
        Press(dialog.cmdAdressbuch);
        EXPECT_EQ(ReadStoredImage().entries.size(), 3u) << "the address book is saved";
        EXPECT_EQ(dialog.txtEmpfänger->GetValue(), L"127.0.0.1, niemand.invalid, localhost");
        EXPECT_EQ(dialog.Recipients(), (Texts{L"127.0.0.1", L"niemand.invalid", L"localhost"}));
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages, Texts{kNoConnection});
    EXPECT_EQ(store.CountNotes(), 6u);
    EmptyAddressBook();
}

TEST_F(SendNotes, WhatTheProtocolCannotCarryIsAskedForFirst) {
    Open(FreePort());
    store.AddNote({.text = L"Ω"});
    answer = MessageAnswer::No;
    Send([this](frmSendOverNetwork& dialog) {
        dialog.txtEmpfänger->SetValue(L"127.0.0.1");
        Press(dialog.cmdOK);
        EXPECT_EQ(dialog.State(), DialogState::Waiting);
        EXPECT_EQ(messages,
                  Texts{L"Zeichen gehen verloren|52|" + LossQuestion({L"Ω"}, L"über das Netzwerk senden")});
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(SendNotes, ANoteDeletedMeanwhileStopsEverything) {
    Open(FreePort());
    Send([this](frmSendOverNetwork& dialog) {
        dialog.txtEmpfänger->SetValue(L"127.0.0.1");
        store.DeleteNote(*store.Notes()[1]);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(messages,
              Texts{L"Notiz existiert nicht|16|Eine zum Versenden vorgesehene Notiz existiert nicht mehr.\r\n"
                    L"Der Vorgang wird abgebrochen."});
}

// Cancelling ends each phase at once and silently. Of a receiver of another version, which gets nothing, no
// message says so: the window then stays until it is closed.
TEST_F(SendNotes, CancellingEndsEveryPhase) {
    const struct {
        const char *phase, *greeting;
        int answers;  // to so many commands, QUIT among them
        wxStaticText* frmSendOverNetworkProgress::*label;
        const wchar_t *protocol, *progress;
    } rows[] = {
        {"connecting", "", 0, &frmSendOverNetworkProgress::Label1, L"", L"0 von 2"},
        {"sending", "OK X PROTOCOL_VERSION 1.0.0\r\n", 0, &frmSendOverNetworkProgress::Label3, L"Vers. 1.0.0",
         L"0 von 2"},
        {"within a note", "OK X PROTOCOL_VERSION 1.0.0\r\n", 2, &frmSendOverNetworkProgress::Label3,
         L"Vers. 1.0.0", L"0 von 2"},
        {"nothing was sent", "OK X PROTOCOL_VERSION 2.0.0\r\n", 1, &frmSendOverNetworkProgress::Label5,
         L"Vers. 2.0.0", L"2 von 2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.phase);
        std::atomic<bool> reached = false;
        bool cancelled = false;
        RawServer server([&](RawConnection& connection) {
            connection.Send(row.greeting);
            for (int i = 0; i < row.answers; ++i) {
                connection.Line();
                connection.Send("OK\r\n");
            }
            reached = true;
            connection.Rest();
        });
        Open(server.Port());
        const auto inPhase = [&](frmSendOverNetworkProgress& window) {
            return reached && window.lblProtocol->GetLabelText() == row.protocol &&
                   window.lblProgress->GetLabel() == row.progress;
        };
        const auto cancel = [&](frmSendOverNetworkProgress& window) {
            const int distance = window.imgArrow->GetPosition().y - (window.*row.label)->GetPosition().y;
            EXPECT_LT(std::abs(distance), window.FromDIP(8));
            EXPECT_EQ(window.prgNotes->GetValue(), row.progress[0] - L'0');
            SendNotesOverNetwork(*network, store);  // brings the window forward
            cancelled = true;
            if (row.answers == 0)
                window.Close();
            else
                Press(window.cmdCancel);
        };
        const WhenShown<frmSendOverNetworkProgress> user(cancel, inPhase);
        Send([](frmSendOverNetwork& dialog) {
            dialog.txtEmpfänger->SetValue(L"127.0.0.1, 127.0.0.1");
            Press(dialog.cmdOK);
        });
        EXPECT_TRUE(cancelled);
    }
    EXPECT_TRUE(messages.empty());
}

TEST_F(SendNotes, MessagesStandAboveTheProgress) {
    auto* window = new frmSendOverNetworkProgress([] {});
    window->Show();
    auto* message = new frmMessage(L"Text", kCritical, L"Titel");
    EXPECT_EQ(message->GetParent(), window);
    message->Destroy();
    window->Hide();
    message = new frmMessage(L"Text", kCritical, L"Titel");
    EXPECT_EQ(message->GetParent(), nullptr);
    message->Destroy();
    window->Destroy();
}

}  // namespace
