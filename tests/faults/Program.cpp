#include "tests/faults/Program.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <system_error>

#include "app/EmergencyFile.h"
#include "base/NewFile.h"
#include "exchange/ImportFile.h"
#include "exchange/KeptFile.h"
#include "exchange/NoteFolder.h"
#include "registry/RegistryHive.h"

namespace {

constexpr std::size_t kBinned = 100;
constexpr int kFirstImported = 9000;

Image Sorted(Image image) {
    std::sort(image.notes.begin(), image.notes.end());
    return image;
}

}  // namespace

std::string ToText(NoteName name) { return std::to_string(name.number) + "." + std::to_string(name.version); }

std::string ToText(const Image& image) {
    std::string text = std::to_string(image.number);
    for (const NoteName name : image.notes) text += " " + ToText(name);
    return text;
}

clsAddressBookEntry EntryOf(const Image& image) {
    clsAddressBookEntry entry;
    entry.PCName(L"Stand");
    entry.IP(L"192.0.2.1");
    entry.Comment(std::to_wstring(image.number));
    return entry;
}

std::vector<Note> NotesOf(const Image& image) {
    std::vector<Note> notes;
    for (const NoteName name : image.notes) notes.push_back(NoteOf(name));
    return notes;
}

NoteName NameOf(const Note& note) {
    NoteName name;
    std::swscanf(note.text.c_str(), L"%d.%d", &name.number, &name.version);
    return name;
}

Note NoteOf(NoteName name) {
    const int mix = name.number * 7 + name.version * 13;
    Note note;
    note.text = std::to_wstring(name.number) + L"." + std::to_wstring(name.version) + L" Öl\r\nfür 5 €";
    // Some fill pages of their own, some are short.
    const std::size_t size = mix % 5 == 0 ? 3000 : static_cast<std::size_t>(mix % 300);
    while (note.text.size() < size)
        note.text += static_cast<wchar_t>(L'a' + (note.text.size() * 31 + size) % 26);
    note.creationTime = L"21.11.2026, 13:05:" + std::to_wstring(10 + mix % 50);
    note.look = {.size = 8 + mix % 18,
                 .bold = mix % 2 == 0,
                 .italic = mix % 3 == 0,
                 .underlined = mix % 5 == 0,
                 .alignment = mix % 3,
                 .color = kYellow};
    note.place = {900.0 + 15 * mix, 900, 3000.0 + mix, 2000};
    note.foreground = mix % 7 == 0;
    return note;
}

bool ToImage(const StoredImage& stored, Image& image, std::string& why) {
    image = {};
    for (const StoredNote& each : stored.notes) {
        image.notes.push_back(NameOf(each.note));
        if (each.note == NoteOf(image.notes.back())) continue;
        why = "a note is not as it was written: " + ToText(image.notes.back());
        return false;
    }
    image = Sorted(image);  // the registry's order is another one than that of writing
    if (stored.entries.empty() && image.notes.empty()) return true;
    if (stored.entries.size() == 1)
        image.number = static_cast<int>(std::wcstol(stored.entries[0].Comment().c_str(), nullptr, 10));
    if (image.number > 0) return true;
    why = "the address that tells the number is missing";
    return false;
}

void Ledger::Line(const std::string& text) {
    std::string line = text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += "\n";
    (void)!write(file_, line.data(), line.size());
}
void Ledger::Trying(const Image& image) { Line("try " + ToText(image)); }
void Ledger::Kept(int image) { Line("kept " + std::to_string(image)); }
void Ledger::Refused(int image, const std::string& why) {
    Line("refused " + std::to_string(image) + " " + why);
}
void Ledger::Binned(NoteName note) { Line("binned " + ToText(note)); }
void Ledger::KeptForNextStart(const Image& image) { Line("next " + ToText(image)); }
void Ledger::Exported(int number) { Line("exported " + std::to_string(number)); }
void Ledger::Told(const std::string& what) { Line("told " + what); }
void Ledger::Wrong(const std::string& what) { Line("wrong " + what); }

void Ledger::Recovered(const std::optional<RecoveryReport>& report) {
    if (!report) return;
    if (damaged_)
        Told("recovered: " + report->detail);
    else
        Wrong("taken for damaged: " + report->detail);
}

Ledger::Content Ledger::Read(int file) {
    std::string all;
    char bytes[4096];
    lseek(file, 0, SEEK_SET);
    for (ssize_t got; (got = read(file, bytes, sizeof bytes)) > 0;) all.append(bytes, std::size_t(got));
    Content content;
    content.tried[0] = {};
    std::istringstream lines(all);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string what;
        words >> what;
        const std::string rest = line.substr(std::min(line.size(), what.size() + 1));
        const auto name = [&](NoteName& to) {
            char dot;
            return static_cast<bool>(words >> to.number >> dot >> to.version);
        };
        int number = 0;
        NoteName note;
        if (what == "try" || what == "next") {
            words >> number;
            Image& image = what == "try" ? content.tried[number] : content.forNextStart.emplace_back();
            image.number = number;
            while (name(note)) image.notes.push_back(note);
            image = Sorted(image);
        } else if (what == "kept") {
            words >> content.kept;
            if (content.first == 0) content.first = content.kept;
        } else if (what == "exported") {
            words >> content.exported;
        } else if (what == "refused") {
            words >> number;
            content.refused.push_back(number);
            content.told.push_back(rest);
        } else if (what == "binned" && name(note)) {
            content.binned.push_back(note);
        } else {
            (what == "told" ? content.told : content.wrong).push_back(rest);
        }
    }
    return content;
}

