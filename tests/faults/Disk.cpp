#include "tests/faults/Disk.h"

#include <fcntl.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <utility>

#include "tests/support/Files.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kSector = 512;

}  // namespace

Disk::Disk(fs::path folder) : folder_(std::move(folder)) {
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
        auto& file = names_[entry.path().string()];
        if (entry.is_directory()) continue;
        file = std::make_shared<File>();
        file->synced = Content(entry.path());
    }
    synced_ = names_;
}

void Disk::Change_(std::string& bytes, const Change& change) {
    const auto at = static_cast<std::size_t>(change.at);
    if (change.truncates) {
        bytes.resize(at);
    } else {
        if (bytes.size() < at + change.bytes.size()) bytes.resize(at + change.bytes.size());
        bytes.replace(at, change.bytes.size(), change.bytes);
    }
}

void Disk::Rename(Names& names, const Naming& naming) {
    if (!naming.taken.empty()) names.erase(naming.taken);
    if (!naming.given.empty()) names[naming.given] = naming.file;
}

void Disk::Name(Naming naming) {
    Rename(names_, naming);
    since_.push_back(std::move(naming));
}

void Disk::Apply(const FileCall& call) {
    if (!call.succeeded && call.kind != CallKind::Write) return;
    const auto named = names_.find(call.path);
    switch (call.kind) {
        case CallKind::Open:
            paths_[call.file] = call.path;
            if (named == names_.end() && (call.flags & O_CREAT))
                Name({{}, call.path, std::make_shared<File>()});
            opened_[call.file] = names_.contains(call.path) ? names_[call.path] : nullptr;
            if (opened_[call.file] && (call.flags & O_TRUNC))
                opened_[call.file]->since.push_back({true, 0, {}});
            break;
        case CallKind::Write:
        case CallKind::Truncate:
            if (opened_[call.file])
                opened_[call.file]->since.push_back(
                    {call.kind == CallKind::Truncate, call.offset, call.bytes});
            break;
        case CallKind::Sync:
            if (File* const file = opened_[call.file].get()) {
                for (const Change& change : file->since) Change_(file->synced, change);
                file->since.clear();
            } else {
                const std::string& folder = paths_[call.file];
                for (const Naming& naming : since_)
                    if (naming.Folder() == folder) Rename(synced_, naming);
                std::erase_if(since_, [&](const Naming& naming) { return naming.Folder() == folder; });
            }
            break;
        case CallKind::Rename:
        case CallKind::Link:
            if (named == names_.end()) break;
            Name({call.kind == CallKind::Rename ? call.path : "", call.target, named->second});
            break;
        case CallKind::Remove:
            Name({call.path, {}, nullptr});
            break;
        case CallKind::MakeFolder:
            Name({{}, call.path, nullptr});
            break;
        default:
            break;
    }
}

void Disk::PowerCut(const fs::path& into, std::uint32_t seed) const {
    std::mt19937 random(seed);
    const auto lucky = [&] { return seed != 0 && random() % 2 == 0; };

    Names names = synced_;
    std::map<std::string, bool> ended;  // folders whose further changes did not come to the disk
    for (const Naming& naming : since_) {
        bool& end = ended[naming.Folder()];
        end = end || seed == 0 || random() % 4 == 0;
        if (!end) Rename(names, naming);
    }
    fs::create_directories(into);
    for (const auto& [path, file] : names) {
        const fs::path place = into / fs::path(path).lexically_relative(folder_);
        if (!fs::exists(place.parent_path())) continue;  // lost with its folder
        if (!file) {
            fs::create_directory(place);
            fs::permissions(place, fs::perms::owner_all);
            continue;
        }
        std::string bytes = file->synced;
        for (const Change& change : file->since) {
            if (change.truncates) {
                if (lucky()) Change_(bytes, change);
                continue;
            }
            for (std::size_t begin = 0; begin < change.bytes.size();) {
                const std::size_t at = static_cast<std::size_t>(change.at) + begin;
                const std::size_t size = std::min(kSector - at % kSector, change.bytes.size() - begin);
                if (lucky())
                    Change_(bytes, {false, static_cast<std::int64_t>(at), change.bytes.substr(begin, size)});
                begin += size;
            }
        }
        std::ofstream(place, std::ios::binary) << bytes;
        fs::permissions(place, fs::perms::owner_read | fs::perms::owner_write);
    }
}
