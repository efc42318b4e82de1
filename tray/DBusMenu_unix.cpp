#include "tray/DBusMenu_unix.h"

#include <string>
#include <utility>

#include "base/Text.h"

namespace {

constexpr char kInterface[] = "com.canonical.dbusmenu";

constexpr char kIntrospection[] = R"(<node><interface name='com.canonical.dbusmenu'>
    <property name='Version' type='u' access='read'/>
    <property name='TextDirection' type='s' access='read'/>
    <property name='Status' type='s' access='read'/>
    <property name='IconThemePath' type='as' access='read'/>
    <method name='GetLayout'>
        <arg type='i' name='parentId' direction='in'/><arg type='i' name='recursionDepth' direction='in'/>
        <arg type='as' name='propertyNames' direction='in'/>
        <arg type='u' name='revision' direction='out'/><arg type='(ia{sv}av)' name='layout' direction='out'/>
    </method>
    <method name='GetGroupProperties'>
        <arg type='ai' name='ids' direction='in'/><arg type='as' name='propertyNames' direction='in'/>
        <arg type='a(ia{sv})' name='properties' direction='out'/>
    </method>
    <method name='GetProperty'>
        <arg type='i' name='id' direction='in'/><arg type='s' name='name' direction='in'/>
        <arg type='v' name='value' direction='out'/>
    </method>
    <method name='Event'>
        <arg type='i' name='id' direction='in'/><arg type='s' name='eventId' direction='in'/>
        <arg type='v' name='data' direction='in'/><arg type='u' name='timestamp' direction='in'/>
    </method>
    <method name='EventGroup'>
        <arg type='a(isvu)' name='events' direction='in'/><arg type='ai' name='idErrors' direction='out'/>
    </method>
    <method name='AboutToShow'>
        <arg type='i' name='id' direction='in'/><arg type='b' name='needUpdate' direction='out'/>
    </method>
    <method name='AboutToShowGroup'>
        <arg type='ai' name='ids' direction='in'/><arg type='ai' name='updatesNeeded' direction='out'/>
        <arg type='ai' name='idErrors' direction='out'/>
    </method>
    <signal name='ItemsPropertiesUpdated'>
        <arg type='a(ia{sv})' name='updatedProps'/><arg type='a(ias)' name='removedProps'/>
    </signal>
    <signal name='LayoutUpdated'><arg type='u' name='revision'/><arg type='i' name='parent'/></signal>
    <signal name='ItemActivationRequested'><arg type='i' name='id'/><arg type='u' name='timestamp'/></signal>
</interface></node>)";

GDBusInterfaceInfo* InterfaceInfo() {
    static GDBusNodeInfo* const info = g_dbus_node_info_new_for_xml(kIntrospection, nullptr);
    return info->interfaces[0];
}

// A single underline in a label would mark the next letter as the one to type; a pair shows as one.
std::string Label(const std::wstring& caption) {
    std::string label;
    for (const char c : ToUtf8(caption)) label.append(c == '_' ? 2 : 1, c);
    return label;
}

// The properties in which the entry differs from an enabled one without a mark. names: those that are wanted,
// null or an empty list for all. The result is floating.
GVariant* Properties(const TrayMenuEntry& entry, const char* const* names) {
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    const auto add = [&](const char* name, GVariant* value) {
        g_variant_ref_sink(value);
        if (!names || !*names || g_strv_contains(names, name))
            g_variant_builder_add(&properties, "{sv}", name, value);
        g_variant_unref(value);
    };
    switch (entry.kind) {
        case TrayMenuEntry::Separator:
            add("type", g_variant_new_string("separator"));
            break;
        case TrayMenuEntry::Submenu:
            add("children-display", g_variant_new_string("submenu"));
            [[fallthrough]];
        case TrayMenuEntry::Command:
        case TrayMenuEntry::Check:
            if (entry.id) add("label", g_variant_new_string(Label(entry.caption).c_str()));
            if (!entry.enabled) add("enabled", g_variant_new_boolean(FALSE));
            if (entry.kind != TrayMenuEntry::Check) break;
            add("toggle-type", g_variant_new_string("checkmark"));
            add("toggle-state", g_variant_new_int32(entry.checked));
            break;
    }
    return g_variant_builder_end(&properties);
}

