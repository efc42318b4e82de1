#include <gio/gio.h>

#include "addressbook/NameLookup.h"
#include "base/Text.h"

struct NameLookup::Running {
    Answer answer;  // empty once nobody waits any more
    GCancellable* cancellable = g_cancellable_new();

    ~Running() { g_object_unref(cancellable); }
};

namespace {

std::vector<std::wstring> Addresses(GResolver* resolver, GAsyncResult* result) {
    GList* const found = g_resolver_lookup_by_name_with_flags_finish(resolver, result, nullptr);
    std::vector<std::wstring> addresses;
    for (const GList* each = found; each; each = each->next) {
        g_autofree char* dotted = g_inet_address_to_string(static_cast<GInetAddress*>(each->data));
        addresses.push_back(FromUtf8(dotted));
    }
    g_resolver_free_addresses(found);
    return addresses;
}

}  // namespace

std::shared_ptr<NameLookup::Running> NameLookup::Start(const std::wstring& name, Answer answer) {
    const std::shared_ptr<Running> started(new Running{std::move(answer)});
    GResolver* const resolver = g_resolver_get_default();
    g_resolver_lookup_by_name_with_flags_async(
        resolver, ToUtf8(name).c_str(), G_RESOLVER_NAME_LOOKUP_FLAGS_IPV4_ONLY, started->cancellable,
        [](GObject* source, GAsyncResult* result, gpointer data) {
            const std::unique_ptr<std::shared_ptr<Running>> running(
                static_cast<std::shared_ptr<Running>*>(data));
            const std::vector<std::wstring> addresses = Addresses(G_RESOLVER(source), result);
            // A copy, because the look-up may be destroyed by its own answer.
            const Answer answer = (*running)->answer;
            if (answer) answer(addresses);
        },
        new std::shared_ptr<Running>(started));
    g_object_unref(resolver);
    return started;
}

NameLookup::~NameLookup() {
    running_->answer = {};
    g_cancellable_cancel(running_->cancellable);
}
