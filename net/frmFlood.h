#pragma once
// Tells the user that other computers send too many notes, and asks what to do. Nobody waits for the answer.

#include <functional>

#include "dialogs/frmDialog.h"
#include "net/FloodGuard.h"

class NetworkAccess;
class wxStaticText;

class frmFlood : public frmDialog {
  public:
    // answered: called once, when the dialog has gone from the screen. Closing it refuses.
    frmFlood(const FloodGuard::Flood& flood, std::function<void(FloodGuard::Answer answer)> answered);

    // Shows it and returns.
    void Ask() { Begin(); }

    wxStaticText* lblFlood = nullptr;
    using frmDialog::cmdOK;           // "Ablehnen"
    wxButton* cmdAnnehmen = nullptr;  // "Weiter annehmen"
    wxButton* cmdLöschen = nullptr;   // "Ablehnen und löschen", "Löschen" where it is nobody's

  private:
    wxButton* CreateChoice(wxSizer& buttons, const wchar_t* caption, FloodGuard::Answer answer);
    void Ended() override { answered_(answer_); }

    const std::function<void(FloodGuard::Answer answer)> answered_;
    FloodGuard::Answer answer_ = FloodGuard::Answer::Refuse;
};

// Asks about the flood and passes the answer to the network access, which must outlive the dialog. Tells the
// user when the notes could not be deleted.
void AskAboutFlood(NetworkAccess& network, const FloodGuard::Flood& flood);
