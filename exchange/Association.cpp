#include "exchange/Association.h"

#include "base/FileName.h"
#include "registry/clsRegistry.h"

// No quotation marks: whoever reads the command line finds the file behind the slash.
std::vector<AssociationEntry> AssociationEntries(const std::wstring& program) {
    return {
        {L".kvr", L"Kivora.Export"},
        {L"Kivora.Export", L"Exportierte Kivora-Notizen"},
        {L"Kivora.Export\\DefaultIcon", program + L",0"},
        {L"Kivora.Export\\shell", L"open"},
        {L"Kivora.Export\\shell\\open", L"Notizen importieren"},
        {L"Kivora.Export\\shell\\open\\command", program + L" /%1"},
        {L"Kivora.Export\\shell\\print", L"Notizen drucken..."},
        {L"Kivora.Export\\shell\\print\\command", program + L" /[print] /%1"},
    };
}

bool RegisterFileExtensions() {
    bool changed = false;
    {
        RegistryTransaction together;
        for (const AssociationEntry& entry : AssociationEntries(RegisteredProgram())) {
            const std::wstring key = std::wstring(L"HKCR\\") + entry.key, value = key + L"\\";
            changed = changed || AsText(Registry().GetValue(value, REG_TYPE_SZ)) != entry.value;
            Registry().CreateKey(key);
            Registry().SetValue(value, REG_TYPE_SZ, entry.value);
        }
        together.Commit();
    }
    RegisterWithDesktop(changed);
    return true;
}