// depth: how many levels below the entry are wanted, -1 for all.
GVariant* Layout(const TrayMenuEntry& entry, int depth, const char* const* names) {
    GVariantBuilder children;
    g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
    if (depth != 0) {
        for (const TrayMenuEntry& child : entry.submenu)
            g_variant_builder_add(&children, "v", Layout(child, depth < 0 ? -1 : depth - 1, names));
    }
    return g_variant_new("(i@a{sv}av)", entry.id, Properties(entry, names), &children);
}

const TrayMenuEntry* FindIn(const TrayMenuEntry& entry, int id) {
    if (entry.id == id) return &entry;
    for (const TrayMenuEntry& child : entry.submenu)
        if (const TrayMenuEntry* found = FindIn(child, id)) return found;
    return nullptr;
}

void AnswerUnknownId(GDBusMethodInvocation* invocation) {
    g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                  "No such menu item");
}

GVariant* MenuProperty(GDBusConnection*, const char*, const char*, const char*, const char* name, GError**,
                       void*) {
    const std::string property = name;
    if (property == "Version") return g_variant_new_uint32(3);
    if (property == "TextDirection") return g_variant_new_string("ltr");
    if (property == "Status") return g_variant_new_string("normal");
    return g_variant_new_strv(nullptr, 0);
}

}  // namespace

DBusMenu::DBusMenu(GDBusConnection* connection, const TrayMenu& menu,
                   std::function<void(int id, guint32 time)> clicked)
    : connection_(connection), menu_(menu), clicked_(std::move(clicked)) {
    root_.kind = TrayMenuEntry::Submenu;
    static const GDBusInterfaceVTable table = {
        [](GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* parameters,
           GDBusMethodInvocation* invocation,
           void* self) { static_cast<DBusMenu*>(self)->OnCall(method, parameters, invocation); },
        MenuProperty,
        nullptr,
        {}};
    object_ = g_dbus_connection_register_object(connection_, kMenuPath, InterfaceInfo(), &table, this,
                                                nullptr, nullptr);
}

DBusMenu::~DBusMenu() {
    if (object_) g_dbus_connection_unregister_object(connection_, object_);
}

