#pragma once

#include <algorithm>
#include <utility>

#include "bvconn/component/counted.h"

namespace bvconn::component {

/// An enumerator over what a source gives by index: `count()`, `produce(index)` for the item at an
/// index, owned by the receiver, and `drop(item)` to give one back.
template <typename Interface, typename Item, typename Source>
class Enumerator final : public Counted<Interface> {
 public:
  explicit Enumerator(Source source, std::size_t position = 0)
      : source_(std::move(source)), position_(position) {}

  Hresult BVCONN_CALL Next(std::uint32_t wanted, Item* items,
                           std::uint32_t* fetched) noexcept override {
    if (fetched != nullptr) *fetched = 0;
    if (items == nullptr || (fetched == nullptr && wanted != 1)) return kNullPointer;
    std::uint32_t got = 0;
    const Hresult result = guarded([&] {
      for (; got < wanted && position_ + got < source_.count(); ++got) {
        items[got] = source_.produce(position_ + got);
      }
      return kOk;
    });
    if (!succeeded(result)) {
      for (std::uint32_t i = 0; i < got; ++i) source_.drop(items[i]);
      return result;
    }
    position_ += got;
    if (fetched != nullptr) *fetched = got;
    return got == wanted ? kOk : kFalse;
  }

  Hresult BVCONN_CALL Skip(std::uint32_t count) noexcept override {
    return guarded([&] {
      const std::size_t end = source_.count();
      const std::size_t left = position_ < end ? end - position_ : 0;
      position_ += std::min<std::size_t>(count, left);
      return count <= left ? kOk : kFalse;
    });
  }

  Hresult BVCONN_CALL Reset() noexcept override {
    position_ = 0;
    return kOk;
  }

  Hresult BVCONN_CALL Clone(Interface** copy) noexcept override {
    if (copy == nullptr) return kNullPointer;
    *copy = nullptr;
    return guarded([&] {
      *copy = new Enumerator(source_, position_);
      return kOk;
    });
  }

 private:
  Source source_;
  std::size_t position_ = 0;
};

}  // namespace bvconn::component
