// Asks the component for a row of a catalogue, without a registry: by its entry point, which the
// import library has.

#include <cstdio>

#define BVCONN_ENTRY_POINTS
#include "bvconn/component/abi.h"

using namespace bvconn::component;

namespace {
constexpr Guid kMethods = {
    0x9B66DCAF, 0xAD44, 0x4B27, {0x91, 0x80, 0xA4, 0x98, 0x82, 0x76, 0xE7, 0xDD}};
}

int main() {
  void* factory = nullptr;
  if (DllGetClassObject(&kMethods, &IClassFactoryAbi::kId, &factory) != kOk) return 1;
  auto* const maker = static_cast<IClassFactoryAbi*>(factory);
  void* object = nullptr;
  if (maker->CreateInstance(nullptr, &IDispatchAbi::kId, &object) != kOk) return 2;
  maker->Release();

  auto* const methods = static_cast<IDispatchAbi*>(object);
  char16_t name[] = u"GetInvoice";
  char16_t* names[] = {name};
  DispatchId member = kUnknownId;
  DispatchParams none{};
  VariantRecord row{};
  if (methods->GetIDsOfNames(&kNullGuid, names, 1, 0, &member) != kOk ||
      methods->Invoke(member, &kNullGuid, 0, call_flag::kPropertyGet, &none, &row, nullptr,
                      nullptr) != kOk) {
    return 3;
  }
  // The text is the system's to free, and the process is done.
  for (const char16_t* unit = row.value.string; *unit != 0; ++unit) std::putchar(*unit);
  std::putchar('\n');
  methods->Release();
}
