#pragma once
// Shows how far the transfer has come: an arrow beside the step that is under way, how many notes have been
// sent, the protocol of the other side. It only looks at the session, except that it can abort it.

#include <wx/timer.h>

#include <functional>
#include <memory>

#include "dialogs/frmDialog.h"

class clsOutgoing;
class wxGauge;
class wxStaticText;

class frmSendOverNetworkProgress : public frmDialog {
  public:
    // cancelled: called once when the user does not want to go on.
    explicit frmSendOverNetworkProgress(std::function<void()> cancelled);

    // The session to look at from now on, and the number of notes that it is to send.
    void Attach(std::shared_ptr<const clsOutgoing> session, std::size_t notes);

    // Puts the arrow beside a step, 1 to 3; 0 puts it out of sight. Others do nothing.
    void SetStep(int step);

    // Shows how far the session is now; happens by itself five times a second.
    void ShowProgress();

    // The controls, each under its name.
    wxStaticText* Label1 = nullptr;
    wxStaticText* Label3 = nullptr;
    wxStaticText* Label5 = nullptr;
    wxWindow* imgArrow = nullptr;
    wxGauge* prgNotes = nullptr;
    wxStaticText* lblProgress = nullptr;
    wxStaticText* lblProtocol = nullptr;
    wxButton* cmdCancel = nullptr;
    wxTimer tmrUpdate;

  private:
    int Pixels(int twips) const;
    wxStaticText* CreateLabel(const wchar_t* caption, int step);
    void Cancel();

    std::function<void()> cancelled_;
    std::shared_ptr<const clsOutgoing> session_;
    std::size_t notes_ = 0;
};
