#pragma once
// Reading a hive file without SQLite: page by page, row by row, also when parts of it are damaged, and
// without touching it, its log or its locks.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "registry/HiveImage.h"

struct FoundRows {
    struct Key {
        std::int64_t parent = 0;
        std::string name;
    };
    std::map<std::int64_t, Key> keys;
    std::map<std::int64_t, std::map<std::string, HiveValue>> values;  // by key, then by name
    std::map<std::int64_t, std::uint64_t> checksums;
    bool whole = false;     // no page is damaged as far as a reader can tell
    bool readable = false;  // the disk gave all bytes; else what it gave is there

    std::unique_ptr<HiveImage> Image() const;
};

// What is in the file and in its log. Nothing is found in a file that is no database or cannot be read.
FoundRows ReadPages(const std::filesystem::path& file);
