// Calls of the menu on the bus, with any arguments that the types allow. Both ends of the connection are
// here; the program's one does not know that there is no bus between them.
#include <gio/gio.h>
#include <sys/socket.h>

#include <memory>

#include "fuzz/support/FuzzTarget.h"
#include "tray/DBusMenu_unix.h"

namespace {

std::vector<TrayMenuEntry> Entries() {
    return {
        {.id = 1, .caption = L"Neue _Notiz..."},
        {.id = 2, .kind = TrayMenuEntry::Check, .caption = L"Vordergrund", .checked = true},
        {.id = 3, .kind = TrayMenuEntry::Separator, .caption = {}},
        {.id = 4,
         .kind = TrayMenuEntry::Submenu,
         .caption = L"Mehr",
         .submenu = {{.id = 5, .caption = L"gesperrt", .enabled = false}, {.id = 6, .caption = L"offen"}}}};
}

bool IsItem(gint32 id) { return id >= 0 && id <= 6; }
bool CanBeChosen(gint32 id) { return id == 1 || id == 2 || id == 6; }

struct Connections {
    GDBusConnection *program = nullptr, *host = nullptr;
    int clicks = 0;
    bool wrong = false;  // something was chosen that cannot be
    std::unique_ptr<DBusMenu> menu;

    Connections() {
        int ends[2];
        Require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "there are sockets");
        program = Connect(ends[0], G_DBUS_CONNECTION_FLAGS_DELAY_MESSAGE_PROCESSING);
        host = Connect(ends[1], G_DBUS_CONNECTION_FLAGS_NONE);
        const TrayMenu described{Entries, {}};
        menu = std::make_unique<DBusMenu>(program, described, [this](int id, guint32) {
            wrong = wrong || !CanBeChosen(id);
            ++clicks;
        });
        g_dbus_connection_start_message_processing(program);
    }

    static GDBusConnection* Connect(int end, GDBusConnectionFlags flags) {
        GSocket* const socket = g_socket_new_from_fd(end, nullptr);
        GSocketConnection* const stream = g_socket_connection_factory_create_connection(socket);
        g_object_unref(socket);
        GDBusConnection* const connection =
            g_dbus_connection_new_sync(G_IO_STREAM(stream), nullptr, flags, nullptr, nullptr, nullptr);
        g_object_unref(stream);
        return connection;
    }
};

// A value for the `v` of an event, which nobody reads.
GVariant* Data(FuzzInput& input) {
    if (input.Byte() % 2) return g_variant_new_int32(input.Byte());
    return g_variant_new_strv(nullptr, 0);
}

gint32 Id(FuzzInput& input) {
    const auto id = static_cast<std::int8_t>(input.Byte());
    return id == -128 ? G_MININT32 : id;
}

std::string Name(FuzzInput& input) {
    static const char* const names[] = {"clicked", "opened", "label",        "enabled",
                                        "visible", "type",   "toggle-state", "children-display"};
    const std::uint8_t which = input.Byte();
    if (which < std::size(names)) return names[which];
    std::string name(input.Field());
    return g_utf8_validate(name.data(), static_cast<gssize>(name.size()), nullptr) ? name : "";
}

GVariant* Ids(FuzzInput& input) {
    GVariantBuilder ids;
    g_variant_builder_init(&ids, G_VARIANT_TYPE("ai"));
    for (std::size_t count = input.Number(5); count > 0; --count) g_variant_builder_add(&ids, "i", Id(input));
    return g_variant_builder_end(&ids);
}

GVariant* Names(FuzzInput& input) {
    GVariantBuilder names;
    g_variant_builder_init(&names, G_VARIANT_TYPE("as"));
    for (std::size_t count = input.Number(3); count > 0; --count)
        g_variant_builder_add(&names, "s", Name(input).c_str());
    return g_variant_builder_end(&names);
}

GVariant* Events(FuzzInput& input) {
    GVariantBuilder events;
    g_variant_builder_init(&events, G_VARIANT_TYPE("a(isvu)"));
    for (std::size_t count = input.Number(4); count > 0; --count) {
        const gint32 id = Id(input);
        const std::string name = Name(input);
        g_variant_builder_add(&events, "(isvu)", id, name.c_str(), Data(input), 0);
    }
    return g_variant_builder_end(&events);
}

struct Answer {
    bool came = false;
    bool isError = false;
};

Answer Call(Connections& both, const char* method, GVariant* parameters) {
    Answer answer;
    g_dbus_connection_call(
        both.host, nullptr, kMenuPath, "com.canonical.dbusmenu", method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        [](GObject* source, GAsyncResult* result, void* to) {
            GVariant* const value = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr);
            *static_cast<Answer*>(to) = {true, value == nullptr};
            if (value) g_variant_unref(value);
        },
        &answer);
    while (!answer.came) g_main_context_iteration(nullptr, TRUE);
    return answer;
}

void Host(FuzzInput& input) {
    static Connections both;
    for (int calls = 0; calls < 8 && !input.Empty(); ++calls) {
        const std::size_t method = input.Number(6);
        const gint32 id = Id(input);
        if (method == 0) {
            const int depth = static_cast<std::int8_t>(input.Byte());
            const Answer layout = Call(both, "GetLayout", g_variant_new("(ii@as)", id, depth, Names(input)));
            Require(layout.isError == !IsItem(id), "there is a layout of each item, and of nothing else");
        } else if (method == 1) {
            GVariant* const ids = Ids(input);
            Require(!Call(both, "GetGroupProperties", g_variant_new("(@ai@as)", ids, Names(input))).isError,
                    "unknown items are passed over");
        } else if (method == 2) {
            Call(both, "GetProperty", g_variant_new("(is)", id, Name(input).c_str()));
        } else if (method == 3) {
            const std::string name = Name(input);
            const int before = both.clicks;
            const Answer event =
                Call(both, "Event", g_variant_new("(isvu)", id, name.c_str(), Data(input), 7));
            Require(event.isError == !IsItem(id), "an event belongs to an item");
            Require(both.clicks - before == (name == "clicked" && CanBeChosen(id)),
                    "a click chooses once what can be chosen");
        } else if (method == 4) {
            Require(!Call(both, "EventGroup", g_variant_new("(@a(isvu))", Events(input))).isError,
                    "events are taken");
        } else if (method == 5) {
            Require(!Call(both, "AboutToShow", g_variant_new("(i)", id)).isError, "showing is no error");
        } else {
            Require(!Call(both, "AboutToShowGroup", g_variant_new("(@ai)", Ids(input))).isError,
                    "showing several is none");
        }
        Require(!both.wrong, "only what can be chosen is");
    }
}

const FuzzTarget kTarget("DBusMenu", Host);

}  // namespace
