#include "net/SendNotes.h"

#include <algorithm>
#include <optional>

#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "net/basNetworkAccess.h"
#include "net/frmSendOverNetwork.h"
#include "net/frmSendOverNetworkProgress.h"
#include "notes/NoteChoice.h"
#include "notes/NoteStore.h"

namespace {

// Of a note's text in messages about it.
constexpr std::size_t kNamedCharacters = 25;

// A receiver that says more than this about a note means no good.
constexpr std::size_t kShownCharacters = 2000;

// How long the window shows that a receiver was sent nothing, unless it is closed.
constexpr std::chrono::seconds kTimeToRead{5};

// From the dialog to the end of the progress.
OneDialog sending;

struct Order {
    std::vector<std::wstring> recipients;
    std::vector<Note> notes;  // as they are now; a note may be deleted while it is being sent
};

std::optional<Order> AskForOrder(NoteStore& store) {
    const OneDialog::Opened<frmSendOverNetwork> dialog(sending, store);
    if (dialog->ShowModal() != 1) return std::nullopt;
    auto notes = ChosenNotes(store, dialog->Frame1->Marked(), L"Versenden");
    if (!notes) return std::nullopt;
    return Order{dialog->Recipients(), std::move(*notes)};
}

std::wstring Described(const clsOutgoing::Failure& failure) {
    if (failure.kind == clsOutgoing::Failure::NoAnswer) return L"Der Ziel-Computer antwortet nicht.";
    const wchar_t* const unexpected =
        failure.kind == clsOutgoing::Failure::Unexpected ? L"unerwarteter " : L"";
    return L"Beim Versenden der Notiz \"" + failure.note.text.substr(0, kNamedCharacters) +
           L"...\" ist ein " + unexpected + L"Fehler aufgetreten.";
}

}  // namespace

void ShowSendFailure(const clsOutgoing::Failure& failure) {
    std::wstring answer = failure.answer.substr(0, kShownCharacters);
    std::replace(answer.begin(), answer.end(), L'\0', L' ');
    ShowMessage(Described(failure) + L"\r\nDer Ziel-Computer sendete die Fehlermeldung: " + answer, kCritical,
                L"Fehler beim Versenden der Notiz");
}

void SendNotesOverNetwork(NetworkAccess& network, NoteStore& store) {
    if (sending.BroughtForward()) return;
    network.Listen();
    const std::optional<Order> order = AskForOrder(store);
    if (!order || IsQuitting()) return;

    std::shared_ptr<clsOutgoing> session;
    bool cancelled = false;
    const OneDialog::Opened<frmSendOverNetworkProgress> progress(sending, [&] {
        cancelled = true;
        if (session) session->Abort();
        network.CancelConnect();
    });
    progress->Show();
    for (const std::wstring& recipient : order->recipients) {
        session = network.CreateOutgoing();
        progress->Attach(session, order->notes.size());
        progress->SetStep(1);
        network.Connect(session, recipient);
        if (IsQuitting()) return;
        const bool connected = session->IsConnected();
        if (!cancelled && !connected) {
            ShowMessage(
                L"Es konnte keine Verbindung zum Ziel-Computer aufgebaut werden.\r\nVersuchen Sie es "
                L"später bitte erneut.",
                kCritical, L"Keine Verbindung zum Ziel-Computer");
        } else if (!cancelled) {
            progress->SetStep(2);
            session->Send(order->notes, ShowSendFailure);
            if (IsQuitting()) return;
            progress->SetStep(3);
        }
        network.Shutdown(session);
        if (cancelled || IsQuitting()) return;
        if (connected && !session->SpeaksOurVersion()) {
            progress->ShowProgress();
            WaitUntil([&] { return cancelled; }, kTimeToRead);
            if (cancelled || IsQuitting()) return;
        }
    }
}
