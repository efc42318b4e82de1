#include "tests/app/ProcessTest.h"

namespace {

// Which is killed, and leaves notes and place to the next one.
TEST_F(ProcessTest, LaterStartsHandFilesOverToTheRunningCopy) {
    Import(L"eins");
    const Texts all = {L"eins", L"zwei", L"drei"};
    {
        Process first({});
        WaitUntilShown(2);
        const std::vector<std::string> windows = Windows();
        Process plain({});  // has nothing to say
        EXPECT_EQ(plain.Wait(), 0);
        EXPECT_EQ(plain.Output() + plain.Errors(), "");
        EXPECT_EQ(Windows(), windows);
        Process second({File("weg.kvr", L"") + ".gibt-es-nicht", File("zwei ü.kvr", L"zwei"),
                        File("drei.kvr", L"drei")});
        EXPECT_EQ(second.Wait(), 0);
        EXPECT_TRUE(Eventually([&] { return SavedTexts() == all; }));
        // The copy that took the files says what is wrong with one of them, and goes on meanwhile.
        EXPECT_FALSE(WaitForWindow("Fehler beim Importieren").empty());
        WaitUntilShown(5);
        EXPECT_FALSE(first.Ended());
        first.Kill();
        EXPECT_EQ(first.Wait(), -1);
    }
    Process next({});
    WaitUntilShown(4);
    next.AskToEnd();
    EXPECT_EQ(next.Wait(), 0);
    EXPECT_EQ(SavedTexts(), all);
}

TEST_F(ProcessTest, SaysThatAStoppedCopyDoesNotAnswer) {
    Process first({});
    WaitUntilShown(2);  // the second one is the hint for newcomers
    first.Stop();
    Process second({File("1.kvr", L"eins")});
    const std::string message = WaitForWindow("Fehler");
    EXPECT_FALSE(message.empty());
    if (!message.empty()) Press(message, "Return");
    EXPECT_EQ(second.Wait(), 1);
    first.Continue();
    first.AskToEnd();
    EXPECT_EQ(first.Wait(), 0);
}

// What a command prints when its exit code is this one.
std::string Printed(const std::vector<std::string>& words, int exitCode = 0) {
    const auto command = Process::Doing(words);
    EXPECT_EQ(command->Wait(), exitCode) << words[0] << command->Errors();
    EXPECT_EQ(command->Errors().empty(), exitCode == 0) << words[0] << command->Errors();
    return command->Output();
}

TEST_F(ProcessTest, SaysWhatItCanBeStartedWith) {
    EXPECT_TRUE(Printed({"--help"}).starts_with("Aufruf: kivora"));
    EXPECT_EQ(Printed({"--version"}), "Kivora 1.6.1\n");
}

TEST_F(ProcessTest, TheRunningCopyCarriesOutCommands) {
    Import(L"eins");
    Process program({});
    WaitUntilShown(2);
    // What a command has answered is on the disk.
    Printed({"--new", "Käse & \"Brot\"", "zwei"});
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"Käse & \"Brot\" zwei"}));
    for (const std::string& text : {std::string(), std::string(5000, 'x')}) Printed({"--new", text}, 1);
    const std::string list = Printed({"--list"});
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 2);
    EXPECT_NE(list.find("\teins\n"), list.npos);
    EXPECT_NE(list.find("\tKäse & \"Brot\" zwei\n"), list.npos);

    const std::string all = ToUtf8(FileName(TestFolder() / FilePath(L"alle ü.kvr")));
    EXPECT_EQ(Printed({"--export", all}), "2 Notizen in die Datei " + all + " geschrieben.\n");
    Printed({"--export", all + "/nirgends"}, 1);
    Printed({"--import", all, File("drei.kvr", L"drei")});
    EXPECT_EQ(SavedTexts().size(), 5u);
    Printed({"--import", all + ".fehlt", all}, 1);
    EXPECT_EQ(SavedTexts().size(), 7u);

    WaitUntilShown(8);
    const std::vector<std::string> shown = Windows();
    const auto stillShown = [&] {
        const std::vector<std::string> now = Windows();
        return std::ranges::count_if(shown, [&](const auto& id) { return std::ranges::count(now, id) > 0; });
    };
    Printed({"--toggle"});
    EXPECT_TRUE(Eventually([&] { return stillShown() == 1; })) << "the program's icon";
    Printed({"--toggle"});
    EXPECT_TRUE(Eventually([&] { return stillShown() == 8; }));

    for (const auto& [command, title] : {std::pair("--new", "Neue Notiz"), std::pair("--print", "Drucken")}) {
        Printed({command});
        const std::string dialog = WaitForWindow(title);
        ASSERT_FALSE(dialog.empty()) << title;
        Press(dialog, "Escape");
        EXPECT_TRUE(Eventually([&] { return WindowTitled(title).empty(); }));
        EXPECT_FALSE(program.Ended());
    }
}

// Those that need no window.
TEST_F(ProcessTest, CommandsWorkOnWhatIsKeptAndOnARunningCopy) {
    const auto answer = [](const std::vector<std::string>& words, int exitCode = 0) {
        const std::string printed = Printed(words, exitCode);
        return printed.substr(0, printed.find(':'));
    };
    const auto kept = [] { return ToUtf8(AsText(Registry().GetValue(kReceive, REG_TYPE_SZ))); };
    EXPECT_EQ(answer({"--receive"}), "all");
    EXPECT_EQ(answer({"--receive", "known"}), "known");
    Import(L"eins");  // a save that rewrites the notes leaves the setting alone
    EXPECT_EQ(kept(), "known");
    const std::string all = ToUtf8(FileName(TestFolder() / "alle.kvr"));
    EXPECT_NE(Printed({"--list"}).find("\teins\n"), std::string::npos);
    Printed({"--export", all});
    Printed({"--export", all});  // in the place of what it held
    Process program({});
    WaitUntilShown(2);
    Printed({"--import", all});
    EXPECT_EQ(SavedTexts(), (Texts{L"eins", L"eins"}));
    EXPECT_EQ(answer({"--receive"}), "known");
    EXPECT_EQ(answer({"--receive", "none"}), "none");
    EXPECT_EQ(kept(), "none");
    EXPECT_EQ(answer({"--receive", "some"}, 2), "");
    EXPECT_EQ(kept(), "none");
    EXPECT_FALSE(program.Ended());
    Registry().DeleteValue(kReceive);
}

TEST_F(ProcessTest, PrintingLeavesTheSavedNotesAlone) {
    Import(L"eins");
    for (const bool signal : {false, true}) {
        Process print({"[print]", File("2.kvr", L"zwei")});
        const std::string dialog = WaitForWindow("Drucken");
        ASSERT_FALSE(dialog.empty());
        if (signal) {
            print.AskToEnd();
        } else {
            Press(dialog, "Escape");
        }
        EXPECT_EQ(print.Wait(), 0);
        EXPECT_EQ(SavedTexts(), Texts{L"eins"});
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (const int result = ServeOtherwise(argc, argv); result >= 0) return result;
    testing::InitGoogleTest(&argc, argv);
    TestFolder();
    return RUN_ALL_TESTS();
}