void DBusMenu::OnCall(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation) {
    const std::string name = method;
    if (name == "GetLayout") return AnswerLayout(parameters, invocation);
    if (name == "GetGroupProperties") return AnswerProperties(parameters, invocation);
    if (name == "GetProperty") return AnswerProperty(parameters, invocation);
    if (name == "EventGroup") return AnswerEvents(parameters, invocation);
    if (name == "AboutToShowGroup") return AnswerAboutToShowGroup(parameters, invocation);
    if (name == "AboutToShow") {
        const bool renewed = Renew();
        return g_dbus_method_invocation_return_value(invocation, g_variant_new("(b)", renewed));
    }
    // Event
    int id = 0;
    const char* event = nullptr;
    g_autoptr(GVariant) data = nullptr;
    guint32 time = 0;
    g_variant_get(parameters, "(i&svu)", &id, &event, &data, &time);
    if (!OnEvent(id, event, time)) return AnswerUnknownId(invocation);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

// Describes the menu anew and tells everybody who has read it when it has changed: several hosts may show it.
bool DBusMenu::Renew() {
    std::vector<TrayMenuEntry> entries = menu_.Describe();
    const bool wasRead = std::exchange(read_, true);
    if (entries == root_.submenu) return false;
    root_.submenu = std::move(entries);
    if (!wasRead) return true;
    ++revision_;
    g_dbus_connection_emit_signal(connection_, nullptr, kMenuPath, kInterface, "LayoutUpdated",
                                  g_variant_new("(ui)", revision_, 0), nullptr);
    return true;
}

void DBusMenu::RenewIfRead() {
    if (read_) Renew();
}

// False when there is no such item.
bool DBusMenu::OnEvent(int id, const char* event, guint32 time) {
    const bool clicked = g_str_equal(event, "clicked");
    // Not every host asks before it shows the menu.
    if (clicked || g_str_equal(event, "opened")) Renew();
    const TrayMenuEntry* entry = Find(id);
    if (!entry) return false;
    const bool command = entry->kind == TrayMenuEntry::Command || entry->kind == TrayMenuEntry::Check;
    if (clicked && command && entry->enabled) clicked_(id, time);
    return true;
}

void DBusMenu::AnswerLayout(GVariant* parameters, GDBusMethodInvocation* invocation) {
    int id = 0, depth = 0;
    g_autofree const char** names = nullptr;
    g_variant_get(parameters, "(ii^a&s)", &id, &depth, &names);
    Renew();
    if (const TrayMenuEntry* entry = Find(id)) {
        g_dbus_method_invocation_return_value(
            invocation, g_variant_new("(u@(ia{sv}av))", revision_, Layout(*entry, depth, names)));
    } else {
        AnswerUnknownId(invocation);
    }
}

void DBusMenu::AnswerProperties(GVariant* parameters, GDBusMethodInvocation* invocation) {
    g_autoptr(GVariantIter) ids = nullptr;
    g_autofree const char** names = nullptr;
    g_variant_get(parameters, "(ai^a&s)", &ids, &names);
    GVariantBuilder answer;
    g_variant_builder_init(&answer, G_VARIANT_TYPE("a(ia{sv})"));
    const auto add = [&](const TrayMenuEntry& entry) {
        g_variant_builder_add(&answer, "(i@a{sv})", entry.id, Properties(entry, names));
    };
    const auto addAll = [&](const auto& self, const TrayMenuEntry& entry) -> void {
        add(entry);
        for (const TrayMenuEntry& child : entry.submenu) self(self, child);
    };
    if (!read_) Renew();
    if (g_variant_iter_n_children(ids) == 0) addAll(addAll, root_);
    int id = 0;
    while (g_variant_iter_next(ids, "i", &id))
        if (const TrayMenuEntry* entry = Find(id)) add(*entry);
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(a(ia{sv}))", &answer));
}

void DBusMenu::AnswerProperty(GVariant* parameters, GDBusMethodInvocation* invocation) {
    int id = 0;
    const char* name = nullptr;
    g_variant_get(parameters, "(i&s)", &id, &name);
    if (!read_) Renew();
    const TrayMenuEntry* entry = Find(id);
    if (!entry) return AnswerUnknownId(invocation);
    g_autoptr(GVariant) properties = g_variant_ref_sink(Properties(*entry, nullptr));
    g_autoptr(GVariant) value = g_variant_lookup_value(properties, name, nullptr);
    if (!value && (g_str_equal(name, "enabled") || g_str_equal(name, "visible")))
        value = g_variant_ref_sink(g_variant_new_boolean(TRUE));
    if (!value) return AnswerUnknownId(invocation);
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", value));
}

void DBusMenu::AnswerEvents(GVariant* parameters, GDBusMethodInvocation* invocation) {
    g_autoptr(GVariantIter) events = nullptr;
    g_variant_get(parameters, "(a(isvu))", &events);
    GVariantBuilder unknown;
    g_variant_builder_init(&unknown, G_VARIANT_TYPE("ai"));
    int id = 0;
    const char* event = nullptr;
    GVariant* data = nullptr;
    guint32 time = 0;
    while (g_variant_iter_next(events, "(i&svu)", &id, &event, &data, &time)) {
        if (!OnEvent(id, event, time)) g_variant_builder_add(&unknown, "i", id);
        g_variant_unref(data);
    }
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(ai)", &unknown));
}

void DBusMenu::AnswerAboutToShowGroup(GVariant* parameters, GDBusMethodInvocation* invocation) {
    const bool renewed = Renew();
    g_autoptr(GVariantIter) ids = nullptr;
    g_variant_get(parameters, "(ai)", &ids);
    GVariantBuilder updates, unknown;
    g_variant_builder_init(&updates, G_VARIANT_TYPE("ai"));
    g_variant_builder_init(&unknown, G_VARIANT_TYPE("ai"));
    int id = 0;
    while (g_variant_iter_next(ids, "i", &id)) {
        if (!Find(id))
            g_variant_builder_add(&unknown, "i", id);
        else if (renewed)
            g_variant_builder_add(&updates, "i", id);
    }
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(aiai)", &updates, &unknown));
}

const TrayMenuEntry* DBusMenu::Find(int id) const { return FindIn(root_, id); }
