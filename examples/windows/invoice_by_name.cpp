// Reads an invoice by name from C++, where BVConn.dll is registered:
//   invoice_by_name http://server:8080/soap session-1 INV-1001

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// Keeps out headers that nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

// Calls a member by its name, and frees the arguments, which go in reverse order.
static HRESULT call(const VARIANT& object, std::wstring name, std::vector<VARIANT> arguments,
                    VARIANT& result, EXCEPINFO* error = nullptr) {
  if (object.vt != VT_DISPATCH) return E_POINTER;
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;  // which no member has
  object.pdispVal->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  std::reverse(arguments.begin(), arguments.end());
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  const HRESULT done =
      object.pdispVal->Invoke(id, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                              &result, error, nullptr);
  for (VARIANT& each : arguments) ::VariantClear(&each);
  return done;
}

static VARIANT text(const wchar_t* value) {
  VARIANT variant{};
  variant.vt = VT_BSTR;
  variant.bstrVal = ::SysAllocString(value);
  return variant;
}

int wmain(int count, wchar_t** words) {
  CLSID id{};
  VARIANT invoices{}, invoice{}, nodes{}, node{}, number{}, none{};
  invoices.vt = VT_DISPATCH;
  if (count < 4 || FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) ||
      FAILED(::CLSIDFromProgID(L"BVConn.BVInvoiceConnector", &id)) ||
      FAILED(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&invoices.pdispVal)))) {
    return 1;
  }
  call(invoices, L"GetInvoice", {text(words[1]), text(words[2]), text(words[3])}, invoice);
  call(invoice, L"Nodes", {}, nodes);
  call(nodes, L"ItemByName", {text(L"InvoiceNumber")}, node);
  if (call(node, L"Value", {}, number) == S_OK) std::printf("InvoiceNumber: %ls\n", number.bstrVal);
  EXCEPINFO error{};
  call(invoices, L"GetInvoice", {text(words[1]), text(words[2]), text(L"NOPE")}, none, &error);
  std::printf("Error %08lX of %ls\n", error.scode, error.bstrSource);
  for (VARIANT* each : {&number, &node, &nodes, &invoice, &invoices}) ::VariantClear(each);
  ::CoUninitialize();
  return 0;
}
