#pragma once
// A note host that writes down what its notes ask for.

#include <string>
#include <vector>

#include "notes/NoteStore.h"

class NoteRecorder : public NoteHost {
  public:
    void SaveNotes() override { calls.push_back(L"save"); }
    void ApplyForeground() override { calls.push_back(L"apply"); }
    void ForgetMinimizedNote(frmNote&) override { calls.push_back(L"forget"); }
    void ShowPopupMenu(frmNote& note, std::optional<wxPoint> at) override {
        calls.push_back(!at                               ? L"menu"
                        : note.WindowRect().Contains(*at) ? L"menu at the note"
                                                          : L"menu elsewhere");
    }
    void FocusNextNote(frmNote&, bool forward) override { calls.push_back(forward ? L"next" : L"previous"); }
    void PassKeyboardOn(frmNote&) override { calls.push_back(L"pass on"); }
    void EditNote(frmNote&) override { calls.push_back(L"edit"); }
    void FindNotes(frmNote&) override { calls.push_back(L"find"); }
    void BringBackDeleted() override { calls.push_back(L"bring back"); }
    void OpenLink(const std::wstring& address) override { calls.push_back(L"open " + address); }
    bool AddText(const std::wstring& text) override {
        calls.push_back(L"text: " + text);
        return true;
    }
    void ImportFiles(const std::vector<std::wstring>& fileNames) override {
        for (const std::wstring& each : fileNames) calls.push_back(L"file: " + each);
    }

    std::vector<std::wstring> calls;
};

// Takes what the recorder holds and empties it.
inline std::vector<std::wstring> Take(NoteRecorder& recorder) { return std::exchange(recorder.calls, {}); }
