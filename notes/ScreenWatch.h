#pragma once
// Tells when screens come, go or change their places, sizes or scale.

#include <functional>
#include <memory>

class ScreenWatch {
  public:
    // Calls `changed` from the event loop, once for changes that come together, while this object lives.
    explicit ScreenWatch(std::function<void()> changed);
    ~ScreenWatch();
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;

  private:
    struct Source;
    std::unique_ptr<Source> source_;
};
