#pragma once
// A hive of a test's own, and what a save of the whole store writes into it.

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "registry/RegistryHive.h"
#include "registry/clsRegistry.h"

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

  private:
    std::string before_;
    std::filesystem::path data_;
};

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
