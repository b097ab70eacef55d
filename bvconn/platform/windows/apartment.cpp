#include "bvconn/platform/windows/apartment.h"

#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/windows/components.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

void stay_loaded() {
  static const char here = 0;
  HMODULE module = nullptr;
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
  ::GetModuleHandleExW(kFlags, reinterpret_cast<const wchar_t*>(&here), &module);
}

/// Threads that components of others may wait for are gone then, and so may these be.
bool process_is_ending() noexcept {
  using Ask = BOOLEAN(WINAPI*)();
  static const auto ask = reinterpret_cast<Ask>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
  return ask != nullptr && ask() != FALSE;
}

}  // namespace

std::shared_ptr<Apartment> Apartment::of_thread() {
  std::weak_ptr<Apartment>& known = ThreadRecord<std::weak_ptr<Apartment>>::get();
  std::shared_ptr<Apartment> apartment = known.lock();
  if (!apartment) {
    apartment = std::shared_ptr<Apartment>(new Apartment());
    known = apartment;
  }
  return apartment;
}

Apartment::Apartment()
    : thread_(::GetCurrentThreadId()), thread_handle_(::OpenThread(SYNCHRONIZE, FALSE, thread_)) {
  // A count of its own, also where the host has opened one, since that may close it sooner.
  const HRESULT result =
      ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  is_counted_ = SUCCEEDED(result);
  // One that is open to all threads does as well.
  if (!is_counted_ && result != RPC_E_CHANGED_MODE) {
    if (thread_handle_ != nullptr) ::CloseHandle(thread_handle_);
    throw Error(result, "BVConn",
                "Cannot use components on this thread: " +
                    windows_message(static_cast<unsigned long>(result)));
  }
  stay_loaded();
}

Apartment::~Apartment() {
  if (is_here() && !process_is_ending()) {
    release_left();
    if (is_counted_) ::CoUninitialize();
  }
  if (thread_handle_ != nullptr) ::CloseHandle(thread_handle_);
}

bool Apartment::is_here() const noexcept {
  return ::GetCurrentThreadId() == thread_;
}

void Apartment::release(IUnknown* object) noexcept {
  if (is_here()) {
    if (!process_is_ending()) object->Release();
    return;
  }
  try {
    const std::scoped_lock lock(mutex_);
    left_.push_back(object);
  } catch (...) {
    // Without memory to remember it by, it stays.
  }
}

void Apartment::release_left() noexcept {
  std::vector<IUnknown*> left;
  {
    const std::scoped_lock lock(mutex_);
    std::swap(left, left_);
  }
  for (IUnknown* object : left) object->Release();
}

}  // namespace bvconn::detail
