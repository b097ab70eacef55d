// Reads an invoice from C++ by the classes of <BVConn.h>, where BVConn.dll is registered:
//   invoice_typed http://server:8080/soap session-1 INV-1001

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// Keeps out headers that nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <ocidl.h>
#include <oleauto.h>
// After those of the system.
#include <BVConn.h>

#include <cstdio>
#include <string>

using namespace bvconn::com;

static void run(const std::wstring& server, const std::wstring& session, const std::wstring& key) {
  const BVInvoiceConnector invoices = BVInvoiceConnector::create();
  const SoapNode invoice = invoices.GetInvoice(server, session, key);
  const SoapNode number = invoice.Nodes().ItemByName(L"InvoiceNumber");
  std::printf("InvoiceNumber: %ls\n", number.Value().text().c_str());

  // An error has a number, a source and a description, which may be empty.
  try {
    invoices.GetInvoice(server, session, L"no such key");
  } catch (const Error& error) {
    std::printf("Error %08lX of %ls\n", error.number, error.source.c_str());
  }
}

int wmain(int count, wchar_t** words) {
  if (count < 4 || FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  int status = 0;
  // The objects are gone when it is done, before the library is.
  try {
    run(words[1], words[2], words[3]);
  } catch (const Error& error) {
    std::printf("Error %08lX: %ls\n", error.number, error.description.c_str());
    status = 1;
  }
  ::CoUninitialize();
  return status;
}
