// Shows what <BVConn.h> makes of values, which is the same whatever language the user has.

#include <windows.h>
// Keeps out headers that nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <ocidl.h>
#include <oleauto.h>
// After those of the system.
#include <BVConn.h>

#include <cstdio>

using bvconn::com::Variant;

int wmain() {
  VARIANT systems{};
  Variant number(2.5);
  // As the system converts where nothing else is said: in the user's language.
  ::VariantChangeType(&systems, &number, 0, VT_BSTR);
  std::printf("%ls %ls %ls %g %d\n", systems.bstrVal, number.text().c_str(),
              Variant(true).text().c_str(), Variant(L"7.25").real(), Variant(L"False").boolean());
  ::VariantClear(&systems);
  return 0;
}
