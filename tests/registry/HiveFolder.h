#pragma once
// A hive of a test's own, and what a save of the whole store writes into it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "registry/RegistryHive.h"
#include "registry/clsRegistry.h"
#include "tests/support/Files.h"

// While it lives, the hive lies in an empty folder.
class HiveFolder {
  public:
    HiveFolder() : before_(getenv("XDG_DATA_HOME")) {
        Hive().Close();
        std::string name = (std::filesystem::temp_directory_path() / "kivora-hive-XXXXXX").string();
        data_ = mkdtemp(name.data());
        setenv("XDG_DATA_HOME", data_.c_str(), 1);
    }
    ~HiveFolder() {
        Hive().Close();
        setenv("XDG_DATA_HOME", before_.c_str(), 1);
        std::error_code ignored;
        std::filesystem::remove_all(data_, ignored);
    }
    HiveFolder(const HiveFolder&) = delete;
    HiveFolder& operator=(const HiveFolder&) = delete;

    std::filesystem::path Folder() const { return data_ / "kivora"; }
    std::filesystem::path File() const { return Folder() / "registry.sqlite"; }

    // Executes SQL in the file as any other program would; the first column of the first row as text.
    std::string Sql(const std::string& text) const {
        sqlite3* db = nullptr;
        std::string result;
        sqlite3_open(File().c_str(), &db);
        sqlite3_busy_timeout(db, 10'000);
        const auto keep = [](void* to, int, char** values, char**) {
            auto& first = *static_cast<std::string*>(to);
            if (first.empty() && values[0]) first = values[0];
            return 0;
        };
        char* error = nullptr;
        if (sqlite3_exec(db, text.c_str(), keep, &result, &error) != SQLITE_OK)
            result = std::string("error: ") + error;
        sqlite3_free(error);
        sqlite3_close(db);
        return result;
    }

    // Executes SQL and keeps the connection, until it is called with null.
    void Hold(const char* sql) const {
        if (sql) {
            sqlite3_open(File().c_str(), &held_);
            EXPECT_EQ(sqlite3_exec(held_, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        } else {
            sqlite3_close(held_);
        }
    }
    // As another process does that opens the hive.
    void HoldLock(bool hold) const {
        if (hold) {
            lock_ = open((File().string() + ".lock").c_str(), O_RDWR | O_CREAT, 0600);
            EXPECT_EQ(flock(lock_, LOCK_EX | LOCK_NB), 0);
        } else {
            close(lock_);
        }
    }

  private:
    std::string before_;
    std::filesystem::path data_;
    mutable sqlite3* held_ = nullptr;
    mutable int lock_ = -1;
};

// The files beside the hive whose names go on so.
inline std::vector<std::filesystem::path> FilesOf(const HiveFolder& hive, const std::string& end) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(hive.Folder()))
        if (entry.path().string().starts_with(hive.File().string() + end)) files.push_back(entry.path());
    return files;
}
inline std::vector<std::filesystem::path> Defective(const HiveFolder& hive) {
    return FilesOf(hive, ".defekt-");
}

inline const std::wstring kStore = L"HKLM\\Software\\Kivora\\1.5\\";

// Rewrites everything as the program does: `notes` notes whose numbers and texts all tell `mark`.
inline KeepResult SaveImage(int notes, int mark) {
    RegistryTransaction image;
    clsRegistry& registry = Registry();
    registry.DeleteKey(kStore);
    registry.SetValue(kStore + L"Autostart", REG_TYPE_DWORD, mark);
    for (int i = 0; i < notes; ++i) {
        const std::wstring note = kStore + L"Note" + std::to_wstring(i) + L"\\";
        registry.SetValue(note + L"X", REG_TYPE_DWORD, mark);
        registry.SetValue(note + L"Text", REG_TYPE_SZ,
                          std::to_wstring(mark) + L" " + std::wstring(300, L'ä'));
    }
    return image.Commit();
}

// The mark of the image, or -1 when it is not one save's.
inline int MarkOfImage(int notes) {
    const RegistryTransaction image;
    clsRegistry& registry = Registry();
    const int mark = AsNumber(registry.GetValue(kStore + L"Autostart", REG_TYPE_DWORD));
    std::vector<std::wstring> names;
    if (registry.EnumKeys(kStore, names) != notes) return -1;
    for (const std::wstring& name : names) {
        const std::wstring text = AsText(registry.GetValue(kStore + name + L"\\Text", REG_TYPE_SZ));
        if (AsNumber(registry.GetValue(kStore + name + L"\\X", REG_TYPE_DWORD)) != mark ||
            text != std::to_wstring(mark) + L" " + std::wstring(300, L'ä'))
            return -1;
    }
    return mark;
}
