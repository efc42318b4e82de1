#pragma once
// The picture shown while the program starts. It leaves the keyboard where the user types and goes by itself.

#include <wx/bitmap.h>
#include <wx/frame.h>

#include <chrono>

class frmSplash : public wxFrame {
  public:
    frmSplash();

    // Shows the picture for a moment, or until it is clicked or a key is pressed on it, and lets events run
    // meanwhile.
    static void ShowForAMoment(std::chrono::milliseconds moment = std::chrono::milliseconds(250));

  private:
    void OnPaint(wxPaintEvent& event);
    void Close(wxEvent& event);

    wxBitmap picture_;
    bool closed_ = false;
};
