#pragma once

#include <atomic>
#include <concepts>
#include <new>
#include <utility>

#include "bvconn/component/abi.h"
#include "bvconn/component/lifetime.h"

namespace bvconn::component {

/// The identity and the count of references of an object with the given interfaces. An object is
/// made with one reference, its maker's, and destroys itself with the last.
///
/// Whatever interface it is asked through, `IUnknown` is always the pointer to the first one.
template <typename First, typename... Others>
class Counted : public First, public Others... {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  Hresult BVCONN_CALL QueryInterface(const Guid* id, void** object) noexcept final {
    if (object == nullptr) return kNullPointer;
    *object = nullptr;
    if (id == nullptr) return kNullPointer;
    if (*id == IUnknownAbi::kId || *id == First::kId || is_also(*id)) {
      *object = static_cast<First*>(this);
    } else {
      static_cast<void>((offer<Others>(*id, object) || ...));
    }
    if (*object == nullptr) return kNoInterface;
    AddRef();
    return kOk;
  }

  std::uint32_t BVCONN_CALL AddRef() noexcept final {
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
  }

  std::uint32_t BVCONN_CALL Release() noexcept final {
    const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;
  /// Whether the object's first interface has this identifier too.
  virtual bool is_also(const Guid& /*id*/) const noexcept { return false; }

 private:
  template <typename Interface>
  bool offer(const Guid& id, void** object) noexcept {
    bool is_its = id == Interface::kId;
    // An interface that goes on where an older one ends is the older one too.
    if constexpr (requires { Interface::kShorterId; }) is_its |= id == Interface::kShorterId;
    if (!is_its) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }

  LivingObject living_;
  std::atomic<std::uint32_t> references_{1};
};

/// One reference to an object, given back at the end of the scope.
template <typename Interface>
class Reference {
 public:
  Reference() = default;
  /// Takes over a reference that is already counted.
  explicit Reference(Interface* counted) noexcept : object_(counted) {}
  /// Counts a further reference.
  static Reference share(Interface* object) noexcept {
    if (object != nullptr) object->AddRef();
    return Reference(object);
  }
  Reference(const Reference& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  Reference(Reference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Reference& operator=(Reference other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Reference() {
    if (object_ != nullptr) object_->Release();
  }

  Interface* get() const noexcept { return object_; }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  Interface* release() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// Asks a foreign object for an interface; an empty reference when it has none.
template <typename Interface>
Reference<Interface> query(IUnknownAbi* object) noexcept {
  void* found = nullptr;
  if (object == nullptr || !succeeded(object->QueryInterface(&Interface::kId, &found))) return {};
  return Reference<Interface>(static_cast<Interface*>(found));
}

/// Runs a body that may throw and turns what it throws into a result code, for the functions whose
/// failures have no record to be reported in.
template <std::invocable Body>
Hresult guarded(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (...) {
    return kFailed;
  }
}

}  // namespace bvconn::component
