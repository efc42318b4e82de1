#include "notes/frmNote.h"

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/weakref.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/Text.h"
#include "notes/NoteDrop.h"
#include "notes/NoteFont.h"
#include "notes/NoteGesture.h"
#include "notes/NotePaint.h"
#include "notes/NotePlace.h"
#include "notes/NoteWindow.h"
#include "tray/Notification.h"

frmNote::frmNote(NoteHost& host) : host_(host) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(nullptr, wxID_ANY, L"Kivora", wxDefaultPosition, wxSize(10, 10),
           wxFRAME_NO_TASKBAR | wxBORDER_NONE | wxFRAME_SHAPED);
    HaveNoFrame(*this);
    AcceptKeys(*this);
    SetDropTarget(NoteDropTarget(host).release());
    access_ = NoteAccess::Of(*this, *this);
}

frmNote::~frmNote() = default;

void frmNote::PlaceAsNew(const std::vector<wxRect>& others) {
    AutoSize();
    const wxPoint place = NextPlace(WindowRect().GetSize(), others);
    PlaceAt(place.x * TwipsPerPixelX(*this), place.y * TwipsPerPixelY(*this));
}

void frmNote::Content(const Note& note) {
    note_ = note;
    enlarged_ = false;
    Place(note.place);
    sizedElsewhere_ = true;
    Changed();
}

void frmNote::Changed() {
    Untouched(false);
    Refresh();
    access_->Changed();
    if (minimized_) RenewIcon();
}

void frmNote::AutoSize() {
    const wxSize label = NaturalTextSize(Text(), NoteFont(note_.look));
    SizeTo(label.x * TwipsPerPixelX(*this) + 2 * kFrame,
           label.y * TwipsPerPixelY(*this) + 2 * kFrame + kTimeHeight);
}

wxSize frmNote::NaturalSize() const {
    const wxSize label = NaturalTextSize(Text(), NoteFont(note_.look));
    const int frame = static_cast<int>(std::lround(2 * kFrame / TwipsPerPixelX(*this)));
    const int time = static_cast<int>(std::lround(kTimeHeight / TwipsPerPixelY(*this)));
    return {label.x + frame, label.y + frame + time};
}

// Its text has turned out to need more room than is stored. The letters of another computer are a little
// wider or narrower; a note that is much too small was made so by its user.
void frmNote::ShowAllOfText() {
    constexpr double kDifference = 1.2;
    if (!std::exchange(sizedElsewhere_, false)) return;
    const wxSize stored = StoredRect().GetSize(), natural = NaturalSize();
    enlarged_ = natural.x <= stored.x * kDifference && natural.y <= stored.y * kDifference;
    if (enlarged_) PlaceAsStored();
}

void frmNote::Foreground(bool on) {
    Set(note_.foreground, on);
    host_.SaveNotes();
    host_.ApplyForeground();
}

bool frmNote::HiddenForeground() {
    Foreground(note_.foreground);
    return false;
}

std::wstring frmNote::TextCleaned() const { return Flattened(Text()); }

void frmNote::PlaceAt(double left, double top) { Place({left, top, Width(), Height()}); }

void frmNote::SizeTo(double width, double height) {
    sizedElsewhere_ = enlarged_ = false;
    Place({Left(), Top(), width, height});
}

void frmNote::Place(const NotePlace& place) {
    // The horizontal factor bounds both, so that the smallest note is the same square everywhere.
    const double smallest = kSmallestPixels * TwipsPerPixelX(*this);
    note_.place = place;
    note_.place.width = std::max(place.width, smallest);
    note_.place.height = std::max(place.height, smallest);
    PlaceAsStored();
}

void frmNote::PlaceOnScreens() {
    if (!HasCapture()) PlaceAsStored();
}

void frmNote::PlaceAsStored() {
    const wxRect rect = ShownRect();
    windowPlace_.Ask(rect);
    ArrangeParts(rect.GetSize());
}

wxVisualAttributes frmNote::GetDefaultAttributes() const {
    static const wxVisualAttributes attributes = [] {
        wxVisualAttributes values;
        values.font = NoteFont({});
        values.colFg = *wxBLACK;
        values.colBg = *wxWHITE;
        return values;
    }();
    return attributes;
}

wxRect frmNote::StoredRect() const { return NotePixels(*this, note_.place); }

