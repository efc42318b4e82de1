#pragma once
// Looks up the addresses of a network name while the program goes on with its events: for the address book,
// which checks what is typed, and for the sockets, which connect. One object is one look-up; destroying it
// abandons the look-up, also from within its answer. Called, and answered, in the thread of the user
// interface.

#include <functional>
#include <memory>
#include <string>
#include <vector>

class NameLookup {
  public:
    // addresses: dotted ("192.168.0.7"), none when the name has none.
    using Answer = std::function<void(const std::vector<std::wstring>& addresses)>;

    // Blanks around the name do not count. A dotted address is its own. The answer never comes before the
    // constructor has returned.
    NameLookup(const std::wstring& name, Answer answer);
    ~NameLookup();
    NameLookup(const NameLookup&) = delete;
    NameLookup& operator=(const NameLookup&) = delete;

  private:
    struct Running;
    static std::shared_ptr<Running> Start(const std::wstring& trimmedName, Answer answer);

    std::shared_ptr<Running> running_;
};

// The first address, for those who wait for it; runs events meanwhile. Also ends, with an empty text, when
// the program quits or abandoned() holds, which is looked at when something wakes the waiting.
std::wstring ResolveHostAddress(const std::wstring& name, const std::function<bool()>& abandoned = {});
