#pragma once
// What the program gives its notes: the store, the menu, the properties dialog and, once they are deleted, a
// place from which they can be taken back.

#include <functional>
#include <optional>

#include "exchange/KeptNotes.h"
#include "notes/NoteStore.h"

class NoteServices : public NoteHost {
  public:
    NoteServices();

    NoteStore& Store() { return store_; }

    // Opens the window that finds notes, with these words or with those that are in it already.
    void Find(const std::wstring& words);

    // Who opens the menu for a note, at the mouse where no place is given; nobody until it is set.
    std::function<void(frmNote* note, std::optional<wxPoint> at)> OpenMenu;

    // The menu for a note as data, and who runs an entry of it; both or none.
    std::function<std::vector<TrayMenuEntry>(const frmNote& note)> DescribeMenu;
    std::function<void(frmNote& note, int id)> RunMenu;

    // Who takes in the notes of a file; nobody until it is set.
    std::function<void(const std::wstring& fileName)> ImportFile;

    // While the program ends the store empties itself window by window, and its image must stay whole. So
    // nothing that a note asks for then is done.
    void SaveNotes() override;
    void ApplyForeground() override;
    void ForgetMinimizedNote(frmNote& note) override;
    void ShowPopupMenu(frmNote& note, std::optional<wxPoint> at) override;
    void FocusNextNote(frmNote& note, bool forward) override;
    void PassKeyboardOn(frmNote& note) override;
    void EditNote(frmNote& note) override;
    void FindNotes(frmNote& note) override;
    void BringBackDeleted() override;
    void OpenLink(const std::wstring& address) override;
    bool AddText(const std::wstring& text) override;
    void ImportFiles(const std::vector<std::wstring>& fileNames) override;
    std::vector<TrayMenuEntry> TrayMenu(const frmNote& note) override;
    void RunFromTrayMenu(frmNote& note, int id) override;

  private:
    NoteStore store_;
    KeptBin bin_;
};
