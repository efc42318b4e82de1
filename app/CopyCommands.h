#pragma once
// What the resident copy of the program does for the commands of its user, and what becomes of them.

#include <functional>
#include <optional>
#include <string>

#include "app/Commands.h"

class NoteStore;
class Receiving;

class CopyCommands {
  public:
    // What opens a dialog: find the window that finds notes, with words if there are any; print that of
    // "Drucken...".
    struct Dialogs {
        std::function<void(const std::wstring& words)> find;
        std::function<void()> print;
    };

    // Store and receiving outlive this object, which lives as long as events are handled: dialogs are opened
    // by it after the answer.
    CopyCommands(NoteStore& store, Receiving& receiving, Dialogs dialogs)
        : store_(store), receiving_(receiving), dialogs_(std::move(dialogs)) {}

    // Dialogs that a command opens come as events of their own: its answer does not wait for them.
    CommandAnswer CarryOut(const Command& command);

  private:
    CommandAnswer New(const std::vector<std::wstring>& words);
    CommandAnswer Import(const std::vector<std::wstring>& files);
    void Toggle();

    NoteStore& store_;
    Receiving& receiving_;
    const Dialogs dialogs_;
};

// Takes the file's notes into the saved ones; shows nothing. Nothing when that has succeeded; else they are
// as they were, as far as it is a matter of saving, and the result is the reason, if there is one to be told.
std::optional<std::wstring> WhyNotImported(NoteStore& store, const std::wstring& fileName);
