#pragma once

#include <string>
#include <vector>

#include "bvconn/platform/windows/components.h"

/// A client of BVConn.dll that knows the system's headers alone, as programs that call by name do.
namespace bvconn::test {

/// A text of the system's.
class Text {
 public:
  explicit Text(const wchar_t* text) : text_(::SysAllocString(text)) {}
  ~Text() { ::SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  BSTR get() const { return text_; }

 private:
  BSTR text_;
};

/// A variant that is cleared at its end.
struct Var : VARIANT {
  Var() { ::VariantInit(this); }
  explicit Var(const wchar_t* text) : Var() {
    vt = VT_BSTR;
    bstrVal = ::SysAllocString(text);
  }
  explicit Var(LONG number) : Var() {
    vt = VT_I4;
    lVal = number;
  }
  Var(Var&& other) noexcept : VARIANT(other) { ::VariantInit(&other); }
  Var(const Var& other) : Var() { ::VariantCopy(this, const_cast<Var*>(&other)); }
  Var& operator=(const Var&) = delete;
  ~Var() { ::VariantClear(this); }

  std::wstring text() const { return vt == VT_BSTR && bstrVal != nullptr ? bstrVal : L""; }
  IDispatch* object() const { return vt == VT_DISPATCH ? pdispVal : nullptr; }
};

/// What a call answered; the texts of its exception are freed with it.
struct Answer {
  Answer() = default;
  Answer(const Answer&) = delete;
  Answer& operator=(const Answer&) = delete;
  ~Answer() {
    ::SysFreeString(exception.bstrSource);
    ::SysFreeString(exception.bstrDescription);
    ::SysFreeString(exception.bstrHelpFile);
  }

  HRESULT result = E_UNEXPECTED;
  Var value;
  EXCEPINFO exception{};
};

inline DISPID id_of(IDispatch* object, const wchar_t* name) {
  std::wstring text(name);
  LPOLESTR names[] = {text.data()};
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

/// `arguments` in the order of the declaration.
inline void call(Answer& answer, IDispatch* object, const wchar_t* name,
                 const std::vector<Var>& arguments = {}) {
  std::vector<Var> reversed(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  answer.result = object->Invoke(id_of(object, name), IID_NULL, LOCALE_USER_DEFAULT,
                                 DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, &answer.value,
                                 &answer.exception, nullptr);
}

/// The library, loaded as the system loads a component.
class Library {
 public:
  explicit Library(const wchar_t* file = BVCONN_COMPONENT) {
    wchar_t path[1024] = {};
    ::GetFullPathNameW(file, 1024, path, nullptr);
    module_ = ::LoadLibraryW(path);
  }
  ~Library() {
    if (module_ != nullptr) ::FreeLibrary(module_);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  bool loaded() const { return module_ != nullptr; }
  template <class Function>
  Function find(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module_, name)));
  }
  /// A new object, with one reference; null where there is none.
  IDispatch* make(const CLSID& id) const;

 private:
  HMODULE module_ = nullptr;
};

inline IDispatch* Library::make(const CLSID& id) const {
  const auto get = find<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
  IClassFactory* factory = nullptr;
  if (get == nullptr ||
      FAILED(get(id, __uuidof(IClassFactory), reinterpret_cast<void**>(&factory)))) {
    return nullptr;
  }
  IDispatch* object = nullptr;
  factory->CreateInstance(nullptr, __uuidof(IDispatch), reinterpret_cast<void**>(&object));
  factory->Release();
  return object;
}

}  // namespace bvconn::test
