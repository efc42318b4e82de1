#pragma once
// A session bus that only this test knows, and a desktop on it that shows icons: a watcher with a host, which
// does what the test says. The icons live in this process, too, so calls to them let events run.

#include <gio/gio.h>
#include <sys/types.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

class TestBus {
  public:
    TestBus();   // starts the bus and names it in the environment
    ~TestBus();  // ends it; the environment names none then
    TestBus(const TestBus&) = delete;
    TestBus& operator=(const TestBus&) = delete;
    bool Started() const { return !address_.empty(); }
    const std::string& Address() const { return address_; }

  private:
    std::FILE* output_ = nullptr;
    pid_t pid_ = 0;
    std::string folder_, address_;
};

class TestDesktop {
  public:
    // Connects and is the watcher. host: whether a host is there from the beginning.
    TestDesktop(const TestBus& bus, bool host);
    ~TestDesktop();  // leaves the bus
    TestDesktop(const TestDesktop&) = delete;
    TestDesktop& operator=(const TestDesktop&) = delete;

    void SetHost(bool exists);
    bool refuses = false;                                // answers every icon with an error
    bool silent = false;                                 // answers nothing
    bool Asked() const { return !unanswered_.empty(); }  // and has not answered yet
    void AnswerNow();                                    // what was left unanswered, and from now on

    // The names of the icons that are there, in the order in which they came.
    const std::vector<std::string>& Items() const { return items_; }
    const std::vector<std::string>& Refused() const { return refused_; }

    // What an object answers; null for an error, also when there is no such object.
    Variant Call(const std::string& item, const char* path, const char* interface, const char* method,
                 GVariant* parameters);
    // A method of an icon that takes a place.
    bool Tell(const std::string& item, const char* method);
    Variant Property(const std::string& item, const char* name);
    // A method of an icon's menu.
    Variant Menu(const std::string& item, const char* method, GVariant* parameters);

    // The signals of icons and menus since the last look, as names that end in blanks.
    std::string TakeSignals();

  private:
    void OnCall(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation);

    GDBusConnection* connection_ = nullptr;
    bool host_;
    std::vector<std::string> items_, refused_;
    std::vector<GDBusMethodInvocation*> unanswered_;
    std::string signals_;
    guint object_ = 0;
    std::vector<guint> subscriptions_;
};
