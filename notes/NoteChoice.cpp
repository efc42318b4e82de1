#include "notes/NoteChoice.h"

#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/wupdlock.h>

#include "dialogs/DialogLayout.h"
#include "dialogs/Message.h"
#include "notes/ListRows.h"
#include "notes/NoteStore.h"

namespace {
// More of a text does not fit into any list, and finding out how much does takes time with every character.
constexpr std::size_t kShownCharacters = 1000;
}  // namespace

NoteChoice::NoteChoice(wxWindow* parent, Source source, const Options& options)
    : wxPanel(parent), source_(std::move(source)), options_(options) {
    auto* frame = new wxStaticBoxSizer(wxHORIZONTAL, this, options.caption);
    wxWindow* box = frame->GetStaticBox();
    const wxSize size = RoomForText(*this, 40, 9);
    if (options.marking == CheckBoxes) {
        auto* list = new wxCheckListBox(box, wxID_ANY, wxDefaultPosition, size);
        list->Bind(wxEVT_CHECKLISTBOX, [this](wxCommandEvent&) { Changed(); });
        lstNotizen = list;
    } else {
        lstNotizen = new wxListBox(box, wxID_ANY, wxDefaultPosition, size, 0, nullptr, wxLB_EXTENDED);
        MakeRowsAlike(*lstNotizen);
        lstNotizen->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) {
            if (marking_) return;
            if (OnClick) OnClick(CurrentRow(*lstNotizen));
            Changed();
        });
    }
    EndInDots(*lstNotizen);
    const int gap = FromDIP(kDialogGap);
    frame->Add(lstNotizen, wxSizerFlags(1).Expand().Border(wxALL, gap));

    auto* buttons = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](wxButton*& button, const wchar_t* caption, auto&& action) {
        button = new wxButton(box, wxID_ANY, caption);
        button->Bind(wxEVT_BUTTON, [action](wxCommandEvent&) { action(); });
        buttons->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM, gap));
    };
    add(cmdAlle, L"&Alle", [this] { MarkAll(true); });
    add(cmdKeine, L"&Keine", [this] { MarkAll(false); });
    if (options.refresh) add(cmdRefresh, L"Ak&tualisieren", [this] { Refill(); });
    frame->Add(buttons, wxSizerFlags().Border(wxTOP | wxRIGHT | wxBOTTOM, gap));
    SetSizer(frame);
    Refill();
}

NoteChoice::Source NoteChoice::NotesOf(const NoteStore& store) {
    return [&store] {
        std::vector<Entry> entries;
        for (const NotePtr& note : store.Notes()) entries.push_back({note->TextCleaned(), note->NoteKey()});
        return entries;
    };
}

void NoteChoice::Refill() {
    const std::vector<Entry> entries = source_();
    wxArrayString texts;
    keys_.clear();
    for (const Entry& entry : entries) {
        texts.push_back(entry.text.substr(0, kShownCharacters));
        keys_.push_back(entry.key);
    }
    {
        // Not drawn anew for every row.
        const wxWindowUpdateLocker still(lstNotizen);
        lstNotizen->Set(texts);
    }
    MarkAll(options_.markedAtFirst);
}

std::vector<std::int32_t> NoteChoice::Marked() const {
    std::vector<std::int32_t> marked;
    for (unsigned i = 0; i < keys_.size(); ++i) {
        if (IsMarked(i)) marked.push_back(keys_[i]);
    }
    return marked;
}

bool NoteChoice::AnyMarked() const {
    for (unsigned i = 0; i < keys_.size(); ++i) {
        if (IsMarked(i)) return true;
    }
    return false;
}

void NoteChoice::MarkAll(bool on) {
    marking_ = true;
    if (options_.marking == Selection) {
        SelectAllRows(*lstNotizen, on);
    } else {
        for (unsigned i = 0; i < keys_.size(); ++i) static_cast<wxCheckListBox*>(lstNotizen)->Check(i, on);
    }
    marking_ = false;
    Changed();
}

bool NoteChoice::IsMarked(unsigned index) const {
    if (options_.marking == Selection) return lstNotizen->IsSelected(static_cast<int>(index));
    return static_cast<const wxCheckListBox*>(lstNotizen)->IsChecked(index);
}

void NoteChoice::Changed() {
    if (OnChange) OnChange();
}

std::optional<std::vector<Note>> ChosenNotes(const NoteStore& store, const std::vector<std::int32_t>& keys,
                                             const std::wstring& purpose) {
    std::vector<Note> notes;
    for (const std::int32_t key : keys) {
        const frmNote* note = store.Find(key);
        if (!note) {
            ShowMessage(L"Eine zum " + purpose +
                            L" vorgesehene Notiz existiert nicht mehr.\r\nDer Vorgang wird abgebrochen.",
                        kCritical, L"Notiz existiert nicht");
            return std::nullopt;
        }
        notes.push_back(note->Content());
    }
    return notes;
}
