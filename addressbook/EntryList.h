#pragma once
// A list with a check box in front of every row and a heading above every column: GTK's tree view, or the
// list view of Windows. Column 0 has the check box, the columns from 1 have texts. Rows count from 0.

#include <functional>
#include <memory>
#include <string>
#include <vector>

class wxWindow;

class EntryList {
  public:
    // Makes a list in this window, which owns it; what is returned works it and must not outlive the window.
    // headings: of the columns from 1. Room for so many characters in every column and so many lines.
    static std::unique_ptr<EntryList> Create(wxWindow* parent, const std::vector<std::wstring>& headings,
                                             int characters, int lines);
    virtual ~EntryList() = default;

    // The window itself.
    virtual wxWindow& Window() const = 0;

    virtual int Count() const = 0;
    virtual std::wstring Text(int row, int column) const = 0;
    virtual void SetText(int row, int column, const std::wstring& text) = 0;
    // A row at the end, without texts and unchecked.
    virtual void Append() = 0;
    virtual void Delete(int row) = 0;

    virtual bool IsChecked(int row) const = 0;
    virtual void Check(int row, bool on) = 0;

    // Marks a column as the one by which the rows are sorted; it sorts nothing.
    virtual void ShowSorted(int column, bool ascending) = 0;

    // Called when the user has changed a check box; with the column whose heading was clicked, or whose
    // number was pressed with Ctrl.
    std::function<void()> OnCheck;
    std::function<void(int column)> OnHeading;
};
