#include "tests/faults/Program.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>
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

}  // namespace

std::string ToText(NoteName name) { return std::to_string(name.number) + "." + std::to_string(name.version); }

std::string ToText(const Image& image) {
    std::string text = std::to_string(image.number);
    for (const NoteName name : std::multiset(image.notes.begin(), image.notes.end()))
        text += " " + ToText(name);
    return text;
}

clsAddressBookEntry EntryOf(const Image& image) {
    return {L"Stand", L"192.0.2.1", std::to_wstring(image.number)};
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
    if (stored.entries.empty() && image.notes.empty()) return true;
    if (stored.entries.size() == 1)
        image.number = static_cast<int>(std::wcstol(stored.entries[0].Comment().c_str(), nullptr, 10));
    if (image.number > 0) return true;
    why = "the address that tells the number is missing";
    return false;
}

void Ledger::Line(const std::string& what, const std::string& text) {
    std::string line = what + " " + text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    (void)!write(file_, line.data(), line.size());
}

void Ledger::Recovered(const std::optional<RecoveryReport>& report) {
    if (report && !damaged_) Wrong("taken for damaged: " + report->detail);
}

Ledger::Content Ledger::Read(const std::string& text) {
    Content content;
    std::istringstream lines(text);
    for (std::string what, line; lines >> what && std::getline(lines >> std::ws, line);) {
        const int number = std::atoi(line.c_str());
        if (what == "try") content.tried[number] = line;
        if (what == "next") content.forNextStart.push_back(line);
        if (what == "kept") content.kept = number;
        if (what == "exported") content.exported = number;
        if (what == "binned") content.binned.push_back(line);
        if (what == "wrong") content.wrong.push_back(line);
    }
    return content;
}

bool Program::Start(const std::string& present) {
    StoredImage stored = ReadStoredImage();
    const RegistryHealth health = HealthOfRegistry();
    ledger_.Recovered(TakeRecoveryReport());
    if (!health.reading.Kept()) return false;
    std::string why;
    if (!ToImage(stored, image_, why))
        ledger_.Wrong("start: " + why);
    else if (ToText(image_) != present)
        ledger_.Wrong("start: there is " + ToText(image_) + ", to be expected was " + present);
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
    ledger_.Line("try", ToText(image_));
    const KeepResult result = WriteStoredImage(false, all, {EntryOf(image_)});
    unsaved_ = !result.Kept();
    if (result.Kept()) {
        stored_ = DigestOf(false, all, {EntryOf(image_)}, Digested::AsRead);
        ledger_.Line("kept", image_.number);
    } else if (result.detail.empty()) {
        ledger_.Wrong("a save failed without a reason");
    }
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
        ledger_.Line("binned", ToText(*note));
    } catch (const std::system_error&) {
        // Nothing is promised.
    }
    image_.notes.erase(note);
    Save();
}

void Program::Import(const std::filesystem::path& file) {
    const ReadNotes read = ReadNotesOf(file, kMostImportedNotes, [](std::size_t) { return true; });
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

void Program::Export() {
    if (!SaveFile(Exported(data_), ExportedBytes(++exports_))) ledger_.Line("exported", exports_);
}

void Program::EndUnsaved() {
    image_.notes.push_back({++lastNote_, 0});
    ++image_.number;
    const UnsavedImage unsaved{false, NotesOf(image_), {EntryOf(image_)}, stored_};
    if (WriteEmergencyFile(unsaved, Emergency(data_)).Kept()) ledger_.Line("next", ToText(image_));
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
