#pragma once
// What stands between the notes on the screen and the disk: reading them, also later when that is impossible
// for now, repeating saves that failed, the question at the end, and the file for unsaved work when nobody
// can be asked.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/Unsaved.h"
#include "model/Note.h"

class NoteStore;
class frmUnsaved;

class Keeping {
  public:
    explicit Keeping(NoteStore& store);

    // Called when there begins to be unsaved work, and when it is saved.
    void OnChange(std::function<void(bool unsaved)> call) { unsaved_.OnChange = std::move(call); }

    // Called, if set, when what could not be read at the start has been read.
    std::function<void()> OnReadLate;

    // Reads what is kept.
    void Load();
    // Takes in what an earlier run could not save. When nothing could be read for now, it goes on trying.
    void TakeInLeftWork();
    // Tells what there is to tell of both, in boxes that nobody waits for, or one after the other.
    enum class Boxes { Unwaited, Waited };
    void Tell(Boxes boxes);

    // Saves before the program ends. Where that fails the user is asked; false when the program is to stay.
    bool MayQuit();
    // The same where nobody can be asked: what cannot be saved goes into a file that the next start takes in.
    void KeepAtOnce();
    // The same when there is no screen any more, from within any call that draws.
    void KeepWithoutDisplay();

  private:
    struct Message {
        std::wstring text, title;
        int flags;
    };

    bool Repeat();
    void ReadStore();
    void KeepElsewhere(const std::optional<Note>& written);
    void RemoveTakenIn();
    bool SaveToFile(frmUnsaved& dialog);

    NoteStore& store_;
    Unsaved unsaved_;
    bool loaded_ = false;  // the store holds what is kept, or there was nothing that could be read
    bool takesInLeftWork_ = false;
    bool decided_ = false;  // the user knows what is unsaved and lets the program end all the same
    std::vector<Message> messages_;
    std::vector<std::filesystem::path> takenIn_;  // files whose notes are in the store, but not yet saved
};
