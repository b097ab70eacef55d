#pragma once

#include "bvconn/platform/windows/system.h"

// The one place that includes the system's headers of component objects.
//
// They declare the entry points of a component too, in types of their own; ours have the library's
// (bvconn/component/abi.h), so the system's go by other names.
#define DllCanUnloadNow SystemDllCanUnloadNow
#define DllGetClassObject SystemDllGetClassObject
#define DllRegisterServer SystemDllRegisterServer
#define DllUnregisterServer SystemDllUnregisterServer
// With its guard set, a header stays out that brings the system's own XML, which nothing here uses.
#define __urlmon_h__
struct IBindStatusCallback;
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
#undef __urlmon_h__
#undef DllCanUnloadNow
#undef DllGetClassObject
#undef DllRegisterServer
#undef DllUnregisterServer
