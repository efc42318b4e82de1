#include "model/ReceiveSetting.h"

#include <string>

#include "registry/RegistryHealth.h"
#include "registry/SettingsKey.h"
#include "registry/clsRegistry.h"

const wchar_t* WordOf(ReceiveFrom from) {
    switch (from) {
        case ReceiveFrom::All:
            return L"all";
        case ReceiveFrom::Known:
            return L"known";
        case ReceiveFrom::None:
            break;
    }
    return L"none";
}

std::optional<ReceiveFrom> ReceiveFromOf(std::wstring_view word) {
    for (const ReceiveFrom from : {ReceiveFrom::All, ReceiveFrom::Known, ReceiveFrom::None})
        if (word == WordOf(from)) return from;
    return std::nullopt;
}

ReceiveFrom ReadReceiveFrom() {
    if (!HealthOfRegistry().reading.Kept()) return ReceiveFrom::None;
    const std::wstring word = AsText(Registry().GetValue(kReceiveValue, REG_TYPE_SZ));
    return word.empty() ? ReceiveFrom::All : ReceiveFromOf(word).value_or(ReceiveFrom::None);
}

KeepResult WriteReceiveFrom(ReceiveFrom from) {
    RegistryTransaction writing;
    Registry().SetValue(kReceiveValue, REG_TYPE_SZ, WordOf(from));
    return writing.Commit();
}
