#include "exchange/Association.h"

#include "registry/clsRegistry.h"

bool RegisterFileExtensions() {
    const std::wstring program = RegisteredProgram();
    // No quotation marks: whoever reads the command line finds the file behind the slash.
    const struct {
        const wchar_t* key;
        std::wstring value;
    } entries[] = {
        {L".kvr", L"Kivora.Export"},
        {L"Kivora.Export", L"Exportierte Kivora-Notizen"},
        {L"Kivora.Export\\DefaultIcon", program + L",0"},
        {L"Kivora.Export\\shell", L"open"},
        {L"Kivora.Export\\shell\\open", L"Notizen importieren"},
        {L"Kivora.Export\\shell\\open\\command", program + L" /%1"},
        {L"Kivora.Export\\shell\\print", L"Notizen drucken..."},
        {L"Kivora.Export\\shell\\print\\command", program + L" /[print] /%1"},
    };
    {
        RegistryTransaction together;
        for (const auto& entry : entries) {
            const std::wstring key = std::wstring(L"HKCR\\") + entry.key;
            Registry().CreateKey(key);
            Registry().SetValue(key + L"\\", REG_TYPE_SZ, entry.value);
        }
        together.Commit();
    }
    RegisterWithDesktop();
    return true;
}