wxRect frmNote::ShownRect() const {
    wxRect stored = StoredRect();
    if (enlarged_) {
        wxSize size = stored.GetSize();
        size.IncTo(NaturalSize());
        stored.SetSize(size);
    }
    wxRect rect = OnScreens(stored);
    if (rect.width == stored.width) return rect;
    // The screens are not as wide as its lines: these are broken and need more height than is stored.
    const double framePixels = 2 * kFrame / TwipsPerPixelX(*this);
    const wxSize text = NaturalTextSize(Text(), NoteFont(note_.look),
                                        rect.width - static_cast<int>(framePixels), LargestRect().height);
    const double height = text.y + (2 * kFrame + kTimeHeight) / TwipsPerPixelY(*this);
    rect.height = std::max(rect.height, static_cast<int>(height));
    return OnScreens(rect);
}

void frmNote::ArrangeParts(const wxSize& pixels) {
    if (pixels == arrangedFor_ || pixels.x <= 0 || pixels.y <= 0) return;
    arrangedFor_ = pixels;
    layout_ = LayoutNote(pixels.x * TwipsPerPixelX(*this), pixels.y * TwipsPerPixelY(*this));
    ShapeNoteWindow(*this, pixels.x, pixels.y);
    Refresh();
}

void frmNote::Hover(NotePart part, TextLink link) {
    if (part == hovered_ && link == link_) return;
    hovered_ = part;
    link_ = std::move(link);
    std::wstring tip = NoteAccess::NameOfControl(part);
    if (!link_.address.empty()) {
        tip = L"Strg+Klick öffnet die Adresse";
    } else if (part == NotePart::lblZeit &&
               !ShowsWholeTime(note_, layout_, 1 / TwipsPerPixelX(*this), 1 / TwipsPerPixelY(*this))) {
        tip = CreationTime();
    }
    if (tip.empty()) {
        UnsetToolTip();
    } else {
        SetToolTip(tip);
    }
    Refresh();
}

void frmNote::SetPointer(Pointer pointer) {
    if (pointer == pointer_) return;
    pointer_ = pointer;
    switch (pointer) {
        case Pointer::NorthEastSouthWest:
            SetCursor(wxCursor(wxCURSOR_SIZENESW));
            break;
        case Pointer::NorthSouth:
            SetCursor(wxCursor(wxCURSOR_SIZENS));
            break;
        case Pointer::NorthWestSouthEast:
            SetCursor(wxCursor(wxCURSOR_SIZENWSE));
            break;
        case Pointer::WestEast:
            SetCursor(wxCursor(wxCURSOR_SIZEWE));
            break;
        case Pointer::Hand:
            SetCursor(wxCursor(wxCURSOR_HAND));
            break;
        case Pointer::Default:
            SetCursor(wxNullCursor);
            break;
    }
}

void frmNote::Click(NotePart part) {
    if (part == NotePart::cmdMinimize) {
        Hover(NotePart::Body);
        Minimized(true);
    } else if (part == NotePart::chkForeground) {
        Foreground(!Foreground());
    }
}

void frmNote::PressPart(NotePart part) {
    if (part == NotePart::cmdMinimize) {
        PutAway(true);
    } else if (part == NotePart::chkForeground) {
        Click(part);
    } else {
        Later(&NoteHost::EditNote);
    }
}

void frmNote::FinishGesture(const wxRect& before, const wxRect& after) {
    StorePlace(before, after);
    // Windows and X11 window managers raise a window that they move.
    if (dialogsAbove_) DialogsAbove::Again();
    host_.SaveNotes();
}

void frmNote::StorePlace(const wxRect& before, const wxRect& after) {
    const double x = TwipsPerPixelX(*this), y = TwipsPerPixelY(*this);
    NotePlace& place = note_.place;
    // Stored is only what the user changed, because the window may stand elsewhere than its stored place, or
    // in another size, where the screens cannot show it otherwise. A user who moves such a window gives it
    // a new place both ways, and who resizes it a new size both ways.
    const bool moved = after.GetPosition() != before.GetPosition();
    const bool elsewhere = moved && before.GetPosition() != StoredRect().GetPosition();
    if (elsewhere || after.x != before.x) place.left = after.x * x;
    if (elsewhere || after.y != before.y) place.top = after.y * y;
    const bool resized = after.GetSize() != before.GetSize();
    if (resized) enlarged_ = false;
    const bool otherwise = resized && before.GetSize() != StoredRect().GetSize();
    if (otherwise || after.width != before.width) place.width = after.width * x;
    if (otherwise || after.height != before.height) place.height = after.height * y;
}

void frmNote::Later(std::function<void(NoteHost&, frmNote&)> call) {
    NoteHost& host = host_;
    wxTheApp->CallAfter([&host, call = std::move(call), note = wxWeakRef<frmNote>(this)] {
        // One that has been given up may outlive the host until the next event.
        if (note && !wxPendingDelete.Member(note)) call(host, *note);
    });
}

