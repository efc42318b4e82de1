#pragma once
// The menu of one icon on the session bus (com.canonical.dbusmenu), for hosts that show it in their own way.
// It is described anew whenever a host is about to show it. Some hosts ask only when it is on the screen and
// redraw it badly when it changes then, so RenewIfRead should be called as soon as the menu may have changed.

#include <gio/gio.h>

#include <functional>

#include "tray/TrayMenu.h"

inline constexpr char kMenuPath[] = "/MenuBar";

class DBusMenu {
  public:
    // Offers the menu on that connection, which has to live longer. clicked: called, on the thread of the
    // windows, with an entry that can be chosen at that moment and the time of the user's action in X11
    // milliseconds (0 when the host does not tell); it must not destroy the menu.
    DBusMenu(GDBusConnection* connection, const TrayMenu& menu,
             std::function<void(int id, guint32 time)> clicked);
    ~DBusMenu();
    DBusMenu(const DBusMenu&) = delete;
    DBusMenu& operator=(const DBusMenu&) = delete;

    // Tells the host when the menu differs from the one that it has read.
    void RenewIfRead();

  private:
    void OnCall(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation);
    bool Renew();
    bool OnEvent(int id, const char* event, guint32 time);
    void AnswerLayout(GVariant* parameters, GDBusMethodInvocation* invocation);
    void AnswerProperties(GVariant* parameters, GDBusMethodInvocation* invocation);
    void AnswerProperty(GVariant* parameters, GDBusMethodInvocation* invocation);
    void AnswerEvents(GVariant* parameters, GDBusMethodInvocation* invocation);
    void AnswerAboutToShowGroup(GVariant* parameters, GDBusMethodInvocation* invocation);
    const TrayMenuEntry* Find(int id) const;

    GDBusConnection* const connection_;
    const TrayMenu menu_;
    const std::function<void(int id, guint32 time)> clicked_;
    TrayMenuEntry root_;  // as the host knows it
    bool read_ = false;   // a host has asked; there may be nothing in it
    guint32 revision_ = 1;
    guint object_ = 0;
};
