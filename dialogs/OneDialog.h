#pragma once
// A dialog of which there is only one at a time, from its making to its end.

template <class Dialog>
class OpenDialog {
  public:
    // place: where others find the dialog while it is open.
    OpenDialog(Dialog*& place, Dialog* dialog) : place_(place) { place_ = dialog; }
    ~OpenDialog() {
        place_->Destroy();
        place_ = nullptr;
    }
    OpenDialog(const OpenDialog&) = delete;
    OpenDialog& operator=(const OpenDialog&) = delete;
    Dialog* operator->() const { return place_; }

  private:
    Dialog*& place_;
};

// Brings the dialog to the front, or what its caller still waits for; false when there is none.
template <class Dialog>
bool BroughtForward(Dialog* dialog) {
    if (dialog) dialog->Raise();
    return dialog != nullptr;
}
