#pragma once
// Icons on a session bus of the test's own. Brings Xlib's macros along, so it is included last.

#include "tests/tray/TestDesktop_unix.h"
#include "tests/tray/TrayDisplay_unix.h"

inline std::string Printed(const Variant& variant) {
    if (!variant) return "error";
    char* text = g_variant_print(variant.get(), FALSE);
    const std::string printed = text;
    g_free(text);
    return printed;
}

class BusFixture : public TrayFixture {
  protected:
    // So many icons and no other stand on the bus, and nowhere else.
    bool OnlyOnTheBus(const TestDesktop& desktop, std::size_t count) {
        return RunUntil([&] { return desktop.Items().size() == count && !Strip() && Embedded().empty(); });
    }

    // The name of the only icon, once it stands on the bus.
    std::string OnlyItem(const TestDesktop& desktop) {
        EXPECT_TRUE(OnlyOnTheBus(desktop, 1));
        return desktop.Items().empty() ? std::string() : desktop.Items().front();
    }

    TestBus bus_;
};
