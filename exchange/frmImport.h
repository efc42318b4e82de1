#pragma once
// The dialog in which the user chooses an export file and which of its notes to take, with a preview of one.
// It changes nothing; the caller reads its choice.

#include <filesystem>
#include <functional>
#include <vector>

#include "dialogs/frmDialog.h"
#include "exchange/FileDialog.h"
#include "notes/NoteChoice.h"

struct Note;
struct NoteLook;
class wxStaticBox;
class wxTextCtrl;

// Asks whether to wait on for a file that does not answer; events run meanwhile.
bool WaitsOnFor(const std::filesystem::path& file);

class frmImport : public frmDialog, public NoteChoiceControls {
  public:
    frmImport();

    // For each record listed, in the order of the file, whether it is to be taken.
    std::vector<bool> ChosenRecords() const;
    std::filesystem::path File() const;

    // The controls, each under its name.
    wxStaticBox* Frame1 = nullptr;
    wxTextCtrl* txtDatei = nullptr;
    wxButton* cmdDurchsuchen = nullptr;
    FileDialogOptions dlgImport{.DialogTitle = L"Kivora-Exportdatei öffnen..."};
    NoteChoice* Frame2 = nullptr;
    wxStaticBox* Frame3 = nullptr;
    wxTextCtrl* txtNotiz = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  private:
    wxSizer* CreateFile();
    wxSizer* CreatePreview();
    void AcceptDroppedFiles(wxWindow& window);
    void Browse();
    template <class Result>
    Result Read(std::function<Result()> read);
    void OnFileChanged();
    void ShowPreview(int row);
    void ShowNote(const Note& note);
    void ShowLook(const NoteLook& look);
    void ShowNoPreview();

    bool browsing_ = false, reading_ = false;
};
