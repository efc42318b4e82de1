#include "tests/support/Readers_msw.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <initguid.h>
#include <ole2.h>

#include <map>

// The service as a table of functions, because those that the program does not call may be missing in one.
#define CINTERFACE
#include <oleacc.h>
#undef CINTERFACE

namespace {

std::map<HWND, std::wstring> names;
std::map<HWND, LONG> roles;

// There is one service for ever, and one that makes it; nobody counts who uses them.
HRESULT AnswerQuery(bool known, void* self, void** object) {
    *object = known ? self : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT WINAPI Query(IAccPropServices* self, REFIID id, void** object) {
    return AnswerQuery(id == IID_IAccPropServices || id == IID_IUnknown, self, object);
}
ULONG WINAPI Count(IAccPropServices*) { return 1; }
HRESULT WINAPI SetText(IAccPropServices*, HWND window, DWORD, DWORD, MSAAPROPID property, LPCWSTR text) {
    if (property == PROPID_ACC_NAME) names[window] = text;
    return S_OK;
}
HRESULT WINAPI SetValue(IAccPropServices*, HWND window, DWORD, DWORD, MSAAPROPID property, VARIANT value) {
    if (property == PROPID_ACC_ROLE) roles[window] = value.lVal;
    return S_OK;
}

class Factory : public IClassFactory {
  public:
    virtual ~Factory() = default;
    HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
        return AnswerQuery(id == IID_IClassFactory || id == IID_IUnknown, this, object);
    }
    ULONG WINAPI AddRef() override { return 1; }
    ULONG WINAPI Release() override { return 1; }
    HRESULT WINAPI LockServer(WINBOOL) override { return S_OK; }
    HRESULT WINAPI CreateInstance(IUnknown*, REFIID id, void** object) override {
        static IAccPropServicesVtbl functions = [] {
            IAccPropServicesVtbl used{};
            used.QueryInterface = Query;
            used.AddRef = used.Release = Count;
            used.SetHwndPropStr = SetText;
            used.SetHwndProp = SetValue;
            return used;
        }();
        static IAccPropServices service{&functions};
        return Query(&service, id, object);
    }
};

// Before anything is named: the program asks for the service once.
class Registration : public testing::Environment {
  public:
    void SetUp() override {
        static Factory factory;
        DWORD cookie = 0;
        const HRESULT registered = CoRegisterClassObject(CLSID_AccPropServices, &factory,
                                                         CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
        ASSERT_EQ(registered, S_OK);
    }
};

const testing::Environment* const registration = testing::AddGlobalTestEnvironment(new Registration);

template <class Value>
std::optional<Value> Find(const std::map<HWND, Value>& given, HWND window) {
    const auto found = given.find(window);
    return found == given.end() ? std::nullopt : std::optional<Value>(found->second);
}

}  // namespace

std::optional<std::wstring> NameGivenTo(HWND window) { return Find(names, window); }
std::optional<LONG> RoleGivenTo(HWND window) { return Find(roles, window); }
