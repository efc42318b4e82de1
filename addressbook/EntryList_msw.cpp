#include <wx/listctrl.h>

#include <algorithm>

#include "addressbook/EntryList.h"
#include "dialogs/DialogLayout.h"

namespace {

constexpr int kBoxWidth = 30, kHeadingPadding = 24;  // device-independent pixels

class EntryView : public EntryList {
  public:
    EntryView(wxWindow* parent, const std::vector<std::wstring>& headings, int characters, int lines) {
        list_ = new wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                               wxLC_REPORT | wxLC_SINGLE_SEL | wxBORDER_THEME);
        list_->EnableCheckBoxes();
        int total = parent->FromDIP(kBoxWidth);
        list_->AppendColumn(wxString(), wxLIST_FORMAT_LEFT, total);
        for (const std::wstring& heading : headings) {
            const int width = std::max(RoomForText(*parent, characters, 1).x,
                                       parent->GetTextExtent(heading).x + parent->FromDIP(kHeadingPadding));
            list_->AppendColumn(heading, wxLIST_FORMAT_LEFT, width);
            total += width;
        }
        list_->SetMinSize({total + parent->FromDIP(kHeadingPadding), RoomForText(*parent, 1, lines).y});
        list_->Bind(wxEVT_LIST_ITEM_CHECKED, [this](wxListEvent&) { Changed(); });
        list_->Bind(wxEVT_LIST_ITEM_UNCHECKED, [this](wxListEvent&) { Changed(); });
        list_->Bind(wxEVT_LIST_COL_CLICK, [this](wxListEvent& event) {
            if (OnHeading) OnHeading(event.GetColumn());
        });
        list_->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
            const int column = event.GetKeyCode() - L'0';
            if (event.GetModifiers() == wxMOD_CONTROL && column > 0 && column < list_->GetColumnCount()) {
                if (OnHeading) OnHeading(column);
            } else {
                event.Skip();
            }
        });
        // A double click says which row is meant.
        list_->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent& event) {
            list_->CheckItem(event.GetIndex(), !list_->IsItemChecked(event.GetIndex()));
        });
    }

    wxWindow& Window() const override { return *list_; }
    int Count() const override { return list_->GetItemCount(); }
    std::wstring Text(int row, int column) const override {
        return list_->GetItemText(row, column).ToStdWstring();
    }
    void SetText(int row, int column, const std::wstring& text) override {
        list_->SetItem(row, column, text);
    }
    void Append() override { list_->InsertItem(list_->GetItemCount(), wxString()); }
    void Delete(int row) override { list_->DeleteItem(row); }
    bool IsChecked(int row) const override { return list_->IsItemChecked(row); }
    void Check(int row, bool on) override {
        checking_ = true;
        list_->CheckItem(row, on);
        checking_ = false;
    }
    void ShowSorted(int column, bool ascending) override { list_->ShowSortIndicator(column, ascending); }

  private:
    void Changed() {
        if (!checking_ && OnCheck) OnCheck();
    }

    wxListCtrl* list_ = nullptr;
    bool checking_ = false;  // what changes is our own doing
};

}  // namespace

std::unique_ptr<EntryList> EntryList::Create(wxWindow* parent, const std::vector<std::wstring>& headings,
                                             int characters, int lines) {
    return std::make_unique<EntryView>(parent, headings, characters, lines);
}
