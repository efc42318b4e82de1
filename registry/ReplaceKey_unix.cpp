#include "registry/ReplaceKey.h"

KeepResult ReplaceKey(const std::wstring& key, const KeyContent& content) {
    RegistryTransaction replacing;
    WriteKey(key, content);
    return replacing.Commit();
}

// The hive's transactions leave nothing to be completed.
KeepResult CompleteKey(const std::wstring&) { return {}; }
