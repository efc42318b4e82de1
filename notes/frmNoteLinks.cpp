// The web and mail addresses in the text of a note: underlined below the pointer, opened by Ctrl and a click.
#include <algorithm>

#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"

TextLink frmNote::LinkAt(const wxPoint& at) const {
    const std::vector<TextLink> links = LinksIn(Text());
    // Most notes have none, and where a character stands is dear to find out.
    if (links.empty()) return {};
    for (const PaintedLine& line :
         PaintedLines(note_, layout_, 1 / TwipsPerPixelX(*this), 1 / TwipsPerPixelY(*this))) {
        if (!line.place.Contains(at)) continue;
        const auto inLine =
            std::upper_bound(line.ends.begin(), line.ends.end(), at.x - line.place.x) - line.ends.begin();
        const auto character = static_cast<std::size_t>(line.text.data() - note_.text.data() + inLine);
        const auto found = std::find_if(links.begin(), links.end(),
                                        [&](const TextLink& link) { return link.Contains(character); });
        if (found != links.end()) return *found;
    }
    return {};
}

bool frmNote::OpensLink(const wxMouseEvent& event) const {
    return event.ControlDown() && !LinkAt(event.GetPosition()).address.empty();
}

void frmNote::FollowControlKey(const wxKeyEvent& event, bool down) {
    if (event.GetKeyCode() != WXK_CONTROL || link_.address.empty()) return;
    SetPointer(down ? Pointer::Hand : Pointer::Default);
}

void frmNote::OpenLink(const std::wstring& address) {
    Later([address](NoteHost& host, frmNote&) { host.OpenLink(address); });
}
