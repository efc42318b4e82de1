#pragma once
// The program's work with what it keeps, without windows: the same calls in the same order as the note store,
// the bin and the import make them. All that was promised to somebody stands in a ledger that outlives the
// process, line by line.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/Note.h"
#include "model/StoredImage.h"
#include "registry/RegistryHealth.h"

// A note by the number of its making and how often it was changed since; all else follows from both.
struct NoteName {
    int number = 0, version = 0;
    auto operator<=>(const NoteName&) const = default;
};
Note NoteOf(NoteName name);
NoteName NameOf(const Note& note);
std::string ToText(NoteName name);

// One state of all that is kept. An address of that number is in it, so that it can be told from all others.
struct Image {
    int number = 0;
    std::vector<NoteName> notes = {};
};
// The number and the notes, whatever their order: the registry's is another one than that of writing.
std::string ToText(const Image& image);
std::vector<Note> NotesOf(const Image& image);
clsAddressBookEntry EntryOf(const Image& image);

// The image that was read, or why it is none that was ever written as it is.
bool ToImage(const StoredImage& stored, Image& image, std::string& why);

class Ledger {
  public:
    // `damaged`: the hive is, and may be taken for it.
    explicit Ledger(int file, bool damaged = false) : file_(file), damaged_(damaged) {}
    // Of an image: "try", and "next" when the next start is to find it in an emergency file. Of its number:
    // "kept". "binned": the note is in the bin. "exported": the export of that number is in the
    // file.
    void Line(const std::string& what, const std::string& text);
    void Line(const std::string& what, int number) { Line(what, std::to_string(number)); }
    void Wrong(const std::string& what) { Line("wrong", what); }
    // What the program says of a damaged hive, if anything.
    void Recovered(const std::optional<RecoveryReport>& report);

    struct Content {
        std::map<int, std::string> tried = {{0, "0"}};  // by number; 0 is the empty one
        int kept = 0;                                   // the number of the last one that was
        int exported = 0;                               // the number of the last export that succeeded
        std::vector<std::string> binned, forNextStart, wrong;
    };
    static Content Read(const std::string& text);

  private:
    int file_;
    bool damaged_;
};

class Program {
  public:
    // The files lie in the folder "kivora" below `data`, which the environment names.
    Program(std::filesystem::path data, Ledger& ledger) : data_(std::move(data)), ledger_(ledger) {}

    // `present` is the image that is kept. False when it cannot be read for now, and somebody is told so.
    bool Start(const std::string& present);

    void Add();
    void Edit();
    void Delete();
    void EditAll();
    void Import(const std::filesystem::path& file);
    void Save();
    // Over what an earlier one wrote.
    void Export();
    // With a new note that is nowhere yet, when nobody can be asked.
    void EndUnsaved();

    bool IsUnsaved() const { return unsaved_; }
    const Image& Present() const { return image_; }

    // Where emergency files go.
    static std::vector<std::filesystem::path> Emergency(const std::filesystem::path& data);
    static std::filesystem::path Bin(const std::filesystem::path& data);
    // What is exported, how often that was done before, and what is in the file then.
    static std::filesystem::path Exported(const std::filesystem::path& data);
    static std::string ExportedBytes(int number);

  private:
    std::filesystem::path data_;
    Ledger& ledger_;
    Image image_;
    int lastNote_ = 0, turn_ = 0, exports_ = 0;
    bool unsaved_ = false;
    std::optional<std::uint64_t> stored_;  // what was saved last
};

// What an import brings, in order; its file is made of them.
std::vector<NoteName> ImportedNotes();
