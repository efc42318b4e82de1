#include <gtest/gtest.h>

#include "base/FileName.h"
#include "exchange/Association.h"
#include "registry/clsRegistry.h"

namespace {

TEST(Association, EntersTheFileTypeInTheRegistry) {
    Registry().DeleteKey(L"HKCR\\Kivora.Export");
    Registry().SetValue(L"HKCR\\.kvr\\", REG_TYPE_SZ, L"anderes Programm");
    EXPECT_TRUE(RegisterFileExtensions());
    const std::wstring program = ProgramPath();
    const std::wstring rows[][2] = {
        {L".kvr", L"Kivora.Export"},
        {L"Kivora.Export", L"Exportierte Kivora-Notizen"},
        {L"Kivora.Export\\DefaultIcon", program + L",0"},
        {L"Kivora.Export\\shell", L"open"},
        {L"Kivora.Export\\shell\\open", L"Notizen importieren"},
        {L"Kivora.Export\\shell\\open\\command", program + L" /%1"},
        {L"Kivora.Export\\shell\\print", L"Notizen drucken..."},
        {L"Kivora.Export\\shell\\print\\command", program + L" /[print] /%1"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(AsText(Registry().GetValue(L"HKCR\\" + row[0] + L"\\", REG_TYPE_SZ)), row[1])
            << row[0].c_str();
    }
}

}  // namespace
