#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <thread>

#include "app/CopyMutex_msw.h"
#include "app/HandOver.h"
#include "base/MessageWindow_msw.h"
#include "tests/app/OtherCopy.h"

namespace {

using HandOverOnWindows = HandOverFixture;

// Another program's window that does not answer: Windows lets DDE wait for it.
class HungWindow {
  public:
    HungWindow()
        : thread_([this] {
              const HWND window = CreateWindowW(L"STATIC", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                                                GetModuleHandleW(nullptr), nullptr);
              open_.set_value();
              end_.get_future().wait();
              DestroyWindow(window);
          }) {
        open_.get_future().wait();
    }
    ~HungWindow() {
        end_.set_value();
        thread_.join();
    }

  private:
    std::promise<void> open_, end_;
    std::thread thread_;
};

TEST_F(HandOverOnWindows, AnotherProgramThatHangsKeepsNothingBack) {
    const HungWindow hung;
    ExpectHandOver({L"C:\\a.kvr"});
}

TEST_F(HandOverOnWindows, NamesMayHaveCharactersThatTheCodePageLacks) {
    ExpectHandOver({L"C:\\Σημειώσεις\\одна.kvr", L"C:\\便条.kvr"});
}

// What was withdrawn is not taken there either.
TEST_F(HandOverOnWindows, CopiesWithoutAWindowHoldDdeConversations) {
    Listen();
    DestroyWindow(MessageWindow::Find(L"Kivora.HandOver"));
    EXPECT_FALSE(Sender({L"C:\\withdrawn"}).get());
    ExpectTaken(Sender({L"C:\\ä €.kvr"}));
    EXPECT_EQ(names_, std::vector<std::wstring>{L"C:\\ä €.kvr"});
}

// One that was started with other rights, and one in another session. Of these only the mutex can be seen
// from here, so they do not get the file, and nobody is told that they did.
TEST_F(HandOverOnWindows, ACopyThatLetsNobodyNearIsARunningOne) {
    role_.reset();
    SECURITY_DESCRIPTOR nobody;
    InitializeSecurityDescriptor(&nobody, SECURITY_DESCRIPTOR_REVISION);
    ACL none;
    InitializeAcl(&none, sizeof none, ACL_REVISION);
    SetSecurityDescriptorDacl(&nobody, TRUE, &none, FALSE);
    SECURITY_ATTRIBUTES otherRights{sizeof otherRights, &nobody, FALSE};
    ASSERT_TRUE(CopyMutexName().starts_with(L"Global\\"));
    for (SECURITY_ATTRIBUTES* const attributes : {&otherRights, static_cast<SECURITY_ATTRIBUTES*>(nullptr)}) {
        const HANDLE mutex = CreateMutexW(attributes, FALSE, CopyMutexName().c_str());
        ASSERT_TRUE(mutex);
        EXPECT_FALSE(RunningCopy::Claim());
        EXPECT_FALSE(HandOver(L"C:\\a.kvr"));
        CloseHandle(mutex);
        EXPECT_TRUE(RunningCopy::Claim());
    }
}

// The mutex of a copy that was started as an administrator is no secret to one that was not.
TEST_F(HandOverOnWindows, EveryCopyOfTheUserMayOpenTheMutex) {
    const HANDLE mutex = OpenMutexW(READ_CONTROL, FALSE, CopyMutexName().c_str());
    ASSERT_TRUE(mutex);
    ACL* list = nullptr;
    SECURITY_DESCRIPTOR* descriptor = nullptr;
    GetSecurityInfo(mutex, SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                    reinterpret_cast<void**>(&descriptor));
    ASSERT_TRUE(list);
    bool user = false;
    for (DWORD i = 0; i < list->AceCount; ++i) {
        ACCESS_ALLOWED_ACE* entry = nullptr;
        GetAce(list, i, reinterpret_cast<void**>(&entry));
        wchar_t* text = nullptr;
        ConvertSidToStringSidW(&entry->SidStart, &text);
        user = user || CopyMutexName().ends_with(std::wstring(L".") + text);
        LocalFree(text);
    }
    EXPECT_TRUE(user);
    LocalFree(descriptor);
    CloseHandle(mutex);
}

}  // namespace

std::vector<std::wstring> NamesOfAllKinds() {
    return {L"C:\\Eigene Notizen\\ä ö ü €.kvr", L"\\\\rechner\\freigabe\\'a' & b.kvr", L"C:\\[print]",
            L"C:\\" + std::wstring(4000, L'x')};
}
