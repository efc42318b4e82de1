#pragma once
// The list in which the user chooses notes, with its buttons: a frame of the dialogs that export, import,
// print and send notes. What is chosen is marked, as a selection or by check boxes.

#include <wx/panel.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class NoteStore;
class wxButton;
class wxListBox;
struct Note;

// The controls of the list, each under its name. A dialog with such a list has them, too.
struct NoteChoiceControls {
    wxListBox* lstNotizen = nullptr;
    wxButton* cmdAlle = nullptr;
    wxButton* cmdKeine = nullptr;
    wxButton* cmdRefresh = nullptr;  // null without NoteChoice::Options::refresh
};

class NoteChoice : public wxPanel, public NoteChoiceControls {
  public:
    struct Entry {
        std::wstring text;  // in one line
        std::int32_t key = 0;
    };
    // Where the entries come from, asked whenever the list is filled.
    using Source = std::function<std::vector<Entry>()>;

    enum Marking { Selection, CheckBoxes };
    struct Options {
        const wchar_t* caption = L"Notizenauswahl";
        Marking marking = Selection;
        bool markedAtFirst = true;  // new entries are marked when the list is filled
        bool refresh = true;        // with the button that fills the list anew
    };

    NoteChoice(wxWindow* parent, Source source, const Options& options);

    // The notes of a store in its order; the keys are their NoteKeys. The store must outlive the list.
    static Source NotesOf(const NoteStore& store);

    // Fills the list anew from its source, as cmdRefresh does.
    void Refill();

    // Keys of the marked entries, in list order.
    std::vector<std::int32_t> Marked() const;
    bool AnyMarked() const;
    void MarkAll(bool on);

    // Called after every change of the marks and whenever the list was filled.
    std::function<void()> OnChange;

    // Called with the row that the user has clicked or walked to in a list of marking Selection, before
    // OnChange.
    std::function<void(int row)> OnClick;

  private:
    bool IsMarked(unsigned index) const;
    void Changed();

    Source source_;
    Options options_;
    std::vector<std::int32_t> keys_;
    bool marking_ = false;  // what changes in the list is our own doing
};

// The notes of these keys as they are now. Nothing when one of them is gone; the user has been told then that
// they cannot be dealt with. purpose: what they were chosen for, such as "Drucken".
std::optional<std::vector<Note>> ChosenNotes(const NoteStore& store, const std::vector<std::int32_t>& keys,
                                             const std::wstring& purpose);
