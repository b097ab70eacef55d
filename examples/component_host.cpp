// Asks the library, loaded as a component, for a row of a catalogue.

#include <bvconn/component/abi.h>
#include <dlfcn.h>

#include <cstdio>

using namespace bvconn::component;

int main() {
  void* library = dlopen("libBVConn.so.0", RTLD_NOW);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const auto find = reinterpret_cast<BVConnFindClassFunction>(dlsym(library, "BVConnFindClass"));
  const auto get = reinterpret_cast<DllGetClassObjectFunction>(dlsym(library, "DllGetClassObject"));
  const auto clear =
      reinterpret_cast<BVConnClearVariantFunction>(dlsym(library, "BVConnClearVariant"));

  Guid id;
  void* factory = nullptr;
  void* object = nullptr;
  if (find(u"BVConn.BVMethods", &id) != kOk) return 1;
  if (get(&id, &IClassFactoryAbi::kId, &factory) != kOk) return 1;
  auto* maker = static_cast<IClassFactoryAbi*>(factory);
  const Hresult made = maker->CreateInstance(nullptr, &IDispatchAbi::kId, &object);
  maker->Release();
  if (made != kOk) return 1;

  auto* methods = static_cast<IDispatchAbi*>(object);
  char16_t name[] = u"GetInvoice";
  char16_t* names[] = {name};
  DispatchId member = kUnknownId;
  DispatchParams none{};
  VariantRecord row{};
  if (methods->GetIDsOfNames(&kNullGuid, names, 1, 0, &member) == kOk &&
      methods->Invoke(member, &kNullGuid, 0, call_flag::kPropertyGet, &none, &row, nullptr,
                      nullptr) == kOk) {
    for (const char16_t* unit = row.value.string; *unit != 0; ++unit) std::putchar(*unit);
    std::putchar('\n');  // getInvoice
    clear(&row);
  }
  methods->Release();
}
