#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "tray/StatusNotifierItem_unix.h"
#include "tray/TrayArea_unix.h"
#include "tray/TrayIcon_unix.h"
#include "tray/TrayItem.h"
#include "tray/TrayMouse_unix.h"
#include "tray/TrayStrip_unix.h"

// GTK calls its tray icon outdated without offering anything in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace {

constexpr int kUsualSize = 22;  // until the host tells its own

class UnixTrayItem : public TrayItem, private HostedIcon {
  public:
    UnixTrayItem(const wxBitmapBundle& picture, const std::wstring& toolTip,
                 std::function<void(TrayMessage)> report, const TrayMenu& menu) {
        icon_ = {TrayArea::Get().NextNumber(), picture, toolTip, std::move(report), menu};
        TrayArea::Get().Add(*this);
        ++count;
    }

    ~UnixTrayItem() override {
        --count;
        TrayArea::Get().Remove(*this);
    }

    static inline int count = 0;

    void Modify(const wxBitmapBundle& picture, const std::wstring& toolTip) override {
        const bool otherPicture = !icon_.picture.IsSameAs(picture), otherTip = icon_.toolTip != toolTip;
        icon_.picture = picture;
        icon_.toolTip = toolTip;
        if (status_) Apply();
        if (notifier_ && otherPicture) notifier_->PictureChanged();
        if (notifier_ && otherTip) notifier_->ToolTipChanged();
        TrayStrip::Get().Changed(icon_);
    }

    std::optional<wxRect> Place() const override {
        if (const std::optional<wxRect> inStrip = TrayStrip::Get().PlaceOf(icon_)) return inStrip;
        GdkRectangle place;
        if (!status_ || !gtk_status_icon_is_embedded(status_) ||
            !gtk_status_icon_get_geometry(status_, nullptr, &place, nullptr))
            return std::nullopt;
        return wxRect(place.x, place.y, place.width, place.height);
    }

  private:
    void OfferToHost(TrayHost host) override {
        if (host == TrayHost::StatusNotifier) {
            notifier_ = std::make_unique<StatusNotifierItem>(
                icon_, [this] { TrayArea::Get().EmbeddingChanged(*this); });
        } else {
            Embed();
        }
    }

    void Embed() {
        status_ = gtk_status_icon_new();
        Apply();
        const auto connect = [this](const char* signal, auto* handler) {
            g_signal_connect(status_, signal, G_CALLBACK(handler), this);
        };
        // Returning TRUE keeps GTK from its own answer to the right button, which would ask for the menu a
        // second time.
        const auto button = +[](GtkStatusIcon*, GdkEventButton* event, UnixTrayItem* item) -> gboolean {
            if (const std::optional<TrayMessage> message = MessageOf(*event)) item->icon_.Report(*message);
            return TRUE;
        };
        connect("button-press-event", button);
        connect("button-release-event", button);
        connect(
            "popup-menu", +[](GtkStatusIcon*, guint, guint, UnixTrayItem* item) {
                item->icon_.Report(TrayMessage::ContextMenu);
            });
        // The one sign that such an icon gives of the pointer moving over it.
        connect(
            "query-tooltip",
            +[](GtkStatusIcon*, int, int, gboolean, GtkTooltip*, UnixTrayItem* item) -> gboolean {
                item->icon_.Report(TrayMessage::MouseMove);
                return FALSE;
            });
        connect(
            "size-changed", +[](GtkStatusIcon*, int, UnixTrayItem* item) -> gboolean {
                item->Apply();
                return TRUE;
            });
        connect(
            "notify::embedded", +[](GtkStatusIcon*, GParamSpec*, UnixTrayItem* item) {
                TrayArea::Get().EmbeddingChanged(*item);
            });
    }

