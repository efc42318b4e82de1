#include "notes/frmNote.h"

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/weakref.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "base/basText.h"
#include "notes/NoteAccess.h"
#include "notes/NoteGesture.h"
#include "notes/NotePaint.h"
#include "notes/NotePlace.h"
#include "notes/NoteWindow.h"
#include "res/Resources.h"
#include "tray/Notification.h"

namespace {

// Notes share their fonts; a hundred notes seldom need more than three.
const wxFont& SharedFont(int size, bool bold, bool italic, bool underlined) {
    static std::map<std::tuple<int, bool, bool, bool>, wxFont> fonts;
    wxFont& font = fonts[{size, bold, italic, underlined}];
    if (!font.IsOk()) {
        font = wxFont(wxFontInfo(size).FaceName(L"Arial").Bold(bold).Italic(italic).Underlined(underlined));
    }
    return font;
}

}  // namespace

frmNote::frmNote(NoteHost& host) : host_(host) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(nullptr, wxID_ANY, L"Kivora", wxDefaultPosition, wxSize(10, 10),
           wxFRAME_NO_TASKBAR | wxBORDER_NONE | wxFRAME_SHAPED);
    AcceptKeys(*this);
    access_ = NoteAccess::Of(*this);
}

frmNote::~frmNote() = default;

void frmNote::PlaceAsNew() {
    const wxPoint place = NextPlace();
    PlaceAt(place.x * TwipsPerPixelX(*this), place.y * TwipsPerPixelY(*this));
}

void frmNote::AutoSize() {
    const wxSize label = NaturalTextSize(Text(), MessageFont());
    SizeTo(label.x * TwipsPerPixelX(*this) + 2 * kFrame,
           label.y * TwipsPerPixelY(*this) + 2 * kFrame + kTimeHeight);
}

void frmNote::Foreground(bool on) {
    foreground_ = on;
    Refresh();
    access_->Changed();
    host_.SaveNotes();
    host_.ApplyForeground();
}

bool frmNote::HiddenForeground() {
    Foreground(foreground_);
    return false;
}

void frmNote::Color(std::int32_t code) {
    color_ = code;
    Refresh();
    if (minimized_) RenewIcon();
}

void frmNote::Text(const std::wstring& text) {
    lblMessage_.caption = text;
    Refresh();
    access_->Changed();
    if (minimized_) RenewIcon();
}

std::wstring frmNote::TextCleaned() const { return Flattened(Text()); }

std::wstring frmNote::ShortText() const {
    constexpr std::size_t kLongest = 55;
    const std::wstring text = TextCleaned();
    return text.size() > kLongest ? text.substr(0, kLongest) + L" ..." : text;
}

void frmNote::FontNoteBold(bool on) {
    lblMessage_.bold = on;
    Refresh();
}

void frmNote::FontNoteItalic(bool on) {
    lblMessage_.italic = on;
    Refresh();
}

void frmNote::FontNoteUnderlined(bool on) {
    lblMessage_.underlined = on;
    Refresh();
}

void frmNote::FontNoteSize(std::int32_t points) {
    lblMessage_.size = points;
    Refresh();
}

void frmNote::FontNoteAlignment(std::int32_t code) {
    lblMessage_.alignment = code;
    Refresh();
}

void frmNote::CreationTime(const std::wstring& text) {
    lblZeit_ = text;
    Refresh();
    access_->Changed();
}

void frmNote::PlaceAt(double left, double top) { Place(left, top, width_, height_); }

void frmNote::SizeTo(double width, double height) { Place(left_, top_, width, height); }

void frmNote::Place(double left, double top, double width, double height) {
    // The horizontal factor bounds both, so that the smallest note is the same square everywhere.
    const double smallest = kSmallestPixels * TwipsPerPixelX(*this);
    left_ = left;
    top_ = top;
    width_ = std::max(width, smallest);
    height_ = std::max(height, smallest);
    const wxRect rect = ShownRect();
    SetSize(rect);
    ArrangeParts(rect.GetSize());
}

void frmNote::PlaceOnScreens() {
    if (HasCapture()) return;
    const wxRect rect = ShownRect();
    if (rect == GetRect()) return;
    SetSize(rect);
    ArrangeParts(rect.GetSize());
}

wxVisualAttributes frmNote::GetDefaultAttributes() const {
    static const wxVisualAttributes attributes = [] {
        wxVisualAttributes values;
        values.font = SharedFont(kDefaultFontSize, false, false, false);
        values.colFg = *wxBLACK;
        values.colBg = *wxWHITE;
        return values;
    }();
    return attributes;
}

wxFont frmNote::MessageFont() const {
    const int size = std::clamp<int>(lblMessage_.size, kSmallestFontSize, kLargestFontSize);
    return SharedFont(size, lblMessage_.bold, lblMessage_.italic, lblMessage_.underlined);
}

wxRect frmNote::StoredRect() const { return NotePixels(*this, left_, top_, width_, height_); }

