#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

#include "app/Autostart.h"
#include "app/frmStart.h"
#include "base/DesktopEntry.h"
#include "base/FileName.h"
#include "model/KeepReason.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tests/support/Files.h"
#include "tests/support/Messages.h"

namespace {

TEST(Autostart, FlagAndEntryAgreeAlsoWhenTheEntryCannotBeWritten) {
    NoteRecorder host;
    NoteStore store(host);
    const std::filesystem::path entry =
        std::filesystem::path(g_get_user_config_dir()) / "autostart" / "kivora.desktop";
    const MessageRecorder told;
    EXPECT_TRUE(SetAutostart(store, true).Kept());
    EXPECT_EQ(Content(entry), AutostartEntry(FilePath(ProgramPath()).native()));
    EXPECT_TRUE(SetAutostart(store, false).Kept());
    EXPECT_FALSE(std::filesystem::exists(entry));

    std::filesystem::remove(entry.parent_path());
    std::ofstream(entry.parent_path()) << "in the way";
    auto* const start = new frmStart(store, [] {});
    start->RunCommand(MenuItem::mnuNotizWindowsStart);
    start->Destroy();
    EXPECT_EQ(told.messages,
              std::vector<std::wstring>{
                  L"Beim Start von Windows laden|16|Der automatische Start von Kivora konnte "
                  L"nicht geändert werden.\r\n" +
                  ReasonText({KeepFailure::NoFile}, L"die Datei für den automatischen Start")});
    EXPECT_FALSE(store.AutostartEnabled);
    EXPECT_EQ(AsText(Registry().GetValue(L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora",
                                         REG_TYPE_SZ)),
              L"");
    std::filesystem::remove(entry.parent_path());
}

TEST(Autostart, EntryStartsThisVeryProgramWhateverItsPath) {
    const std::filesystem::path root = std::filesystem::path(g_get_user_config_dir()) / "odd";
    for (const char* name : {"plain", "a b", "q\"uote", "dollar$HOME", "back\\slash", "tick`id`", "50%f",
                             "ü€", "'single'", "semi;colon & more", "\\$\"`%%"}) {
        std::filesystem::remove_all(root);
        std::filesystem::create_directories(root);
        const std::filesystem::path program = root / name;
        const std::filesystem::path trace = root / "trace";
        std::ofstream(program) << "#!/bin/sh\nprintf '%s' $# > '" << trace.native() << "'\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        const std::filesystem::path entry = root / "entry.desktop";
        std::ofstream(entry) << AutostartEntry(program.native());

        GDesktopAppInfo* info = g_desktop_app_info_new_from_filename(entry.c_str());
        ASSERT_TRUE(info) << name;
        EXPECT_TRUE(g_app_info_launch(G_APP_INFO(info), nullptr, nullptr, nullptr)) << name;
        g_object_unref(info);
        // Started, and without arguments.
        std::string arguments;
        EXPECT_TRUE(RunUntil([&] {
            std::ifstream(trace) >> arguments;
            return !arguments.empty();
        })) << name;
        EXPECT_EQ(arguments, "0") << name;
    }
}

}  // namespace
