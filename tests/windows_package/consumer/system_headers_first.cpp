// That a host may include the system's headers before ours: that it compiles is the test. Both
// declare the entry points of a component, in types of their own.

#include <windows.h>
// Keeps out headers that nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <objbase.h>
#include <oleauto.h>
#include <olectl.h>

#include "bvconn/component/abi.h"

static_assert(sizeof(decltype(&DllGetClassObject)) == sizeof(DllGetClassObjectFunction));
static_assert(sizeof(decltype(&DllRegisterServer)) == sizeof(DllRegisterServerFunction));
