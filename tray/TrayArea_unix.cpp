#include "tray/TrayArea_unix.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <string>
#include <utility>

#include "tray/TrayStrip_unix.h"

namespace {

// How long a host may take to show an icon before the strip shows it instead.
constexpr guint kPatienceMilliseconds = 1500;
// Offering icons to a host pauses after this time, so that the program answers the user meanwhile.
constexpr gint64 kOfferMicroseconds = 8000;

// Icons beyond this number stand in the strip: a panel has no room for them, and the time that hosts and GTK
// spend on each icon grows with the number of icons, so that 200 take seconds.
constexpr int kMostOffered = 32;

std::string TraySelection(GdkDisplay* display) {
    const int screen = gdk_x11_screen_get_screen_number(gdk_display_get_default_screen(display));
    return "_NET_SYSTEM_TRAY_S" + std::to_string(screen);
}

bool EmbeddingHostExists() {
    GdkDisplay* display = gdk_display_get_default();
    if (!GDK_IS_X11_DISPLAY(display)) return false;
    const Atom selection = gdk_x11_get_xatom_by_name_for_display(display, TraySelection(display).c_str());
    return XGetSelectionOwner(gdk_x11_display_get_xdisplay(display), selection) != None;
}

// The top-level window around this one; None when X11 does not know the window.
Window TopLevel(Window window) {
    GdkDisplay* display = gdk_display_get_default();
    Window root = None, parent = window;
    gdk_x11_display_error_trap_push(display);
    while (parent != root) {
        window = parent;
        Window* children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(gdk_x11_display_get_xdisplay(display), window, &root, &parent, &children, &count)) {
            window = None;
            break;
        }
        if (children) XFree(children);
    }
    gdk_x11_display_error_trap_pop_ignored(display);
    return window;
}

}  // namespace

TrayArea& TrayArea::Get() {
    static TrayArea* const area = new TrayArea;  // icons may go later than static objects
    return *area;
}

TrayArea::TrayArea() : watcher_([this] { OnBusHostChanged(); }) {
    TrayStrip::Get().KeepFree = [this] { return HostRectangle(); };
    GdkDisplay* display = gdk_display_get_default();
    if (!GDK_IS_X11_DISPLAY(display)) return;
    // GTK watches the owner of every selection that somebody has made a clipboard object for.
    const GdkAtom selection = gdk_atom_intern(TraySelection(display).c_str(), FALSE);
    g_signal_connect(
        gtk_clipboard_get_for_display(display, selection), "owner-change",
        G_CALLBACK(+[](GtkClipboard*, GdkEvent*, TrayArea* area) { area->OnEmbeddingHostChanged(); }), this);
    host_ = CurrentHost();
}

TrayHost TrayArea::CurrentHost() const {
    if (watcher_.State() == StatusNotifierWatcher::Host::Unknown) return TrayHost::Unknown;
    if (watcher_.State() == StatusNotifierWatcher::Host::Exists) return TrayHost::StatusNotifier;
    return EmbeddingHostExists() ? TrayHost::Embedding : TrayHost::Absent;
}

void TrayArea::Add(HostedIcon& hosted) {
    watcher_.Connect(icons_.empty());  // not earlier than needed, and again when the bus has gone
    icons_[hosted.Icon().number] = &hosted;
    if (HasHost())
        OfferLater();
    else if (host_ == TrayHost::Absent)
        TrayStrip::Get().Show(hosted.Icon());
}

const TrayIcon* TrayArea::Find(unsigned long number) const {
    const auto found = icons_.find(number);
    return found == icons_.end() ? nullptr : &found->second->Icon();
}

void TrayArea::Remove(HostedIcon& hosted) {
    icons_.erase(hosted.Icon().number);
    TrayStrip::Get().Remove(hosted.Icon());
    if (hosted.Icon().number > lastOffered_) return;
    hosted.TakeBack();
    --offered_;
    NoLongerAwaited(hosted);
    if (HasHost()) OfferLater();  // its place is free for one from the strip
}

void TrayArea::EmbeddingChanged(const HostedIcon& hosted) {
    if (hosted.Embedded()) {
        progress_ = true;
        TrayStrip::Get().Remove(hosted.Icon());
        TrayStrip::Get().PlaceAgain();  // beside the host's window, which is known by its icons
        NoLongerAwaited(hosted);
    } else {
        Await(hosted);
    }
}

void TrayArea::MenusChanged() {
    if (renewing_ || host_ != TrayHost::StatusNotifier) return;
    const auto renew = [](void* self) -> gboolean {
        auto& area = *static_cast<TrayArea*>(self);
        area.renewing_ = 0;
        for (const auto& [number, hosted] : area.icons_) hosted->RenewMenu();
        return G_SOURCE_REMOVE;
    };
    renewing_ = g_idle_add(renew, this);
}

