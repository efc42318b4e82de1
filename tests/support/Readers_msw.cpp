#include "tests/support/Readers_msw.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <initguid.h>
#include <oleacc.h>

#include <map>

namespace {

std::map<HWND, std::wstring> names;
std::map<HWND, LONG> roles;

// One for ever; nobody counts who uses it.
class Readers : public IAccPropServices, public IClassFactory {
  public:
    virtual ~Readers() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = nullptr;
        if (id == IID_IAccPropServices) *object = static_cast<IAccPropServices*>(this);
        if (id == IID_IClassFactory || id == IID_IUnknown) *object = static_cast<IClassFactory*>(this);
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
        return QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(WINBOOL) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD, DWORD, MSAAPROPID property,
                                             LPCWSTR text) override {
        if (property == PROPID_ACC_NAME) names[window] = text;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetHwndProp(HWND window, DWORD, DWORD, MSAAPROPID property,
                                          VARIANT value) override {
        if (property == PROPID_ACC_ROLE) roles[window] = value.lVal;
        return S_OK;
    }

    // What the program does not use.
    HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                            AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*,
                                                          DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                 AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override {
        return E_NOTIMPL;
    }
};

// Before anything is named: the program asks for the service once.
class Registration : public testing::Environment {
  public:
    void SetUp() override {
        static Readers readers;
        DWORD cookie = 0;
        const HRESULT registered =
            CoRegisterClassObject(CLSID_AccPropServices, static_cast<IClassFactory*>(&readers),
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