bool Program::Start(const Image& present) {
    StoredImage stored = ReadStoredImage();
    const RegistryHealth health = HealthOfRegistry();
    ledger_.Recovered(TakeRecoveryReport());
    if (!health.writing.Kept()) ledger_.Told("start: " + health.writing.detail);
    if (!health.reading.Kept()) {
        ledger_.Told("start: " + health.reading.detail);
        return false;
    }
    std::string why;
    Image image;
    if (!ToImage(stored, image, why))
        ledger_.Wrong("start: " + why);
    else if (image != Sorted(present))
        ledger_.Wrong("start: there is " + ToText(image) + ", to be expected was " + ToText(present));
    return Take(present);
}

bool Program::TryStartAgain(const Image& present) {
    const KeepResult result = ReadRegistryAgain();
    if (!result.Kept()) ledger_.Told("start again: " + result.detail);
    return result.Kept() && Start(present);
}

bool Program::Take(const Image& present) {
    image_ = present;
    for (const NoteName name : image_.notes)
        if (name.number < kFirstImported) lastNote_ = std::max(lastNote_, name.number);
    turn_ = image_.number;
    return true;
}

void Program::Save() {
    ++image_.number;
    const std::vector<Note> notes = NotesOf(image_);
    std::vector<const Note*> all;
    for (const Note& note : notes) all.push_back(&note);
    ledger_.Trying(image_);
    const KeepResult result = WriteStoredImage(false, all, {EntryOf(image_)});
    unsaved_ = !result.Kept();
    if (result.Kept()) {
        stored_ = DigestOf(false, all, {EntryOf(image_)}, Digested::AsRead);
        ledger_.Kept(image_.number);
    } else {
        ledger_.Refused(image_.number, result.detail);
    }
    if (unsaved_ && result.detail.empty()) ledger_.Wrong("a save failed without a reason");
    ledger_.Recovered(TakeRecoveryReport());
}

void Program::Add() {
    image_.notes.push_back({++lastNote_, 0});
    Save();
}

void Program::Edit() {
    if (image_.notes.empty()) return;
    ++image_.notes[static_cast<std::size_t>(++turn_) % image_.notes.size()].version;
    Save();
}

void Program::EditAll() {
    for (NoteName& name : image_.notes) ++name.version;
    Save();
}

void Program::Delete() {
    if (image_.notes.empty()) return;
    const auto note = image_.notes.begin() + static_cast<std::ptrdiff_t>(image_.notes.size() / 2);
    try {
        NoteFolder(Bin(data_), kBinned).Keep(NoteOf(*note));
        ledger_.Binned(*note);
    } catch (const std::system_error& failed) {
        ledger_.Told(std::string("bin: ") + failed.what());
    }
    image_.notes.erase(note);
    Save();
}

void Program::Import(const std::filesystem::path& file) {
    const ReadNotes read = ReadNotesOf(file, kMostImportedNotes, [](std::size_t) { return true; });
    if (!read.complete) ledger_.Told("import: incomplete");
    std::vector<NoteName> names;
    for (const Note& note : read.notes) {
        names.push_back(NameOf(note));
        if (note != NoteOf(names.back())) ledger_.Wrong("a note was imported that is in no file");
    }
    if (read.complete && names != ImportedNotes()) ledger_.Wrong("an import lacks notes, and nobody is told");
    for (NoteName& name : names) name.version += 1;  // that they can be told from those in the file
    image_.notes.insert(image_.notes.end(), names.begin(), names.end());
    Save();
}

void Program::KeepStateAside() {
    const KeepResult result = KeepState();
    if (!result.Kept()) ledger_.Told("state: " + result.detail);
}

void Program::Export() {
    const std::error_code failed = SaveFile(Exported(data_), ExportedBytes(++exports_));
    if (failed)
        ledger_.Told("export: " + failed.message());
    else
        ledger_.Exported(exports_);
}

void Program::Quit() { Hive().Close(); }

void Program::EndUnsaved() {
    image_.notes.push_back({++lastNote_, 0});
    ++image_.number;
    const UnsavedImage unsaved{false, NotesOf(image_), {EntryOf(image_)}, stored_};
    const KeepResult result = WriteEmergencyFile(unsaved, Emergency(data_));
    if (result.Kept())
        ledger_.KeptForNextStart(image_);
    else
        ledger_.Told("emergency: " + result.detail);
}

std::vector<std::filesystem::path> Program::Emergency(const std::filesystem::path& data) {
    return {data / "run" / "kivora", data / "tmp-kivora"};
}

std::filesystem::path Program::Bin(const std::filesystem::path& data) {
    return data / "kivora" / "papierkorb";
}

std::filesystem::path Program::Exported(const std::filesystem::path& data) { return data / "export.kvr"; }

std::string Program::ExportedBytes(int number) {
    return KeptFileBytes({NoteOf({number, 0}), NoteOf({number, 1})});
}

std::vector<NoteName> ImportedNotes() {
    std::vector<NoteName> names;
    for (int i = 0; i < 4; ++i) names.push_back({kFirstImported + i, 0});
    return names;
}