wxPoint2DDouble frmNote::ToTwips(const wxPoint& pixels) const {
    return {pixels.x * TwipsPerPixelX(*this), pixels.y * TwipsPerPixelY(*this)};
}

void frmNote::OpenMenu() {
    Later([](NoteHost& host, frmNote& note) { host.ShowPopupMenu(note, std::nullopt); });
}

void frmNote::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    const bool pressed = pressed_ != NotePart::Body && pressed_ == hovered_;
    const bool isWhole =
        PaintNote(dc, note_, {.hovered = hovered_, .pressed = pressed, .focus = focus_, .link = link_},
                  layout_, 1 / TwipsPerPixelX(*this), 1 / TwipsPerPixelY(*this));
    if (!isWhole && sizedElsewhere_) Later([](NoteHost&, frmNote& note) { note.ShowAllOfText(); });
}

void frmNote::OnSize(wxSizeEvent& event) { ArrangeParts(event.GetSize()); }

void frmNote::OnMotion(wxMouseEvent& event) {
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    Hover(layout_.PartAt(at.m_x, at.m_y), LinkAt(event.GetPosition()));
    SetPointer(OpensLink(event) ? Pointer::Hand : PointerAt(layout_, at.m_x, at.m_y));
}

void frmNote::OnLeave(wxMouseEvent&) { Hover(NotePart::Body); }

void frmNote::OnLeftDown(wxMouseEvent& event) {
    Untouched(false);
    usedByKeys_ = false;
    ShowFocus(std::nullopt);
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    const NotePart part = layout_.PartAt(at.m_x, at.m_y);
    if (part == NotePart::cmdMinimize || part == NotePart::chkForeground) {
        hovered_ = pressed_ = part;
        Refresh();
        return;
    }
    BringToFront();
    gesture_.reset();
    sizedElsewhere_ = false;
    if (OpensLink(event)) {
        pressedLink_ = LinkAt(event.GetPosition());
        return;
    }
    const auto hit = PressHitTest(layout_, at.m_x, at.m_y);
    if (hit != HT_NONE) {
        gesture_ = NoteGesture::Begin(
            windowPlace_, hit, static_cast<int>(kSmallestPixels),
            [this](const wxRect& before, const wxRect& after) { FinishGesture(before, after); });
    } else if (part == NotePart::lblZeit) {
        host_.SaveNotes();
    }
}

void frmNote::OnLeftUp(wxMouseEvent& event) {
    const TextLink link = std::exchange(pressedLink_, {});
    if (!link.address.empty() && link == LinkAt(event.GetPosition())) OpenLink(link.address);
    const NotePart pressed = pressed_;
    pressed_ = NotePart::Body;
    if (pressed == NotePart::Body) return;
    Refresh();
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    if (layout_.PartAt(at.m_x, at.m_y) == pressed) Click(pressed);
}

void frmNote::OnLeftDoubleClick(wxMouseEvent& event) {
    if (OpensLink(event)) return;
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    switch (layout_.PartAt(at.m_x, at.m_y)) {
        case NotePart::Body:
        case NotePart::lblMessage:
        case NotePart::lblZeit:
            Later(&NoteHost::EditNote);
            break;
        default:
            OnLeftDown(event);  // a button or the corner is pressed a second time
            break;
    }
}

void frmNote::OnRightUp(wxMouseEvent& event) {
    Untouched(false);
    usedByKeys_ = false;
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    const NotePart part = layout_.PartAt(at.m_x, at.m_y);
    if (part == NotePart::Body || part == NotePart::lblMessage) OpenMenu();
}

// clang-format off
// One table for all notes: handlers that are bound one by one take memory in each.
wxBEGIN_EVENT_TABLE(frmNote, wxFrame)
    EVT_PAINT(frmNote::OnPaint)
    EVT_SIZE(frmNote::OnSize)
    EVT_MOTION(frmNote::OnMotion)
    EVT_LEAVE_WINDOW(frmNote::OnLeave)
    EVT_LEFT_DOWN(frmNote::OnLeftDown)
    EVT_LEFT_UP(frmNote::OnLeftUp)
    EVT_LEFT_DCLICK(frmNote::OnLeftDoubleClick)
    EVT_RIGHT_UP(frmNote::OnRightUp)
    EVT_CHAR_HOOK(frmNote::OnKey)
    EVT_KEY_UP(frmNote::OnKeyUp)
    EVT_ACTIVATE(frmNote::OnActivate)
    EVT_CLOSE(frmNote::OnClose)
wxEND_EVENT_TABLE()
