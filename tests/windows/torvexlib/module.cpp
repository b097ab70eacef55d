#include <atomic>
#include <utility>

#include "windows/com_object.h"
#include "windows/torvexlib/component_library.h"

// The library of components as the system loads it.
namespace bvconn::test {
namespace {

std::atomic<MakeComponent> maker = nullptr;

class Factory final : public ComObject<IClassFactory> {
 public:
  explicit Factory(std::size_t place) : place_(place) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    const MakeComponent make = maker;
    if (make == nullptr) return E_UNEXPECTED;
    IDispatch* made = nullptr;
    const HRESULT result = make(place_, &made);
    if (FAILED(result)) return result;
    const HRESULT found = made->QueryInterface(id, object);
    made->Release();
    return found;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  std::size_t place_;
};

// The last byte of the classes' identifiers is their place.
constexpr GUID kFirstClass = {
    0x5B0C7F1E, 0x3A52, 0x4E0B, {0x9D, 0x55, 0x0D, 0x9A, 0x4C, 0x7E, 0x10, 0x00}};
constexpr std::size_t kClasses = 15;

}  // namespace
}  // namespace bvconn::test

extern "C" __declspec(dllexport) void UseComponents(bvconn::test::MakeComponent make) {
  bvconn::test::maker = make;
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE
    DllGetClassObject(REFCLSID class_id, REFIID id, void** object) {
  using namespace bvconn::test;
  *object = nullptr;
  GUID first = class_id;
  const std::size_t place = std::exchange(first.Data4[7], kFirstClass.Data4[7]);
  if (first != kFirstClass || place >= kClasses) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new Factory(place);
  const HRESULT found = factory->QueryInterface(id, object);
  factory->Release();
  return found;
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return S_FALSE;
}