    void TakeBack() override {
        notifier_.reset();
        if (!status_) return;
        GtkStatusIcon* status = std::exchange(status_, nullptr);
        g_signal_handlers_disconnect_by_data(status, this);
        // A host may have gone and taken the icon's window along. GDK would end the program at the error that
        // X11 answers then.
        GdkDisplay* const display = gdk_display_get_default();
        gdk_x11_display_error_trap_push(display);
        gtk_status_icon_set_visible(status, FALSE);
        gdk_x11_display_error_trap_pop_ignored(display);
        // The icon may be in the middle of telling something.
        g_idle_add(
            [](void* object) -> gboolean {
                g_object_unref(object);
                return G_SOURCE_REMOVE;
            },
            status);
    }

    void RenewMenu() override {
        if (notifier_) notifier_->RenewMenu();
    }

    bool Embedded() const override {
        return notifier_ ? notifier_->Registered() : status_ && gtk_status_icon_is_embedded(status_);
    }

    void Apply() {
        const int size = gtk_status_icon_get_size(status_);
        SetPicture(size > 0 ? size : kUsualSize);
        gtk_status_icon_set_tooltip_text(status_,
                                         icon_.toolTip.empty() ? nullptr : ToUtf8(icon_.toolTip).c_str());
    }

    unsigned long Window() const override { return status_ ? gtk_status_icon_get_x11_window_id(status_) : 0; }

    // size: edge in GTK's units, each of which is several pixels on a screen of high resolution.
    void SetPicture(int size) {
        const int scale = gdk_monitor_get_scale_factor(gdk_display_get_monitor(gdk_display_get_default(), 0));
        if (scale > 1 && icon_.picture.IsOk()) return SetFinePicture(size, scale);
        const wxBitmap bitmap = icon_.BitmapFor(size);
        gtk_status_icon_set_from_pixbuf(status_, bitmap.IsOk() ? bitmap.GetPixbuf() : nullptr);
    }

    // For screens where one of GTK's units is `scale` pixels: GTK enlarges the pixels of a GdkPixbuf given as
    // a picture, but not of one given as a GIcon. That one it scales to the nearest of its own icon sizes
    // (16, 24, 32, 48 units), so the bitmap is put unscaled into the middle of an empty picture of that size.
    void SetFinePicture(int size, int scale) {
        int nearest = 16;
        for (const int usual : {24, 32, 48})
            if (std::abs(usual - size) <= std::abs(nearest - size)) nearest = usual;
        const int edge = nearest * scale;
        const wxBitmap bitmap = icon_.BitmapFor(std::min(size * scale, edge));
        const int width = bitmap.GetWidth(), height = bitmap.GetHeight();
        GdkPixbuf* picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, edge, edge);
        gdk_pixbuf_fill(picture, 0);
        gdk_pixbuf_composite(bitmap.GetPixbuf(), picture, (edge - width) / 2, (edge - height) / 2, width,
                             height, (edge - width) / 2, (edge - height) / 2, 1, 1, GDK_INTERP_NEAREST, 255);
        gtk_status_icon_set_from_gicon(status_, G_ICON(picture));
        g_object_unref(picture);
    }

    // The icon as the host has it. At most one of the two; neither while no host has been offered it.
    GtkStatusIcon* status_ = nullptr;
    std::unique_ptr<StatusNotifierItem> notifier_;
};

}  // namespace

G_GNUC_END_IGNORE_DEPRECATIONS

std::unique_ptr<TrayItem> TrayItem::Add(const wxBitmapBundle& picture, const std::wstring& toolTip,
                                        std::function<void(TrayMessage)> report, const TrayMenu& menu) {
    return std::make_unique<UnixTrayItem>(picture, toolTip, std::move(report), menu);
}

void TrayItem::MenusChanged() {
    if (UnixTrayItem::count > 0) TrayArea::Get().MenusChanged();
}

void TrayItem::TakeDrops(std::function<std::unique_ptr<wxDropTarget>()> makeTarget) {
    TrayStrip::Get().MakeDropTarget = std::move(makeTarget);
}

void TrayItem::RemindOtherCopies() {}