wxRect frmNote::ShownRect() const {
    const wxRect stored = StoredRect();
    wxRect rect = OnScreens(stored);
    if (rect.width == stored.width) return rect;
    // The screens are not as wide as its lines: these are broken and need more height than is stored.
    const double framePixels = 2 * kFrame / TwipsPerPixelX(*this);
    const wxSize text = NaturalTextSize(Text(), MessageFont(), rect.width - static_cast<int>(framePixels));
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

void frmNote::Hover(NotePart part) {
    if (part == hovered_) return;
    hovered_ = part;
    if (part == NotePart::cmdMinimize) {
        SetToolTip(NoteAccess::NameOfControl(part));
    } else if (part == NotePart::chkForeground) {
        SetToolTip(NoteAccess::NameOfControl(part));
    } else {
        UnsetToolTip();
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
        Foreground(!foreground_);
    }
}

void frmNote::PressPart(NotePart part) {
    if (part == NotePart::cmdMinimize || part == NotePart::chkForeground) {
        Click(part);
    } else {
        Later(&NoteHost::EditNote);
    }
}

void frmNote::FinishGesture(const wxRect& before, const wxRect& after) {
    StorePlace(before, after);
    if (dialogsAbove_) DialogsAbove::Again();  // systems that move windows themselves raise them, too
    host_.SaveNotes();
}

void frmNote::StorePlace(const wxRect& before, const wxRect& after) {
    const double x = TwipsPerPixelX(*this), y = TwipsPerPixelY(*this);
    // Only what the user changed: a note may be stored with a place or size that this screen cannot show.
    // But one that was shown elsewhere for that, and moved by the user, has its new place there altogether.
    const bool moved = after.GetPosition() != before.GetPosition();
    const bool elsewhere = moved && before.GetPosition() != StoredRect().GetPosition();
    if (elsewhere || after.x != before.x) left_ = after.x * x;
    if (elsewhere || after.y != before.y) top_ = after.y * y;
    // Likewise the size of one that was shown in another size and resized.
    const bool resized = after.GetSize() != before.GetSize();
    const bool otherwise = resized && before.GetSize() != StoredRect().GetSize();
    if (otherwise || after.width != before.width) width_ = after.width * x;
    if (otherwise || after.height != before.height) height_ = after.height * y;
}

void frmNote::Later(std::function<void(NoteHost&, frmNote&)> call) {
    NoteHost& host = host_;
    wxTheApp->CallAfter([&host, call = std::move(call), note = wxWeakRef<frmNote>(this)] {
        if (note) call(host, *note);
    });
}

wxPoint2DDouble frmNote::ToTwips(const wxPoint& pixels) const {
    return {pixels.x * TwipsPerPixelX(*this), pixels.y * TwipsPerPixelY(*this)};
}

void frmNote::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    const NotePicture picture{
        Text(), lblZeit_,    MessageFont(), lblMessage_.alignment,
        color_, foreground_, hovered_,      pressed_ != NotePart::Body && pressed_ == hovered_,
        focus_};
    PaintNote(dc, picture, layout_, 1 / TwipsPerPixelX(*this), 1 / TwipsPerPixelY(*this));
}

void frmNote::OnSize(wxSizeEvent& event) { ArrangeParts(event.GetSize()); }

void frmNote::OnMotion(wxMouseEvent& event) {
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    Hover(layout_.PartAt(at.m_x, at.m_y));
    SetPointer(PointerAt(layout_, at.m_x, at.m_y));
}

void frmNote::OnLeave(wxMouseEvent&) { Hover(NotePart::Body); }

void frmNote::OnLeftDown(wxMouseEvent& event) {
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
    const auto hit = PressHitTest(layout_, at.m_x, at.m_y);
    if (hit != HT_NONE) {
        gesture_ = NoteGesture::Begin(
            *this, hit, static_cast<int>(kSmallestPixels),
            [this](const wxRect& before, const wxRect& after) { FinishGesture(before, after); });
    } else if (part == NotePart::lblZeit) {
        host_.SaveNotes();
    }
}

void frmNote::OnLeftUp(wxMouseEvent& event) {
    const NotePart pressed = pressed_;
    pressed_ = NotePart::Body;
    if (pressed == NotePart::Body) return;
    Refresh();
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    if (layout_.PartAt(at.m_x, at.m_y) == pressed) Click(pressed);
}

void frmNote::OnLeftDoubleClick(wxMouseEvent& event) {
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    switch (layout_.PartAt(at.m_x, at.m_y)) {
        case NotePart::Body:
        case NotePart::lblMessage:
        case NotePart::lblZeit:
            Later(&NoteHost::EditNote);
            break;
        default:
            OnLeftDown(event);  // to a button, or to the corner, the second press is a press like the first
            break;
    }
}

void frmNote::OnRightUp(wxMouseEvent& event) {
    const wxPoint2DDouble at = ToTwips(event.GetPosition());
    const NotePart part = layout_.PartAt(at.m_x, at.m_y);
    if (part == NotePart::Body || part == NotePart::lblMessage) Later(&NoteHost::ShowPopupMenu);
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
