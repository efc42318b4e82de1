#pragma once
// A hive of a test's own, and what a save of the whole store writes into it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "registry/HiveDatabase.h"
#include "registry/RegistryHive.h"
#include "registry/clsRegistry.h"
#include "tests/support/Files.h"

// While it lives, the hive lies in an empty folder.
class HiveFolder {
  public:
    HiveFolder() : before_(getenv("XDG_DATA_HOME")) {
        Hive().Close();
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

    // Executes SQL in the file as any other program would; what it selects, the first column of the first
    // row.
    std::string Sql(const std::string& text) const {
        HiveDatabase other;
        EXPECT_TRUE(other.Open(File()).Kept());
        std::string first;
        const bool asks = text.starts_with("SELECT") || text.starts_with("PRAGMA");
        const KeepResult result = asks ? other.Ask(text.c_str(), first) : other.Execute(text.c_str());
        EXPECT_TRUE(result.Kept()) << text << ": " << result.detail;
        return first;
    }

    // Executes SQL and keeps the connection, until it is called with null.
    void Hold(const char* sql) const {
        held_.Close();
        EXPECT_TRUE(!sql || (held_.Open(File()).Kept() && held_.Execute(sql).Kept()));
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
    const std::filesystem::path data_ = std::filesystem::temp_directory_path() / "hive";
    mutable HiveDatabase held_;
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
