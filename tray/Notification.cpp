#include "tray/Notification.h"

#include "res/Resources.h"
#include "tray/TrayItem.h"

namespace {

constexpr std::size_t kLongestToolTip = 63;

// The handler is copied before it is called: it may destroy the control that it belongs to.
template <class Handler, class... Button>
void Raise(Handler handler, Button... button) {
    if (handler) handler(button...);
}

void RaiseEvent(const NotificationEvents& events, TrayMessage message) {
    switch (message) {
        case TrayMessage::MouseMove:
            return Raise(events.MouseMove);
        case TrayMessage::LeftDoubleClick:
            return Raise(events.DblClick, 1);
        case TrayMessage::RightDoubleClick:
            return Raise(events.DblClick, 2);
        case TrayMessage::LeftDown:
            return Raise(events.MouseDown, 1);
        case TrayMessage::RightDown:
            return Raise(events.MouseDown, 2);
        case TrayMessage::LeftUp:
            return Raise(events.MouseUp, 1);
        case TrayMessage::RightUp:
            return Raise(events.MouseUp, 2);
        case TrayMessage::ContextMenu:
            return Raise(events.ContextMenu);
    }
}

}  // namespace

Picture ResourcePicture(int id) {
    Picture picture;
    picture.bitmap = LoadPicture(id);
    const bool icon =
        id == kProgramIcon || id == kTroubleIcon || (id >= kFirstNoteIcon && id <= kLastNoteIcon);
    if (picture.bitmap.IsOk()) picture.type = icon ? Picture::Icon : Picture::Bitmap;
    return picture;
}

Notification::Notification() = default;

Notification::~Notification() = default;

void Notification::LetIconFile(const Picture& picture) {
    icon_ = picture;
    Refresh();
}

void Notification::SetIconFile(const Picture& picture) {
    if (picture.type == Picture::Icon) icon_ = picture;
    Refresh();
}

void Notification::IconToolTip(const std::wstring& text) {
    toolTip_ = text.substr(0, kLongestToolTip);
    Refresh();
}

void Notification::ShowIcon() {
    if (item_) {
        item_->Modify(icon_.bitmap, toolTip_);
    } else {
        const auto report = [this](TrayMessage message) {
            if (enabled_) RaiseEvent(Events, message);
        };
        item_ = TrayItem::Add(icon_.bitmap, toolTip_, report, GuardedMenu());
    }
}

void Notification::HideIcon() { item_.reset(); }

std::optional<wxRect> Notification::Place() const { return item_ ? item_->Place() : std::nullopt; }

void Notification::Enabled(bool enable) {
    enabled_ = enable;
    if (enable)
        ShowIcon();
    else
        HideIcon();
}

void Notification::MenusChanged() { TrayItem::MenusChanged(); }

void Notification::TakeDrops(std::function<std::unique_ptr<wxDropTarget>()> makeTarget) {
    TrayItem::TakeDrops(std::move(makeTarget));
}

// An icon that is not enabled has no menu either.
TrayMenu Notification::GuardedMenu() const {
    if (!Menu.Describe) return {};
    return {[this] { return enabled_ ? Menu.Describe() : std::vector<TrayMenuEntry>(); },
            [this](int id) {
                const std::function<void(int)> run = Menu.Run;
                if (enabled_) run(id);
            }};
}

void Notification::Refresh() {
    if (Shown()) ShowIcon();
}
