// That a host may include the system's headers behind ours: that it compiles is the test.

#include "bvconn/component/abi.h"

#include <windows.h>
// Keeps out headers that nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <objbase.h>
#include <oleauto.h>
#include <olectl.h>

static_assert(sizeof(decltype(&DllGetClassObject)) == sizeof(DllGetClassObjectFunction));
static_assert(sizeof(decltype(&DllRegisterServer)) == sizeof(DllRegisterServerFunction));