void TrayArea::OnBusHostChanged() {
    const TrayHost before = std::exchange(host_, CurrentHost());
    if (host_ != before) StartAnew();
}

// A new host knows none of the icons, also when it follows at once on another one of its kind.
void TrayArea::OnEmbeddingHostChanged() {
    const TrayHost before = std::exchange(host_, CurrentHost());
    if (host_ != before || host_ == TrayHost::Embedding) StartAnew();
}

void TrayArea::StartAnew() {
    lastOffered_ = 0;
    offered_ = 0;
    awaited_.clear();
    for (const auto& [number, hosted] : icons_) {
        hosted->TakeBack();
        if (host_ == TrayHost::Absent) TrayStrip::Get().Show(hosted->Icon());
    }
    if (HasHost()) OfferLater();
}

// Most hosts reserve their edge of the screen, but not all do, and none should be covered by the strip.
std::optional<GdkRectangle> TrayArea::HostRectangle() {
    if (host_ != TrayHost::Embedding) return std::nullopt;
    for (const auto& [number, hosted] : icons_) {
        if (!hosted->Embedded() || !hosted->Window()) continue;
        return WatchedRectangle(TopLevel(hosted->Window()));
    }
    return std::nullopt;
}

// A host makes room for its icons some time after it has taken them, so its window is watched, and watched
// before its rectangle is read: no change goes by unseen in between.
std::optional<GdkRectangle> TrayArea::WatchedRectangle(unsigned long xid) {
    const auto changed = +[](GdkXEvent* event, GdkEvent*, void*) {
        const int type = static_cast<XEvent*>(event)->type;
        if (type == ConfigureNotify || type == ReparentNotify) TrayStrip::Get().PlaceAgain();
        return GDK_FILTER_CONTINUE;
    };
    GdkDisplay* display = gdk_display_get_default();
    GdkWindow* window = gdk_x11_window_foreign_new_for_display(display, xid);
    if (hostWindow_) {
        gdk_window_remove_filter(hostWindow_, changed, nullptr);
        g_object_unref(hostWindow_);
    }
    hostWindow_ = window;
    if (!window) return std::nullopt;
    gdk_window_add_filter(window, changed, nullptr);
    gdk_x11_display_error_trap_push(display);
    gdk_window_set_events(window, GdkEventMask(gdk_window_get_events(window) | GDK_STRUCTURE_MASK));
    GdkRectangle place;
    gdk_window_get_geometry(window, &place.x, &place.y, &place.width, &place.height);
    if (gdk_x11_display_error_trap_pop(display) != 0) return std::nullopt;
    return place;
}

void TrayArea::OfferLater() {
    if (offering_) return;
    const auto offer = [](void* area) -> gboolean { return static_cast<TrayArea*>(area)->OfferSome(); };
    offering_ = g_idle_add(offer, this);
}

bool TrayArea::OfferSome() {
    const gint64 end = g_get_monotonic_time() + kOfferMicroseconds;
    auto next = icons_.upper_bound(lastOffered_);
    for (; HasHost() && next != icons_.end() && offered_ < kMostOffered; ++next) {
        if (g_get_monotonic_time() >= end) return true;
        lastOffered_ = next->first;
        ++offered_;
        Await(*next->second);
        next->second->OfferToHost(host_);
    }
    for (; next != icons_.end(); ++next) TrayStrip::Get().Show(next->second->Icon());
    offering_ = 0;
    return false;
}

void TrayArea::Await(const HostedIcon& hosted) {
    awaited_[hosted.Icon().number] = &hosted;
    if (overdue_) return;
    progress_ = false;
    const auto look = [](void* area) -> gboolean { return static_cast<TrayArea*>(area)->OnOverdue(); };
    overdue_ = g_timeout_add(kPatienceMilliseconds, look, this);
}

void TrayArea::NoLongerAwaited(const HostedIcon& hosted) {
    awaited_.erase(hosted.Icon().number);
    if (!awaited_.empty() || !overdue_) return;
    g_source_remove(overdue_);
    overdue_ = 0;
}

bool TrayArea::OnOverdue() {
    if (offering_ || progress_) {  // a slow host is given more time as long as it gets on
        progress_ = false;
        return true;
    }
    overdue_ = 0;
    for (const auto& [number, hosted] : awaited_) TrayStrip::Get().Show(hosted->Icon());
    awaited_.clear();
    return false;
}
