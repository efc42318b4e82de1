#pragma once
// What a screen reader calls a control, and where the keys of captions lead. Buttons, check boxes and the
// like are called by their own captions; boxes and lists by the label or the frame beside them.

#include <wx/string.h>

class wxKeyEvent;
class wxWindow;

// Joins every label and every frame caption below this window with the control that it stands before: its
// name is read for the control, its key moves the focus there. To be called once all controls exist.
void NameControls(wxWindow& parent);

// The same for one pair; for controls that do not follow their label.
void JoinLabel(wxWindow& label, wxWindow& control);

// Does what Alt and the key of a caption in this window mean, where GTK or Windows does not do so by itself:
// gives the focus to the control joined with a label, presses a button. False when there is nothing to do.
bool FollowKey(wxWindow& window, const wxKeyEvent& event);

// Makes readers announce a window as a dialog, or as an alert, of which they read all texts at once.
enum class DialogRole { Dialog, Alert };
void AnnounceAs(wxWindow& window, DialogRole role);

// Names a control that no label on the screen names.
void NameControl(wxWindow& control, const wxString& name);

// The same for a picture that we paint ourselves. Takes effect whenever it is called, so the name may follow
// what the picture shows.
enum class PictureRole { Image, ProgressBar };
void NamePicture(wxWindow& picture, PictureRole role, const wxString& name);
