#include "addressbook/frmAddressbook.h"

#include <wx/button.h>
#include <wx/listctrl.h>
#include <wx/weakref.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "addressbook/frmAddressbookEntryEdit.h"
#include "addressbook/frmAddressbookEntryNew.h"
#include "base/CaseFold.h"
#include "base/basWait.h"

namespace {

enum Column { kCheckBox = 0, kName, kAddress, kComment, kColumns };

frmAddressbook* openList = nullptr;

}  // namespace

frmAddressbook::frmAddressbook(bool selecting)
    : frmDialog(L"Netzwerk-Adressbuch", L"ch4_networkaddressbook.html", true) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(CreateList(), wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogMargin));
    content->Add(CreateColumnOfButtons(), wxSizerFlags());
    SetContent(content, CreateButtons(L"&OK", selecting ? L"Ab&brechen" : L"&Schließen"));
    if (!selecting) {
        cmdOK->Hide();
        cmdAbbrechen->SetDefault();
    }
    SetMinSize(GetSize());
    RefreshList();
    lvwEntries->SetFocus();
}

wxSizer* frmAddressbook::CreateList() {
    lvwEntries = new wxListCtrl(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(500, 260)),
                                wxLC_REPORT | wxLC_SINGLE_SEL | wxBORDER_THEME);
    lvwEntries->EnableCheckBoxes();
    lvwEntries->AppendColumn(wxString(), wxLIST_FORMAT_LEFT, FromDIP(30));
    lvwEntries->AppendColumn(L"Name", wxLIST_FORMAT_LEFT, FromDIP(130));
    lvwEntries->AppendColumn(L"IP-Adresse/ Rechnername", wxLIST_FORMAT_LEFT, FromDIP(180));
    lvwEntries->AppendColumn(L"Kommentar", wxLIST_FORMAT_LEFT, FromDIP(140));
    lvwEntries->Bind(wxEVT_LIST_ITEM_CHECKED, [this](wxListEvent&) { UpdateButtons(); });
    lvwEntries->Bind(wxEVT_LIST_ITEM_UNCHECKED, [this](wxListEvent&) { UpdateButtons(); });
    lvwEntries->Bind(wxEVT_LIST_COL_CLICK, [this](wxListEvent& event) { SortBy(event.GetColumn()); });
    // A double click says which row is meant.
    lvwEntries->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent& event) {
        lvwEntries->CheckItem(event.GetIndex(), !lvwEntries->IsItemChecked(event.GetIndex()));
        UpdateButtons();
    });
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(lvwEntries, wxSizerFlags(1).Expand());
    return sizer;
}

wxSizer* frmAddressbook::CreateColumnOfButtons() {
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](wxButton*& button, const wxString& caption, void (frmAddressbook::*action)()) {
        button = new wxButton(this, wxID_ANY, caption);
        button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
        buttons->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(kDialogGap)));
    };
    add(cmdNeu, L"&Neu...", &frmAddressbook::OnNeu);
    add(cmdBearbeiten, L"Be&arbeiten...", &frmAddressbook::OnBearbeiten);
    add(cmdLöschen, L"&Löschen", &frmAddressbook::OnLöschen);
    buttons->AddSpacer(FromDIP(kDialogMargin));
    cmdAlle = new wxButton(this, wxID_ANY, L"&Alle");
    cmdKeine = new wxButton(this, wxID_ANY, L"&Keine");
    for (wxButton* button : {cmdAlle, cmdKeine}) {
        button->Bind(wxEVT_BUTTON, [this, button](wxCommandEvent&) { CheckAll(button == cmdAlle); });
        buttons->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(kDialogGap)));
    }
    return buttons;
}

std::wstring frmAddressbook::Cell(long row, int column) const {
    return lvwEntries->GetItemText(row, column).ToStdWstring();
}

void frmAddressbook::WriteRow(long row, const clsAddressBookEntry& entry) {
    lvwEntries->SetItem(row, kName, entry.PCName());
    lvwEntries->SetItem(row, kAddress, entry.IP());
    lvwEntries->SetItem(row, kComment, entry.Comment());
}

