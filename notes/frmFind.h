#pragma once
// The window in which notes are found, shown, copied and deleted, many at once; on its other page the bin,
// from which they are brought back. It stays open while its user goes on with other things, and follows what
// becomes of the notes meanwhile.

#include <memory>
#include <string>
#include <vector>

#include "dialogs/frmDialog.h"
#include "model/NoteSearch.h"
#include "notes/FindList.h"
#include "notes/NoteBin.h"
#include "notes/NoteStore.h"

class wxRadioButton;
class wxStaticText;
class wxTextCtrl;

class frmFind : public frmDialog {
  public:
    // Store and bin outlive the window.
    frmFind(NoteStore& store, NoteBin& bin);

    // Opens it with these words, or brings it to the front with those that are in it already where there are
    // no others, and gives them the keyboard.
    static void Open(NoteStore& store, NoteBin& bin, const std::wstring& words = {});

    wxTextCtrl* txtSuchen = nullptr;
    wxRadioButton* optNotizen = nullptr;
    wxRadioButton* optPapierkorb = nullptr;
    std::unique_ptr<FindList> lstGefunden;
    wxTextCtrl* txtText = nullptr;  // of the chosen note
    wxStaticText* lblAnzahl = nullptr;
    wxButton* cmdKopieren = nullptr;
    wxButton* cmdLöschen = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;  // "Zeigen", in the bin "Wiederherstellen"

  private:
    // What was chosen before the list became another one.
    struct Choice {
        std::vector<std::wstring> keys;
        std::wstring current;
        int first = 0;  // the row to be chosen if none of them is there any more
    };

    wxSizer* CreateSearch();
    wxSizer* CreateFound();
    wxSizer* CreateActions();
    void Look(const std::wstring& words);
    bool InBin() const;
    void ShowPage(bool bin);
    KeepResult FillPage();
    void Follow();
    void Reload();
    Choice Chosen() const;
    void ShowFound(const Choice& choice);
    void ShowChoice();
    FindList::Row RowOf(int row) const;
    std::vector<SearchedNote> ChosenRows() const;
    std::vector<frmNote*> ChosenNotes() const;
    void OnKey(wxKeyEvent& event);
    bool OnCommandKey(const wxKeyEvent& event);
    void Type(wchar_t character);
    void ChooseAll();
    void Confirm() override;
    void ShowNotes();
    void Copy();
    void Delete();
    void BringBackChosen();

    NoteStore& store_;
    NoteBin& bin_;
    NoteSearch search_;
    wxString shown_;              // in the box
    std::size_t unreadable_ = 0;  // files in the bin
    bool following_ = false;      // something has changed, and will be shown
    bool choosing_ = false;       // likewise the choice
    const NoteStore::Watch watch_{store_, [this] { Follow(); }};
};
