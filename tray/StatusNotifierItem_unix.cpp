#include "tray/StatusNotifierItem_unix.h"

#include <gtk/gtk.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "base/Text.h"
#include "tray/SessionBus_unix.h"
#include "tray/StatusNotifierWatcher_unix.h"
#include "tray/TrayAction_unix.h"

namespace {

constexpr char kInterface[] = "org.kde.StatusNotifierItem";
constexpr char kObjectPath[] = "/StatusNotifierItem";  // where hosts look for it behind its name
constexpr char kNoMenuPath[] = "/NO_DBUSMENU";

constexpr char kIntrospection[] = R"(<node><interface name='org.kde.StatusNotifierItem'>
    <property name='Category' type='s' access='read'/>
    <property name='Id' type='s' access='read'/>
    <property name='Title' type='s' access='read'/>
    <property name='Status' type='s' access='read'/>
    <property name='WindowId' type='i' access='read'/>
    <property name='IconThemePath' type='s' access='read'/>
    <property name='IconName' type='s' access='read'/>
    <property name='IconPixmap' type='a(iiay)' access='read'/>
    <property name='OverlayIconName' type='s' access='read'/>
    <property name='OverlayIconPixmap' type='a(iiay)' access='read'/>
    <property name='AttentionIconName' type='s' access='read'/>
    <property name='AttentionIconPixmap' type='a(iiay)' access='read'/>
    <property name='AttentionMovieName' type='s' access='read'/>
    <property name='ToolTip' type='(sa(iiay)ss)' access='read'/>
    <property name='ItemIsMenu' type='b' access='read'/>
    <property name='Menu' type='o' access='read'/>
    <method name='Activate'><arg type='i' name='x' direction='in'/><arg type='i' name='y' direction='in'/></method>
    <method name='SecondaryActivate'>
        <arg type='i' name='x' direction='in'/><arg type='i' name='y' direction='in'/>
    </method>
    <method name='ContextMenu'>
        <arg type='i' name='x' direction='in'/><arg type='i' name='y' direction='in'/>
    </method>
    <method name='Scroll'>
        <arg type='i' name='delta' direction='in'/><arg type='s' name='orientation' direction='in'/>
    </method>
    <signal name='NewTitle'/><signal name='NewIcon'/><signal name='NewToolTip'/>
    <signal name='NewStatus'><arg type='s' name='status'/></signal>
</interface></node>)";

GDBusInterfaceInfo* InterfaceInfo() {
    static GDBusNodeInfo* const info = g_dbus_node_info_new_for_xml(kIntrospection, nullptr);
    return info->interfaces[0];
}

// A picture as hosts want it: the bytes of every pixel in the order alpha, red, green, blue.
GVariant* PixmapOf(const wxBitmap& bitmap) {
    const GdkPixbuf* pixels = bitmap.GetPixbuf();
    const int width = gdk_pixbuf_get_width(pixels), height = gdk_pixbuf_get_height(pixels);
    const int channels = gdk_pixbuf_get_n_channels(pixels), stride = gdk_pixbuf_get_rowstride(pixels);
    const guint8* data = gdk_pixbuf_read_pixels(pixels);
    std::vector<guint8> bytes;
    bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const guint8* pixel = data + y * stride + x * channels;
            bytes.push_back(channels == 4 ? pixel[3] : 255);
            bytes.insert(bytes.end(), pixel, pixel + 3);
        }
    }
    GVariant* array = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes.data(), bytes.size(), 1);
    return g_variant_new("(ii@ay)", width, height, array);
}

// In the sizes of usual panels, so that no host needs to scale.
GVariant* PixmapsOf(const TrayIcon& icon) {
    GVariantBuilder pixmaps;
    g_variant_builder_init(&pixmaps, G_VARIANT_TYPE("a(iiay)"));
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        const wxBitmap bitmap = icon.BitmapFor(size);
        if (bitmap.IsOk()) g_variant_builder_add_value(&pixmaps, PixmapOf(bitmap));
    }
    return g_variant_builder_end(&pixmaps);
}

GVariant* NoPixmaps() { return g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0); }

std::string FreshName() {
    static unsigned long last = 0;
    return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-" + std::to_string(++last);
}

}  // namespace

// Every step hands over to the next one by a callback. The item may be gone before that: it has cancelled the
// step then, which so calls nothing back.
StatusNotifierItem::StatusNotifierItem(const TrayIcon& icon, std::function<void()> changed)
    : icon_(icon), changed_(std::move(changed)), cancel_(g_cancellable_new()) {
    ConnectToSessionBus(cancel_, [this](GDBusConnection* connection) {
        if (connection) OnConnected(connection);
    });
}