void frmAddressbook::RefreshList() {
    for (long row = lvwEntries->GetItemCount() - 1; row >= 0; --row) {
        if (!AddressBookEntryExists(Cell(row, kName))) lvwEntries->DeleteItem(row);
    }
    std::unordered_map<std::wstring, long> rows;
    for (long row = 0; row < lvwEntries->GetItemCount(); ++row) rows[InCapitals(Cell(row, kName))] = row;
    for (const clsAddressBookEntry& entry : AddressBook()) {
        const auto found = rows.find(InCapitals(entry.PCName()));
        WriteRow(found != rows.end() ? found->second
                                     : lvwEntries->InsertItem(lvwEntries->GetItemCount(), wxString()),
                 entry);
    }
    Sort();
    UpdateButtons();
}

void frmAddressbook::SortBy(int column) {
    if (column < 0 || column >= kColumns) return;
    ascending_ = column != sortColumn_ || !ascending_;
    sortColumn_ = column;
    Sort();
}

void frmAddressbook::Sort() {
    if (sortColumn_ < 0) return;
    struct Row {
        std::wstring key;
        clsAddressBookEntry entry;
        bool checked;
    };
    std::vector<Row> rows;
    for (long row = 0; row < lvwEntries->GetItemCount(); ++row) {
        clsAddressBookEntry entry;
        entry.PCName(Cell(row, kName));
        entry.IP(Cell(row, kAddress));
        entry.Comment(Cell(row, kComment));
        rows.push_back({InCapitals(Cell(row, sortColumn_)), entry, lvwEntries->IsItemChecked(row)});
    }
    std::stable_sort(rows.begin(), rows.end(), [this](const Row& left, const Row& right) {
        return ascending_ ? left.key < right.key : right.key < left.key;
    });
    for (long row = 0; row < static_cast<long>(rows.size()); ++row) {
        const Row& sorted = rows[static_cast<std::size_t>(row)];
        WriteRow(row, sorted.entry);
        if (lvwEntries->IsItemChecked(row) != sorted.checked) lvwEntries->CheckItem(row, sorted.checked);
    }
    if (sortColumn_ != kCheckBox) lvwEntries->ShowSortIndicator(sortColumn_, ascending_);
}

void frmAddressbook::CheckAll(bool on) {
    for (long row = 0; row < lvwEntries->GetItemCount(); ++row) lvwEntries->CheckItem(row, on);
    UpdateButtons();
}

void frmAddressbook::UpdateButtons() {
    bool anyChecked = false;
    for (long row = 0; row < lvwEntries->GetItemCount() && !anyChecked; ++row) {
        anyChecked = lvwEntries->IsItemChecked(row);
    }
    cmdBearbeiten->Enable(anyChecked);
    cmdLöschen->Enable(anyChecked);
}

std::vector<clsAddressBookEntry> frmAddressbook::CheckedEntries() const {
    std::vector<clsAddressBookEntry> entries;
    for (long row = 0; row < lvwEntries->GetItemCount(); ++row) {
        if (!lvwEntries->IsItemChecked(row)) continue;
        if (const clsAddressBookEntry* entry = GetAddressBookEntry(Cell(row, kName)))
            entries.push_back(*entry);
    }
    return entries;
}

void frmAddressbook::OnNeu() {
    if (std::exchange(busy_, true)) return;
    auto* dialog = new frmAddressbookEntryNew;
    if (dialog->ShowModal() == 1) AddAddressBookEntry(dialog->Entry());
    dialog->Destroy();
    if (IsQuitting()) return;
    busy_ = false;
    RefreshList();
}

void frmAddressbook::OnBearbeiten() {
    const std::vector<clsAddressBookEntry> entries = CheckedEntries();
    if (entries.empty() || std::exchange(busy_, true)) return;
    auto* dialog = new frmAddressbookEntryEdit;
    dialog->ShowModal(entries);
    dialog->Destroy();
    if (IsQuitting()) return;
    busy_ = false;
    RefreshList();
}

void frmAddressbook::OnLöschen() {
    if (busy_) return;
    for (const clsAddressBookEntry& entry : CheckedEntries()) RemoveAddressBookEntry(entry.PCName());
    RefreshList();
}

std::vector<clsAddressBookEntry> ShowAddressBook(bool selecting) {
    if (openList) {
        openList->Raise();
        return {};
    }
    openList = new frmAddressbook(selecting);
    std::vector<clsAddressBookEntry> chosen;
    if (openList->ShowModal() == 1) chosen = openList->CheckedEntries();
    std::exchange(openList, nullptr)->Destroy();
    return chosen;
}
