#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/windows/components.h"
#include "windows/com_object.h"

/// A component of which a test says what it does.
namespace bvconn::test {

/// One call of an operation of it.
struct Called {
  DISPID id;
  DISPPARAMS* parameters;
  VARIANT* result;
  EXCEPINFO* exception;
  UINT* refused;

  void gives(const wchar_t* text) const {
    result->vt = VT_BSTR;
    result->bstrVal = ::SysAllocString(text);
  }
};

/// What the objects of a class do, and what became of them.
struct Script {
  std::vector<std::wstring> names{L"Ask"};
  std::function<HRESULT(const Called&)> invoke;
  std::vector<IID> interfaces;
  ITypeInfo* type_info = nullptr;
  HRESULT making = S_OK;  ///< of the class
  bool has_dispatch = true;

  int calls = 0;
  std::atomic<int> alive = 0;
  std::atomic<DWORD> released_by = 0;  ///< the thread that let the last object go
};

class ScriptedComponent final : public ComObject<IDispatch> {
 public:
  explicit ScriptedComponent(Script& script) : script_(script) { ++script_.alive; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = script_.type_info == nullptr ? 0 : 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*locale*/,
                                        ITypeInfo** info) override {
    *info = script_.type_info;
    if (*info == nullptr) return DISP_E_BADINDEX;
    (*info)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT /*count*/,
                                          LCID /*locale*/, DISPID* ids) override {
    ids[0] = DISPID_UNKNOWN;
    for (std::size_t place = 0; place < script_.names.size(); ++place) {
      if (script_.names[place] == names[0]) ids[0] = static_cast<DISPID>(place + 1);
    }
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD /*flags*/,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* refused) override {
    ++script_.calls;
    return script_.invoke({id, parameters, result, exception, refused});
  }

 private:
  ~ScriptedComponent() override {
    script_.released_by = ::GetCurrentThreadId();
    --script_.alive;
  }
  bool is_offered(REFIID id) const override {
    if (id == __uuidof(IDispatch)) return script_.has_dispatch;
    return std::ranges::find(script_.interfaces, id) != script_.interfaces.end();
  }

  Script& script_;
};

class ScriptedClass final : public ComObject<IClassFactory> {
 public:
  explicit ScriptedClass(Script& script) : script_(script) {}
  ~ScriptedClass() override = default;

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* /*outer*/, REFIID id, void** object) override {
    *object = nullptr;
    if (FAILED(script_.making)) return script_.making;
    auto* made = new ScriptedComponent(script_);
    const HRESULT result = made->QueryInterface(id, object);
    made->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  Script& script_;
};

/// A key of the registry's classes, for the lifetime of this object: it would not outlive the
/// system's session either.
class ClassKey {
 public:
  ClassKey(std::wstring path, const std::wstring& text) : path_(L"Software\\Classes\\" + path) {
    HKEY key = nullptr;
    ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                      nullptr, &key, nullptr);
    ::RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                     static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    ::RegCloseKey(key);
  }
  ~ClassKey() { ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, path_.c_str()); }
  ClassKey(const ClassKey&) = delete;
  ClassKey& operator=(const ClassKey&) = delete;

 private:
  std::wstring path_;
};

}  // namespace bvconn::test
