#pragma once

#include <atomic>

#include "bvconn/platform/windows/components.h"

namespace bvconn::test {

/// The identity and the count of references of an object with one interface. It is made with one
/// reference, its maker's.
template <class Interface>
class ComObject : public Interface {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != __uuidof(IUnknown) && !is_offered(id)) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;
  virtual bool is_offered(REFIID id) const { return id == __uuidof(Interface); }

 private:
  std::atomic<ULONG> references_ = 1;
};

}  // namespace bvconn::test
