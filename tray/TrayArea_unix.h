#pragma once
// The notification area as the desktop has it at the moment. While a host owns the tray selection, icons are
// offered to it, a few at a time so that a thousand of them stall nothing; what no host takes stands in the
// strip. Hosts may come and go at any time.

#include <glib.h>

#include <map>

#include "tray/TrayIcon_unix.h"

// An icon as the area sees it.
class HostedIcon {
  public:
    virtual void OfferToHost() = 0;
    virtual void TakeBack() = 0;
    virtual bool Embedded() const = 0;  // the host has taken it
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
    // The icon stays the caller's and is removed before it dies.
    void Add(HostedIcon& hosted);
    void Remove(HostedIcon& hosted);
    // To be called when a host has taken the icon or let go of it.
    void EmbeddingChanged(const HostedIcon& hosted);

  private:
    TrayArea();
    void OnHostChanged();
    void OfferLater();
    bool OfferSome();
    void Await(const HostedIcon& hosted);
    void NoLongerAwaited(const HostedIcon& hosted);
    bool OnOverdue();

    std::map<unsigned long, HostedIcon*> icons_;
    std::map<unsigned long, const HostedIcon*> awaited_;  // offered, not embedded, not in the strip either
    unsigned long lastNumber_ = 0;
    unsigned long lastOffered_ = 0;  // the host has been offered the icons up to this number
    int offered_ = 0;
    bool hostExists_ = false;
    bool progress_ = false;  // an icon was embedded since the last look
    guint offering_ = 0;
    guint overdue_ = 0;
};
