#pragma once
// The notification area as the desktop has it at the moment. Icons are offered to a host on the session bus,
// or without one to the X11 host that owns the tray selection and embeds windows, a few at a time so that a
// thousand of them stall nothing; what no host takes stands in the strip. Hosts may come and go at any time.
// Everything is called, and calls back, on the thread of the windows.

#include <gdk/gdk.h>

#include <map>
#include <optional>

#include "tray/StatusNotifierWatcher_unix.h"
#include "tray/TrayIcon_unix.h"

enum class TrayHost {
    Unknown,  // the session bus has not answered yet; icons are held back
    Absent,
    Embedding,
    StatusNotifier,
};

// An icon as the area sees it.
class HostedIcon {
  public:
    // Gives the icon to a host of that kind, which may take it at any later time or never.
    virtual void OfferToHost(TrayHost host) = 0;
    virtual void TakeBack() = 0;               // from the host, if it was offered to one
    virtual void RenewMenu() = 0;              // in a host that has read it
    virtual bool Embedded() const = 0;         // the host has taken the icon
    virtual unsigned long Window() const = 0;  // X11 id of the icon inside the host's window, 0 for none
    const TrayIcon& Icon() const { return icon_; }

  protected:
    ~HostedIcon() = default;
    TrayIcon icon_;
};

class TrayArea {
  public:
    // The only one; it lives until the process ends.
    static TrayArea& Get();

    unsigned long NextNumber() { return ++lastNumber_; }
    // The icon stays the caller's, who removes it before it dies.
    void Add(HostedIcon& hosted);
    void Remove(HostedIcon& hosted);
    // To be called when a host has taken the icon or let go of it.
    void EmbeddingChanged(const HostedIcon& hosted);
    // Renews the menus that a host has read, when events run next.
    void MenusChanged();
    // The icon of that number; null when it has been removed.
    const TrayIcon* Find(unsigned long number) const;

  private:
    TrayArea();
    TrayHost CurrentHost() const;
    bool HasHost() const { return host_ == TrayHost::Embedding || host_ == TrayHost::StatusNotifier; }
    void OnBusHostChanged();
    void OnEmbeddingHostChanged();
    void StartAnew();
    std::optional<GdkRectangle> HostRectangle();
    std::optional<GdkRectangle> WatchedRectangle(unsigned long xid);
    void OfferLater();
    bool OfferSome();
    void Await(const HostedIcon& hosted);
    void NoLongerAwaited(const HostedIcon& hosted);
    bool OnOverdue();

    StatusNotifierWatcher watcher_;
    std::map<unsigned long, HostedIcon*> icons_;
    std::map<unsigned long, const HostedIcon*> awaited_;  // offered, not embedded, not in the strip either
    unsigned long lastNumber_ = 0;
    unsigned long lastOffered_ = 0;  // the host has been offered the icons up to this number
    int offered_ = 0;
    TrayHost host_ = TrayHost::Absent;
    GdkWindow* hostWindow_ = nullptr;  // the embedding host's top-level window, once the strip has minded it
    bool progress_ = false;            // an icon was embedded since the last look
    // GLib sources, 0 for none.
    guint offering_ = 0, renewing_ = 0, overdue_ = 0;
};
