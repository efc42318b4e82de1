#pragma once
// The list of the find window: GTK's tree view, or the list view of Windows. It holds no rows of its own but
// asks for those that come to be seen, so thousands cost no more than a few. Several can be chosen. Rows
// count from 0.

#include <functional>
#include <memory>
#include <string>
#include <vector>

class wxWindow;

class FindList {
  public:
    struct Row {
        std::wstring text, date, color;
        int picture;  // number of a resource, or 0
    };
    using Source = std::function<Row(int row)>;

    // Makes a list in this window, which owns it; what is returned works it and must not outlive the window.
    static std::unique_ptr<FindList> Create(wxWindow* parent, Source source);
    virtual ~FindList() = default;

    // The window itself. Keys that are pressed in it come to it as events like those of any other.
    virtual wxWindow& Window() const = 0;

    // There are so many rows now, with other contents maybe. These are chosen, in rising order; the keyboard
    // stands at the current one, which is brought to sight, -1 for none. OnChoice is not called.
    virtual void Show(int count, const std::vector<int>& chosen, int current) = 0;
    virtual void CallDate(const std::wstring& heading) = 0;

    virtual std::vector<int> Chosen() const = 0;  // in rising order
    virtual int Current() const = 0;

    // Called when the user has chosen others; several times maybe for what he does once.
    std::function<void()> OnChoice;
    // A row was clicked twice.
    std::function<void()> OnDoubleClick;
    // A character was typed while the list has the keyboard.
    std::function<void(wchar_t character)> OnTyped;
};
