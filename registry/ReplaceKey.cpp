#include "registry/ReplaceKey.h"

void WriteKey(const std::wstring& key, const KeyContent& content) {
    Registry().DeleteKey(key);
    WriteValues(key, content);
}

void WriteValues(const std::wstring& key, const KeyContent& content) {
    for (const auto& [path, value] : content) {
        if (const auto* text = std::get_if<std::wstring>(&value))
            Registry().SetValue(key + path, REG_TYPE_SZ, *text);
        else
            Registry().SetValue(key + path, REG_TYPE_DWORD, AsNumber(value));
    }
}
