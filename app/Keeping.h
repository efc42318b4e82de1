#pragma once
// What stands between the notes on the screen and the disk: reading them, also later when that is impossible
// for now, repeating saves that failed, the question at the end, and the file for unsaved work when nobody
// can be asked.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/EmergencyFile.h"
#include "app/Trouble.h"
#include "app/Unsaved.h"
#include "notes/basNotes.h"

class NoteStore;
class frmUnsaved;

class Keeping {
  public:
    explicit Keeping(NoteStore& store);

    // Called at once and whenever something else is the matter, or nothing any more.
    void OnTrouble(std::function<void(Trouble trouble)> call);

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
    // Files that could not be imported, and of which nobody has been told, are tried again then.
    void KeepAtOnce(const std::vector<std::wstring>& files);
    // The same when there is no screen any more, from within any call that draws.
    void KeepWithoutDisplay(const std::vector<std::wstring>& files);

  private:
    struct Message {
        std::wstring text, title;
        int flags;
    };

    void Repeat();
    void ReadStore();
    void ShowTrouble();
    void TakeIn(const std::filesystem::path& path);
    std::wstring SaveAll();
    UnsavedImage Image(const std::optional<UnkeptText>& written) const;
    void KeepElsewhere(UnsavedImage image, const std::vector<std::wstring>& files);
    void RemoveTakenIn();
    bool SaveToFile(frmUnsaved& dialog);

    NoteStore& store_;
    Unsaved unsaved_;
    std::function<void(Trouble)> onTrouble_;
    Trouble shown_ = Trouble::None;
    bool loaded_ = false;      // the store holds what is kept, or there was nothing that could be read
    bool unreadable_ = false;  // there was nothing that could be read
    bool takesInLeftWork_ = false;
    bool decided_ = false;  // the user knows what is unsaved and lets the program end all the same
    std::vector<Message> messages_;
    std::size_t added_ = 0;                       // notes of which no message tells yet
    std::vector<std::filesystem::path> takenIn_;  // files whose notes are in the store, but not yet saved
};
