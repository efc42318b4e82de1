#include <wx/imaglist.h>
#include <wx/listctrl.h>

#include <algorithm>
#include <utility>

#include "dialogs/DialogLayout.h"
#include "notes/FindList.h"
#include "res/Resources.h"

namespace {

class FindView : public FindList {
  public:
    FindView(wxWindow* parent, Source source) {
        list_ = new Rows(parent, std::move(source));
        const int widths[] = {34, 22, 9};
        const wchar_t* const headings[] = {L"Notiz", L"Geschrieben", L"Farbe"};
        for (int column = 0; column < 3; ++column)
            list_->AppendColumn(headings[column], wxLIST_FORMAT_LEFT,
                                RoomForText(*parent, widths[column], 1).x);
        wxVector<wxBitmapBundle> pictures;
        for (int number = kFirstNoteIcon; number <= kLastNoteIcon; ++number)
            pictures.push_back(LoadPicture(number));
        list_->SetSmallImages(pictures);
        list_->SetMinSize(RoomForText(*parent, 65, 12));
        for (const auto& type :
             {wxEVT_LIST_ITEM_SELECTED, wxEVT_LIST_ITEM_DESELECTED, wxEVT_LIST_ITEM_FOCUSED}) {
            list_->Bind(type, [this](wxListEvent&) {
                if (!showing_ && OnChoice) OnChoice();
            });
        }
        list_->Bind(wxEVT_LEFT_DCLICK, [this](wxMouseEvent& event) {
            event.Skip();
            int where = 0;
            if (list_->HitTest(event.GetPosition(), where) != wxNOT_FOUND && OnDoubleClick) OnDoubleClick();
        });
        list_->Bind(wxEVT_CHAR, [this](wxKeyEvent& event) {
            const wxChar character = event.GetUnicodeKey();
            if (character < ' ' || character == WXK_DELETE || event.ControlDown() || !OnTyped)
                event.Skip();
            else
                OnTyped(character);
        });
        // What the list has of the width goes to the texts.
        list_->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
            event.Skip();
            const int others = list_->GetColumnWidth(1) + list_->GetColumnWidth(2);
            list_->SetColumnWidth(0, std::max(list_->GetClientSize().x - others, others));
        });
    }

    wxWindow& Window() const override { return *list_; }

    void Show(int count, const std::vector<int>& chosen, int current) override {
        constexpr long kChosen = wxLIST_STATE_SELECTED;
        showing_ = true;
        list_->SetItemCount(count);
        const bool all = count > 0 && static_cast<int>(chosen.size()) == count;
        list_->SetItemState(-1, all ? kChosen : 0, kChosen);
        if (!all) {
            for (const int row : chosen) list_->SetItemState(row, kChosen, kChosen);
        }
        if (current >= 0) {
            list_->SetItemState(current, wxLIST_STATE_FOCUSED, wxLIST_STATE_FOCUSED);
            list_->EnsureVisible(current);
        }
        list_->Refresh();
        showing_ = false;
    }

    void CallDate(const std::wstring& heading) override {
        wxListItem item;
        item.SetMask(wxLIST_MASK_TEXT);
        item.SetText(heading);
        list_->SetColumn(1, item);
    }

    std::vector<int> Chosen() const override {
        std::vector<int> chosen;
        for (long row = -1; (row = list_->GetNextItem(row, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED)) >= 0;)
            chosen.push_back(static_cast<int>(row));
        return chosen;
    }
    int Current() const override {
        return static_cast<int>(list_->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_FOCUSED));
    }

  private:
    class Rows : public wxListCtrl {
      public:
        Rows(wxWindow* parent, Source source)
            : wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                         wxLC_REPORT | wxLC_VIRTUAL | wxBORDER_THEME),
              source_(std::move(source)) {}

      private:
        wxString OnGetItemText(long row, long column) const override {
            const Row shown = source_(static_cast<int>(row));
            return column == 0 ? shown.text : column == 1 ? shown.date : shown.color;
        }
        int OnGetItemImage(long row) const override {
            const int picture = source_(static_cast<int>(row)).picture;
            return picture ? picture - kFirstNoteIcon : -1;
        }

        const Source source_;
    };

    Rows* list_ = nullptr;
    bool showing_ = false;  // what changes is our own doing
};

}  // namespace

std::unique_ptr<FindList> FindList::Create(wxWindow* parent, Source source) {
    return std::make_unique<FindView>(parent, std::move(source));
}
