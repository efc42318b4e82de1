#include "net/frmFlood.h"

#include <wx/button.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <utility>

#include "dialogs/ControlNames.h"
#include "dialogs/Message.h"
#include "model/KeepReason.h"
#include "net/basNetworkAccess.h"
#include "res/Resources.h"

namespace {

constexpr int kTextCharacters = 70;

std::wstring Described(const FloodGuard::Flood& flood) {
    if (flood.address.empty()) {
        return L"Sehr viele Notizen sind von anderen Computern gekommen, ohne dass sich jemand darum "
               L"gekümmert hat. Kivora lehnt weitere ab, bis Sie sich entscheiden. Wer sie sendet, erfährt "
               L"es.\r\n\r\n"
               L"Nach \"Ablehnen\" nimmt Kivora erst wieder Notizen an, wenn Sie unter denen aufgeräumt "
               L"haben, die da sind. Gelöscht werden alle, die noch niemand angefasst hat; sie liegen dann "
               L"im "
               L"Papierkorb, im Ordner \"flut\", und Kivora nimmt wieder Notizen an.";
    }
    const std::wstring address(flood.address.begin(), flood.address.end());
    return L"Der Computer " + address + L" hat innerhalb einer Minute mehr als " +
           std::to_wstring(kMostNotesAMinute) +
           L" Notizen gesendet. Kivora lehnt weitere von ihm ab, bis Sie sich entscheiden. Wer sie sendet, "
           L"erfährt es.\r\n\r\n"
           L"\"Ablehnen\" gilt für diesen Computer bis zum nächsten Start von Kivora. Gelöscht werden seine "
           L"Notizen aus dieser Minute, die noch niemand angefasst hat; sie liegen dann im Papierkorb, im "
           L"Ordner \"flut\".";
}

}  // namespace

frmFlood::frmFlood(const FloodGuard::Flood& flood, std::function<void(FloodGuard::Answer answer)> answered)
    : frmDialog(Alone(), L"Zu viele Notizen", L"ch4_network.html"), answered_(std::move(answered)) {
    AnnounceAs(*this, DialogRole::Alert);
    auto* picture = new wxStaticBitmap(this, wxID_ANY, LoadPicture(kWarningPicture));
    NameControl(*picture, L"Warnung");
    lblFlood = new wxStaticText(this, wxID_ANY, Described(flood));
    lblFlood->Wrap(RoomForText(*this, kTextCharacters, 1).x);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(picture, wxSizerFlags().Top());
    content->AddSpacer(FromDIP(kDialogMargin));
    content->Add(lblFlood, wxSizerFlags(1));
    // It comes while the user does something else: the key that he is just pressing must not let more in.
    wxSizer* const buttons = CreateButtons(L"&Ablehnen", L"");
    cmdLöschen = CreateChoice(*buttons, flood.address.empty() ? L"&Löschen" : L"Ablehnen und &löschen",
                              FloodGuard::Answer::Deleted);
    cmdAnnehmen = CreateChoice(*buttons, L"&Weiter annehmen", FloodGuard::Answer::GoOn);
    SetContent(content, buttons);
    cmdOK->SetFocus();
}

wxButton* frmFlood::CreateChoice(wxSizer& buttons, const wchar_t* caption, FloodGuard::Answer answer) {
    auto* button = new wxButton(this, wxID_ANY, caption);
    button->Bind(wxEVT_BUTTON, [this, answer](wxCommandEvent&) {
        answer_ = answer;
        End(DialogState::Ok);
    });
    buttons.AddSpacer(FromDIP(kDialogGap));
    buttons.Add(button);
    return button;
}

void AskAboutFlood(NetworkAccess& network, const FloodGuard::Flood& flood) {
    auto* dialog = new frmFlood(flood, [&network](FloodGuard::Answer answer) {
        const KeepResult deleted = network.AnswerFlood(answer);
        if (deleted.Kept()) return;
        TellMessage(
            L"Die Notizen wurden nicht gelöscht, denn sie konnten nicht im Papierkorb aufgehoben "
            L"werden.\r\n" +
                ReasonText(deleted),
            kCritical, L"Papierkorb");
    });
    dialog->Ask();
}
