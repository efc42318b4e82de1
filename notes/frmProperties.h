#pragma once
// The dialog in which a note is written or edited. It works on a copy: nothing reaches a note before the
// caller takes it from here. The text stands in three boxes, one for each alignment, of which one is visible;
// all three always hold the same text in the same look.

#include <array>
#include <cstdint>
#include <iterator>
#include <string>

#include "dialogs/frmDialog.h"
#include "model/Note.h"
#include "model/TextHistory.h"

class wxCheckBox;
class wxRadioButton;
class wxSpinCtrl;
class wxStaticText;
class wxTextCtrl;

class frmProperties : public frmDialog {
  public:
    explicit frmProperties(const wxString& caption);

    // Fills the dialog from a note.
    void Fill(const Note& note);
    // The note with the text and the look that the dialog holds.
    Note Written(Note note) const;
    // There is a text, and it is not the one that the dialog was filled with.
    bool TextChanged() const;

    // The controls, each under its name.
    wxTextCtrl* txtMessage = nullptr;                           // shown for alignment 0
    wxTextCtrl* txtMessageRechts = nullptr;                     // 1
    wxTextCtrl* txtMessageZentr = nullptr;                      // 2
    std::array<wxCheckBox*, std::size(kNoteStyles)> chkForm{};  // in that order
    std::array<wxRadioButton*, 4> optFarbe{};
    std::array<wxRadioButton*, 3> optAusrichtung{};
    wxStaticText* Label1 = nullptr;
    wxSpinCtrl* updwnSchriftgrad = nullptr;  // with its text box, txtSchriftgrad, as part of it
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  private:
    wxSizer* CreateBoxes();
    wxSizer* CreateForms();
    wxSizer* CreateColors();
    wxSizer* CreateAlignments();
    wxSizer* CreateSize();
    void OnText(wxTextCtrl* source);
    void UpdateLook();
    void UpdateAlignment();
    NoteLook SelectedLook() const;
    std::int32_t SelectedSize() const;  // also one that is still being typed
    void MendBox(wxTextCtrl* box);
    void TellOfCut();
    void OnBoxKey(wxKeyEvent& event);
    void ShowText(std::size_t caret);

    std::array<wxTextCtrl*, 3> boxes_{};
    TextHistory history_;    // of what all three boxes hold, line breaks as the control has them
    std::wstring filled_;    // what they were filled with
    std::size_t caret_ = 0;  // where it belongs in a box that holds too much
    std::size_t cut_ = 0;    // characters that did not fit and of which the user has still to be told
    bool telling_ = false;
    bool updating_ = false;
};
