#include "dialogs/DialogPlace.h"

#include <wx/dialog.h>
#include <wx/display.h>

#include <algorithm>
#include <map>
#include <typeindex>

namespace {

std::map<std::type_index, wxSize> keptSizes;

}  // namespace

wxRect DialogArea(const std::optional<wxRect>& beside) {
    const int display = beside ? wxDisplay::GetFromPoint(beside->GetTopLeft()) : wxNOT_FOUND;
    return wxDisplay(static_cast<unsigned>(std::max(display, 0))).GetClientArea();
}

wxPoint DialogPlace(const wxSize& size, const wxRect& area, const std::optional<wxRect>& beside, int gap) {
    wxPoint place{area.x + (area.width - size.x) / 2, area.y + (area.height - size.y) / 2};
    if (beside) {
        place = {beside->GetRight() + gap, beside->y};
        if (place.x + size.x > area.GetRight()) place.x = beside->x - gap - size.x;
        if (place.x < area.x) {
            // No room beside it: below it, else above it.
            place = {beside->x, beside->GetBottom() + gap};
            if (place.y + size.y > area.GetBottom()) place.y = beside->y - gap - size.y;
        }
    }
    return {std::max(area.x, std::min(place.x, area.GetRight() - size.x)),
            std::max(area.y, std::min(place.y, area.GetBottom() - size.y))};
}

void KeepSize(const wxDialog& dialog) { keptSizes[typeid(dialog)] = dialog.GetClientSize(); }

void RestoreSize(wxDialog& dialog, const wxRect& area) {
    const auto kept = keptSizes.find(typeid(dialog));
    wxSize size = kept == keptSizes.end() ? dialog.GetClientSize() : kept->second;
    size.DecTo(dialog.WindowToClientSize(area.GetSize()));
    size.IncTo(dialog.GetMinClientSize());
    dialog.SetClientSize(size);
}
