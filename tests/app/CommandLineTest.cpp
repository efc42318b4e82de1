#include <gtest/gtest.h>

#include "app/CommandLine.h"
#include "base/ExecutableFileName.h"
#include "base/Text.h"

namespace {

using Texts = std::vector<std::wstring>;

std::string Shown(const Texts& texts) {
    std::string shown;
    for (const std::wstring& text : texts) shown.append("<").append(ToUtf8(text)).append(">");
    return shown;
}

TEST(CommandLine, SplitsAtSlashes) {
    const struct {
        std::wstring commandLine;
        Texts arguments;
    } rows[] = {
        {L"", {L""}},
        {L" /[print] /C:\\Eigene Notizen\\a.kvr", {L"[print]", L"C:\\Eigene Notizen\\a.kvr"}},
        {L" /a.kvr /b.kvr", {L"a.kvr", L"b.kvr"}},
        {L"/a.kvr", {L"a.kvr"}},
        {L" /[print]", {L"[print]"}},
        {L"/", {L""}},
        {L"//", {L"", L""}},
        {L" / /", {L"", L""}},
        {L"/a ", {L"a "}},           // a blank at the very end stays
        {L"/a  /b", {L"a ", L"b"}},  // of two blanks only the one before the slash goes
        {L"/\"a b\"", {L"\"a b\""}},
        {L"/ä€/ü", {L"ä€", L"ü"}},
        {L"/C:\\x /y.kvr", {L"C:\\x", L"y.kvr"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Shown(SplitCommandLine(row.commandLine)), Shown(row.arguments)) << ToUtf8(row.commandLine);
    }
}

TEST(CommandLine, RefusesTextBeforeTheFirstSlash) {
    for (const wchar_t* commandLine : {L"a.kvr", L" a.kvr", L"  /a.kvr", L"\" /a.kvr", L" "}) {
        EXPECT_THROW(SplitCommandLine(commandLine), CommandLineError) << ToUtf8(commandLine);
    }
}

TEST(CommandLine, TellsWhatArgumentsAskFor) {
    const struct {
        Texts arguments;
        StartRequest::Kind kind;
        Texts files;
    } rows[] = {
        {{}, StartRequest::Resident, {}},
        {{L"--"}, StartRequest::Resident, {}},
        {{L"a b.kvr", L"/ü.kvr"}, StartRequest::Import, {L"a b.kvr", L"/ü.kvr"}},
        {{L""}, StartRequest::Import, {L""}},
        {{L"-"}, StartRequest::Import, {L"-"}},
        {{L"[print]"}, StartRequest::Print, {}},
        {{L"/[print]", L"a.kvr", L"b.kvr"}, StartRequest::Print, {L"a.kvr", L"b.kvr"}},
        {{L"[PRINT]", L"a.kvr"}, StartRequest::Import, {L"[PRINT]", L"a.kvr"}},
        {{L"a.kvr", L"[print]"}, StartRequest::Import, {L"a.kvr", L"[print]"}},
        {{L"--", L"[print]"}, StartRequest::Import, {L"[print]"}},
        {{L"[print]", L"--", L"--help"}, StartRequest::Print, {L"--help"}},
        {{L"--", L"--version", L"--"}, StartRequest::Import, {L"--version", L"--"}},
        {{L"a.kvr", L"--help"}, StartRequest::Help, {}},
        {{L"-h"}, StartRequest::Help, {}},
        {{L"--version", L"--help"}, StartRequest::Version, {}},
        {{L"a.kvr", L"--nonsense"}, StartRequest::Wrong, {}},
        {{L"-x"}, StartRequest::Wrong, {}},
    };
    for (const auto& row : rows) {
        const StartRequest request = RequestOf(row.arguments);
        EXPECT_EQ(request.kind, row.kind) << Shown(row.arguments);
        EXPECT_EQ(Shown(request.files), Shown(row.files)) << Shown(row.arguments);
    }
    EXPECT_EQ(RequestOf({L"--nonsense"}).wrong, L"--nonsense");
}

TEST(ExecutableFileName, CompletesFolderAndEnding) {
    const struct {
        std::wstring folder, name, full;
    } rows[] = {
        {L"C:\\Kivora", L"kivora", L"C:\\Kivora\\kivora.exe"},
        {L"C:\\", L"kivora", L"C:\\kivora.exe"},
        {L"C:\\Kivora", L"kivora.exe", L"C:\\Kivora\\kivora.exe"},
        {L"C:\\Kivora", L"Kivora.ExE", L"C:\\Kivora\\Kivora.ExE"},
        {L"C:\\a b", L"exe", L"C:\\a b\\exe.exe"},
        {L"C:\\a", L"kivora.ex", L"C:\\a\\kivora.ex.exe"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ToUtf8(ExecutableFileName(row.folder, row.name)), ToUtf8(row.full));
    }
}

}  // namespace