StatusNotifierItem::~StatusNotifierItem() {
    GiveUp();
    g_object_unref(cancel_);
}

void StatusNotifierItem::OnConnected(GDBusConnection* connection) {
    connection_ = connection;
    g_signal_connect(connection_, "closed",
                     G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, StatusNotifierItem* item) {
                         item->GiveUp();
                         item->SetRegistered(false);
                     }),
                     this);
    static const GDBusInterfaceVTable table = {
        [](GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant*,
           GDBusMethodInvocation* invocation, void* self) {
            g_dbus_method_invocation_return_value(invocation, nullptr);
            static_cast<StatusNotifierItem*>(self)->OnCall(method);
        },
        [](GDBusConnection*, const char*, const char*, const char*, const char* name, GError**, void* self) {
            return static_cast<StatusNotifierItem*>(self)->Property(name);
        },
        nullptr,
        {}};
    object_ = g_dbus_connection_register_object(connection_, kObjectPath, InterfaceInfo(), &table, this,
                                                nullptr, nullptr);
    if (icon_.menu.Describe) {
        menu_ = std::make_unique<DBusMenu>(connection_, icon_.menu,
                                           [this](int id, guint32 time) { ChooseFromMenu(icon_, id, time); });
    }

    // A sandbox may forbid names; then the unique name that D-Bus gives every connection is announced.
    const std::string name = FreshName();
    constexpr guint32 doNotQueue = 4, primaryOwner = 1;
    CallOnBus(connection_,
              {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName", "(u)"},
              g_variant_new("(su)", name.c_str(), doNotQueue), cancel_, [this, name](GVariant* answer) {
                  guint32 got = 0;
                  if (answer) g_variant_get(answer, "(u)", &got);
                  Announce(got == primaryOwner ? name : g_dbus_connection_get_unique_name(connection_));
              });
}

void StatusNotifierItem::Announce(const std::string& name) {
    CallOnBus(connection_, {kWatcherName, kWatcherPath, kWatcherName, "RegisterStatusNotifierItem", nullptr},
              g_variant_new("(s)", name.c_str()), cancel_, [this](GVariant* answer) {
                  if (!answer) GiveUp();  // else a late host would show it beside the one in the strip
                  SetRegistered(answer != nullptr);
              });
}

void StatusNotifierItem::GiveUp() {
    g_cancellable_cancel(cancel_);
    if (!connection_) return;
    g_signal_handlers_disconnect_by_data(connection_, this);
    menu_.reset();
    if (object_) g_dbus_connection_unregister_object(connection_, std::exchange(object_, 0));
    Disconnect(connection_);
}

void StatusNotifierItem::SetRegistered(bool registered) {
    if (std::exchange(registered_, registered) != registered) changed_();
}

void StatusNotifierItem::PictureChanged() { Emit("NewIcon"); }

void StatusNotifierItem::ToolTipChanged() {
    Emit("NewTitle");
    Emit("NewToolTip");
}

void StatusNotifierItem::RenewMenu() {
    if (menu_) menu_->RenewIfRead();
}

void StatusNotifierItem::Emit(const char* signal) {
    if (connection_)
        g_dbus_connection_emit_signal(connection_, nullptr, kObjectPath, kInterface, signal, nullptr,
                                      nullptr);
}

void StatusNotifierItem::OnCall(const char* method) {
    const std::string name = method;
    if (name == "Activate") Activate(icon_);
    if (name == "SecondaryActivate") ActivateSecondary(icon_);
    if (name == "ContextMenu") AskForMenu(icon_);
}

GVariant* StatusNotifierItem::Property(const char* name) const {
    const std::string property = name;
    const std::string tip = ToUtf8(icon_.toolTip);
    if (property == "Category") return g_variant_new_string("ApplicationStatus");
    if (property == "Id") return g_variant_new_string("kivora");
    if (property == "Title") return g_variant_new_string(tip.empty() ? "Kivora" : tip.c_str());
    if (property == "Status") return g_variant_new_string("Active");
    if (property == "WindowId") return g_variant_new_int32(0);
    if (property == "IconPixmap") return PixmapsOf(icon_);
    if (property.ends_with("Pixmap")) return NoPixmaps();
    if (property == "ToolTip") return g_variant_new("(s@a(iiay)ss)", "", NoPixmaps(), tip.c_str(), "");
    if (property == "ItemIsMenu") return g_variant_new_boolean(FALSE);
    if (property == "Menu") return g_variant_new_object_path(menu_ ? kMenuPath : kNoMenuPath);
    return g_variant_new_string("");
}
