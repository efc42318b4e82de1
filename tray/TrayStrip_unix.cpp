#include "tray/TrayStrip_unix.h"

#include <algorithm>

#include "base/Text.h"
#include "res/Theme.h"
#include "tray/TrayMouse_unix.h"

namespace {

GdkMonitor* CornerMonitor(GtkWidget* window) {
    GdkDisplay* display = gtk_widget_get_display(window);
    GdkMonitor* primary = gdk_display_get_primary_monitor(display);
    return primary ? primary : gdk_display_get_monitor(display, 0);
}

}  // namespace

TrayStrip& TrayStrip::Get() {
    static TrayStrip* const strip = new TrayStrip;  // icons may go later than static objects
    return *strip;
}

void TrayStrip::Show(const TrayIcon& icon) {
    if (icons_.emplace(icon.number, &icon).second) UpdateLater();
}

void TrayStrip::Changed(const TrayIcon& icon) {
    if (icons_.contains(icon.number)) UpdateLater();
}

void TrayStrip::Remove(const TrayIcon& icon) {
    if (icons_.erase(icon.number)) UpdateLater();
}

void TrayStrip::PlaceAgain() {
    if (!icons_.empty()) UpdateLater();
}

void TrayStrip::UpdateLater() {
    if (update_) return;
    update_ = g_idle_add_full(
        G_PRIORITY_DEFAULT,
        [](void* strip) -> gboolean {
            static_cast<TrayStrip*>(strip)->update_ = 0;
            static_cast<TrayStrip*>(strip)->Update();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
}

void TrayStrip::Update() {
    cells_.clear();
    for (const auto& [number, icon] : icons_) cells_.push_back(number);
    if (cells_.empty()) return DestroyWindow();
    if (!window_) CreateWindow();
    Place();
    gtk_widget_show(window_);
    gtk_widget_queue_draw(window_);
    gtk_widget_trigger_tooltip_query(window_);
}

void TrayStrip::CreateWindow() {
    LoadTheme();
    window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWindow* window = GTK_WINDOW(window_);
    gtk_window_set_title(window, "Kivora");
    // A dock is on all desktops, has no frame and takes no focus.
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DOCK);
    gtk_window_set_accept_focus(window, FALSE);
    gtk_window_set_focus_on_map(window, FALSE);
    gtk_window_set_skip_taskbar_hint(window, TRUE);
    gtk_window_set_skip_pager_hint(window, TRUE);
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_keep_above(window, TRUE);
    gtk_window_set_resizable(window, FALSE);  // follows the size that is asked for, also when that shrinks
    gtk_widget_set_app_paintable(window_, TRUE);
    gtk_widget_set_has_tooltip(window_, TRUE);
    gtk_widget_add_events(window_, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_POINTER_MOTION_MASK |
                                       GDK_LEAVE_NOTIFY_MASK);
    ConnectEvents();
    if (MakeDropTarget) {
        dropTarget_ = MakeDropTarget();
        dropTarget_->GtkRegisterWidget(window_);
    }

    // A panel that comes or goes moves the corner; another set of screens asks for a new window.
    GdkScreen* screen = gtk_widget_get_screen(window_);
    g_signal_connect_object(screen, "monitors-changed", G_CALLBACK(+[](GdkScreen*, GtkWidget*) {
                                Get().DestroyWindow();
                                Get().UpdateLater();
                            }),
                            window_, GConnectFlags(0));
    g_signal_connect_object(CornerMonitor(window_), "notify::workarea",
                            G_CALLBACK(+[](GdkMonitor*, GParamSpec*, GtkWidget*) { Get().UpdateLater(); }),
                            window_, GConnectFlags(0));
}

void TrayStrip::ConnectEvents() {
    const auto connect = [this](const char* signal, auto* handler) {
        g_signal_connect(window_, signal, G_CALLBACK(handler), this);
    };
    connect(
        "delete-event", +[](GtkWidget*, GdkEvent*, TrayStrip*) -> gboolean { return TRUE; });
    connect(
        "draw", +[](GtkWidget*, cairo_t* context, TrayStrip* strip) -> gboolean {
            strip->Draw(context);
            return TRUE;
        });
    const auto button = +[](GtkWidget*, GdkEventButton* event, TrayStrip* strip) -> gboolean {
        strip->OnButton(*event);
        return TRUE;
    };
    connect("button-press-event", button);
    connect("button-release-event", button);
    connect(
        "motion-notify-event", +[](GtkWidget*, GdkEventMotion* event, TrayStrip* strip) -> gboolean {
            strip->OnMotion(*event);
            return TRUE;
        });
    connect(
        "leave-notify-event", +[](GtkWidget*, GdkEventCrossing*, TrayStrip* strip) -> gboolean {
            strip->Hover(nullptr);
            return TRUE;
        });
    connect(
        "query-tooltip",
        +[](GtkWidget*, int x, int y, gboolean, GtkTooltip* tip, TrayStrip* strip) -> gboolean {
            return strip->OnQueryTip(x, y, tip);
        });
}

void TrayStrip::DestroyWindow() {
    if (!window_) return;
    if (dropTarget_) dropTarget_->GtkUnregisterWidget(window_);
    dropTarget_.reset();
    gtk_widget_destroy(window_);
    window_ = nullptr;
    hovered_ = pressed_ = 0;
}

void TrayStrip::Place() {
    GdkRectangle room;
    gdk_monitor_get_workarea(CornerMonitor(window_), &room);
    layout_ = LayoutStrip(static_cast<int>(cells_.size()), room.width, room.height);
    gtk_widget_set_size_request(window_, layout_.Width(), layout_.Height());
    GdkRectangle place = {room.x + room.width - layout_.Width(), room.y + room.height - layout_.Height(),
                          layout_.Width(), layout_.Height()};
    const std::optional<GdkRectangle> taken = KeepFree ? KeepFree() : std::nullopt;
    if (taken && gdk_rectangle_intersect(&place, &*taken, nullptr)) {
        const GdkRectangle above = {place.x, taken->y - place.height, place.width, place.height};
        const GdkRectangle beside = {taken->x - place.width, place.y, place.width, place.height};
        const bool lies = taken->width >= taken->height;
        if (lies && above.y >= room.y) place = above;
        if (!lies && beside.x >= room.x) place = beside;
    }
    gtk_window_move(GTK_WINDOW(window_), place.x, place.y);
}

std::optional<wxRect> TrayStrip::PlaceOf(const TrayIcon& icon) const {
    const auto found = std::find(cells_.begin(), cells_.end(), icon.number);
    if (!window_ || found == cells_.end()) return std::nullopt;
    const int index = static_cast<int>(found - cells_.begin());
    int x = 0, y = 0;
    gtk_window_get_position(GTK_WINDOW(window_), &x, &y);
    return wxRect(x + layout_.CellX(index), y + layout_.CellY(index), layout_.cell, layout_.cell);
}

const TrayIcon* TrayStrip::IconAt(double x, double y) const {
    const int index =
        layout_.IndexAt(static_cast<int>(x), static_cast<int>(y), static_cast<int>(cells_.size()));
    if (index < 0) return nullptr;
    const auto found = icons_.find(cells_[static_cast<std::size_t>(index)]);
    return found == icons_.end() ? nullptr : found->second;
}

void TrayStrip::Hover(const TrayIcon* icon) {
    const unsigned long number = icon ? icon->number : 0;
    if (number == hovered_) return;
    Redraw(hovered_);
    hovered_ = number;
    Redraw(hovered_);
}

void TrayStrip::Redraw(unsigned long number) {
    const auto found = std::lower_bound(cells_.begin(), cells_.end(), number);
    if (!window_ || found == cells_.end() || *found != number) return;
    const int index = static_cast<int>(found - cells_.begin());
    gtk_widget_queue_draw_area(window_, layout_.CellX(index), layout_.CellY(index), layout_.cell,
                               layout_.cell);
}

void TrayStrip::OnButton(const GdkEventButton& event) {
    const TrayIcon* icon = IconAt(event.x, event.y);
    const unsigned long number = icon ? icon->number : 0;
    // A release belongs to the icon that was pressed: a double click may take that icon away and move another
    // one below the pointer.
    if (event.type == GDK_BUTTON_PRESS) pressed_ = number;
    if (!icon || number != pressed_) return;
    if (const std::optional<TrayMessage> message = MessageOf(event)) icon->Report(*message);
}

void TrayStrip::OnMotion(const GdkEventMotion& event) {
    const TrayIcon* icon = IconAt(event.x, event.y);
    Hover(icon);
    if (icon) icon->Report(TrayMessage::MouseMove);
}

bool TrayStrip::OnQueryTip(int x, int y, GtkTooltip* tip) const {
    if (gtk_grab_get_current()) return false;  // not above an open menu
    const TrayIcon* icon = IconAt(x, y);
    if (!icon || icon->toolTip.empty()) return false;
    const int index = layout_.IndexAt(x, y, static_cast<int>(cells_.size()));
    const GdkRectangle area = {layout_.CellX(index), layout_.CellY(index), layout_.cell, layout_.cell};
    gtk_tooltip_set_tip_area(tip, &area);
    gtk_tooltip_set_text(tip, ToUtf8(icon->toolTip).c_str());
    return true;
}

void TrayStrip::Draw(cairo_t* context) const {
    GtkStyleContext* style = gtk_widget_get_style_context(window_);
    gtk_render_background(style, context, 0, 0, layout_.Width(), layout_.Height());
    GdkRGBA ink;
    gtk_style_context_get_color(style, gtk_style_context_get_state(style), &ink);
    cairo_set_line_width(context, 1);
    cairo_set_source_rgba(context, ink.red, ink.green, ink.blue, 0.35);
    cairo_rectangle(context, 0.5, 0.5, layout_.Width() - 1, layout_.Height() - 1);
    cairo_stroke(context);

    GdkRectangle clip;
    if (!gdk_cairo_get_clip_rectangle(context, &clip)) return;
    for (int index = 0; index < static_cast<int>(cells_.size()); ++index) {
        const GdkRectangle cell = {layout_.CellX(index), layout_.CellY(index), layout_.cell, layout_.cell};
        if (cell.y < 0 || !gdk_rectangle_intersect(&cell, &clip, nullptr)) continue;
        const auto found = icons_.find(cells_[static_cast<std::size_t>(index)]);
        if (found == icons_.end()) continue;
        if (found->first == hovered_) {
            cairo_set_source_rgba(context, ink.red, ink.green, ink.blue, 0.14);
            cairo_rectangle(context, cell.x, cell.y, cell.width, cell.height);
            cairo_fill(context);
        }
        DrawIcon(context, *found->second, cell);
    }
}

void TrayStrip::DrawIcon(cairo_t* context, const TrayIcon& icon, const GdkRectangle& cell) const {
    const int scale = gtk_widget_get_scale_factor(window_);
    const wxBitmap bitmap = icon.BitmapFor((cell.width - 2 * kStripPadding) * scale);
    if (!bitmap.IsOk()) return;
    cairo_save(context);
    cairo_translate(context, cell.x, cell.y);
    cairo_scale(context, 1.0 / scale, 1.0 / scale);
    gdk_cairo_set_source_pixbuf(context, bitmap.GetPixbuf(), (cell.width * scale - bitmap.GetWidth()) / 2,
                                (cell.height * scale - bitmap.GetHeight()) / 2);
    cairo_paint(context);
    cairo_restore(context);
}
