#include <gtest/gtest.h>

#include "app/CommandLine.h"
#include "app/IconTip.h"
#include "app/KeptCommands.h"
#include "base/ExecutableFileName.h"
#include "base/Text.h"
#include "model/StoredImage.h"
#include "registry/clsRegistry.h"

namespace {

using Texts = std::vector<std::wstring>;

std::string Shown(const Texts& texts) {
    std::string shown;
    for (const std::wstring& text : texts) shown.append("<").append(ToUtf8(text)).append(">");
    return shown;
}

TEST(CommandLine, SplitsAtSlashes) {
    const std::pair<std::wstring, Texts> rows[] = {
        {L"", {L""}},
        {L" /[print] /C:\\Eigene Notizen\\a.kvr", {L"[print]", L"C:\\Eigene Notizen\\a.kvr"}},
        {L"/a.kvr", {L"a.kvr"}},
        {L"/", {L""}},
        {L"//", {L"", L""}},
        {L" / /", {L"", L""}},
        {L"/a ", {L"a "}},           // a blank at the very end stays
        {L"/a  /b", {L"a ", L"b"}},  // of two blanks only the one before the slash goes
        {L"/\"a b\"", {L"\"a b\""}},
        {L"/ä€/ü", {L"ä€", L"ü"}},
    };
    for (const auto& [commandLine, arguments] : rows) {
        EXPECT_EQ(Shown(SplitCommandLine(commandLine)), Shown(arguments)) << ToUtf8(commandLine);
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
    };
    for (const auto& row : rows) {
        const StartRequest request = RequestOf(row.arguments);
        EXPECT_EQ(request.kind, row.kind) << Shown(row.arguments);
        EXPECT_EQ(Shown(request.files), Shown(row.files)) << Shown(row.arguments);
    }
}

TEST(CommandLine, FindsCommandsWithTheirArguments) {
    const struct {
        Texts arguments;
        Command command;     // without a name where it is none
        const wchar_t* why;  // that it is none
    } rows[] = {
        {{L"--new"}, {L"--new", {}}, L""},
        {{L"--new", L"-"}, {L"--new", {L"-"}}, L""},
        {{L"--new", L"Milch", L"--", L"--help"}, {L"--new", {L"Milch", L"--", L"--help"}}, L""},
        {{L"--import", L"a b.kvr", L"/ü.kvr"}, {L"--import", {L"a b.kvr", L"/ü.kvr"}}, L""},
        {{L"--import"}, {}, L"zu --import fehlt DATEI…"},
        {{L"--export"}, {}, L"zu --export fehlt DATEI"},
        {{L"--list", L"x"}, {}, L"zu viel hinter --list"},
        {{L"--receive", L"none"}, {L"--receive", {L"none"}}, L""},
        {{L"--receive=ü=1"}, {L"--receive", {L"ü=1"}}, L""},
        {{L"--receive", L"--help"}, {L"--receive", {L"--help"}}, L""},
        {{L"a.kvr", L"--help"}, {L"--help", {}}, L""},
        {{L"-h"}, {L"--help", {}}, L""},
        {{L"--version", L"--help"}, {L"--version", {L"--help"}}, L""},
        {{L"--receive", L"all", L"none"}, {}, L"zu viel hinter --receive"},
        {{L"a.kvr", L"--receive"}, {}, L"--receive steht nicht an erster Stelle"},
        {{L"a.kvr", L"--nonsense"}, {}, L"unbekannte Option --nonsense"},
        {{L"-x=1"}, {}, L"unbekannte Option -x=1"},
    };
    for (const auto& row : rows) {
        const StartRequest request = RequestOf(row.arguments);
        const bool isCommand = !row.command.name.empty();
        EXPECT_EQ(request.kind, isCommand ? StartRequest::Run : StartRequest::Wrong) << Shown(row.arguments);
        EXPECT_EQ(request.command, row.command) << Shown(row.arguments);
        EXPECT_EQ(ToUtf8(request.wrong), ToUtf8(row.why)) << Shown(row.arguments);
    }
}

TEST(Commands, PackAndUnpack) {
    for (const Command& command : {Command{L"--a", {}}, Command{L"--b", {L"", L"ä €", L"-"}}}) {
        const std::wstring text = Packed(command);
        EXPECT_EQ(Unpacked(text), command);
        for (std::size_t length = 0; length < text.size(); ++length)
            EXPECT_EQ(Unpacked(text.substr(0, length)), std::nullopt) << length;
    }
    for (const wchar_t* const other : {L"/a.kvr", L"2", L"C:\\a.kvr"})
        EXPECT_EQ(Unpacked(other), std::nullopt);
}

TEST(Commands, AreExplained) {
    EXPECT_NE(UsageText().find(L"\n  --export DATEI\n    schreibt alle Notizen in eine Datei\n"),
              std::wstring::npos);
}

TEST(Commands, ListTextsThatAreTooLongToBeKept) {
    const std::wstring text(5000, L'x');
    Registry().SetValue(std::wstring(kSettingsKey) + L"Note0\\Text", REG_TYPE_SZ, text);
    EXPECT_EQ(CarryOutAlone({L"--list", {}}).text, L"\t" + text + L"\n");
    Registry().DeleteKey(kSettingsKey);
}

TEST(IconTip, SaysWhatIsNotAsUsual) {
    const std::pair<ProgramState, const char*> rows[] = {
        {{}, "Kivora 1.6"},
        {{Trouble::Unsaved}, "Kivora 1.6 - nicht gespeichert"},
        {{Trouble::None, ReceiveFrom::Known}, "Kivora 1.6 - Empfang nur aus Adressbuch"},
        {{Trouble::Unsaved, ReceiveFrom::None}, "Kivora 1.6 - nicht gespeichert - Empfang ausgeschaltet"},
        {{Trouble::None, ReceiveFrom::All, true}, "Kivora 1.6 - kein Empfang, Port belegt"},
        {{Trouble::Unsaved, ReceiveFrom::All, true},
         "Kivora 1.6 - nicht gespeichert - kein Empfang, Port belegt"},
        {{Trouble::Unreadable, ReceiveFrom::Known},
         "Kivora 1.6 - Notizen nicht lesbar - Empfang nur aus Adressbuch"},
    };
    for (const auto& [state, tip] : rows) {
        EXPECT_EQ(ToUtf8(IconTip(state)), tip);
        EXPECT_LE(IconTip(state).size(), 63u);
    }
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
