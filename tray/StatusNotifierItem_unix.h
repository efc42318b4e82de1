#pragma once
// One icon as an object on the session bus (org.kde.StatusNotifierItem), announced to the watcher so that the
// desktop's host shows it. A watcher lets an icon go only when its name leaves the bus, so every icon has a
// name and a connection of its own.

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>

#include "tray/DBusMenu_unix.h"
#include "tray/TrayIcon_unix.h"

class StatusNotifierItem {
  public:
    // Announces the icon, which has to live longer than this object. changed: called when Registered has
    // changed; it must not destroy the item. All calls come on the thread of the windows.
    StatusNotifierItem(const TrayIcon& icon, std::function<void()> changed);
    ~StatusNotifierItem();
    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

    // The watcher has taken the icon. It is not announced again once it has been refused or the bus has gone.
    bool Registered() const { return registered_; }

    // To be called when the icon's picture or tip has changed.
    void PictureChanged();
    void ToolTipChanged();
    // Describes the menu anew for a host that has read it.
    void RenewMenu();

  private:
    void OnConnected(GDBusConnection* connection);
    void Announce(const std::string& name);
    void GiveUp();
    void SetRegistered(bool registered);
    void OnCall(const char* method);
    GVariant* Property(const char* name) const;
    void Emit(const char* signal);

    const TrayIcon& icon_;
    const std::function<void()> changed_;
    GCancellable* const cancel_;
    GDBusConnection* connection_ = nullptr;
    guint object_ = 0;
    std::unique_ptr<DBusMenu> menu_;
    bool registered_ = false;
};
