#pragma once
// A folder in which notes are kept exactly, one file a note (KeptFile.h), from which the ordinary import
// reads them. The names begin with the time, so that they sort by it, and go on with the beginning of the
// text: "2026-11-21 13.05.07.123 Milch und Brot.kvr".

#include <chrono>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

#include "model/Note.h"

class NoteFolder {
  public:
    static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

    // Keeps the newest `most` notes. The folder need not exist.
    explicit NoteFolder(std::filesystem::path folder, std::size_t most = kUnlimited)
        : folder_(std::move(folder)), most_(most) {}

    // Returns when the note is on the disk; removes what is too many then. A note without text is not kept,
    // there is nothing of it that anybody would miss. Throws std::system_error when it cannot be written;
    // then the folder is as it was.
    void Keep(const Note& note,
              std::chrono::system_clock::time_point now = std::chrono::system_clock::now()) const;

    // The same for notes that go into one file, which then counts as one note.
    void KeepTogether(const std::vector<Note>& notes,
                      std::chrono::system_clock::time_point now = std::chrono::system_clock::now()) const;

    // True when a note with this text and creation time is kept already.
    bool Holds(const Note& note) const;

    // What is kept in one file.
    struct File {
        std::wstring name;
        std::vector<Note> notes;  // empty when the file cannot be read
    };
    // All of them, the one kept last first; none when there is no folder. Throws std::system_error when it
    // cannot be looked through.
    std::vector<File> Files() const;
    // Notes of one file only; nothing when it has gone.
    std::vector<Note> NotesOf(const std::wstring& name) const;

    // Takes notes out of a file, each once; what else it holds stays. A file in which nothing is left goes.
    // After a failure it is as it was.
    std::error_code TakeOut(const std::wstring& name, const std::vector<Note>& notes) const;

    // When a file of this name was kept: "21.11.2026, 13:05:07".
    static std::wstring KeptWhen(const std::wstring& name);

  private:
    // As NotesOf. failed: why it may be only a part of them.
    std::vector<Note> Read(const std::wstring& name, std::error_code& failed) const;

    std::filesystem::path folder_;
    std::size_t most_;
};
