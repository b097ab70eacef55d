#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/thread_slot.h"

// Of the library as the system loads and unloads it; a program that it is linked into has none.

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason,
                               void* at_the_end_of_the_process) {
  // Threads that go on without the library must not call it at their end. At the end of the process
  // there are none left, and whatever the library still holds is the system's.
  if (reason == DLL_PROCESS_DETACH && at_the_end_of_the_process == nullptr) {
    bvconn::detail::release_all_threads();
  }
  return TRUE;
}
