#pragma once

#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/component/abi.h"

/// What a component host brings to its calls. It knows the binary interface alone, and its texts
/// and arrays lie in memory of its own.
namespace bvconn::test {

using namespace bvconn::component;  // NOLINT(google-build-using-namespace): the interface under
                                    // test
namespace vt = component::variant_type;

/// The library's functions that free what it gave out; each test program says where they are.
void clear_variant_of_library(VariantRecord* variant);
void clear_exception_of_library(ExceptionRecord* exception);

/// The text behind a string pointer, its length read from the four bytes before it.
inline std::u16string text_behind(const char16_t* text) {
  if (text == nullptr) return {};
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - 4, 4);
  return {text, bytes / 2};
}

/// A text made by the host: length in bytes, text, zero.
class HostString {
 public:
  explicit HostString(std::u16string_view text) : HostString(text, text.size() * 2) {}
  HostString(std::u16string_view text, std::size_t bytes) : units_(2 + text.size() + 1) {
    const auto prefix = static_cast<std::uint32_t>(bytes);
    std::memcpy(units_.data(), &prefix, 4);
    std::copy(text.begin(), text.end(), units_.begin() + 2);
  }
  StringPointer get() { return units_.data() + 2; }

 private:
  std::vector<char16_t> units_;
};

// Variants of the host. Those of texts point at the host's own memory.

inline VariantRecord variant(std::uint16_t type) {
  VariantRecord record{};
  record.type = type;
  return record;
}
inline VariantRecord of_int16(std::int16_t value) {
  VariantRecord record = variant(vt::kInt16);
  record.value.int16 = value;
  return record;
}
inline VariantRecord of_int32(std::int32_t value) {
  VariantRecord record = variant(vt::kInt32);
  record.value.int32 = value;
  return record;
}
inline VariantRecord of_double(double value) {
  VariantRecord record = variant(vt::kDouble);
  record.value.number = value;
  return record;
}
inline VariantRecord of_boolean(std::int16_t value) {
  VariantRecord record = variant(vt::kBoolean);
  record.value.boolean = value;
  return record;
}
inline VariantRecord of_string(HostString& text) {
  VariantRecord record = variant(vt::kString);
  record.value.string = text.get();
  return record;
}
inline VariantRecord of_object(IDispatchAbi* object) {
  VariantRecord record = variant(vt::kDispatch);
  record.value.dispatch = object;
  return record;
}
inline VariantRecord missing() {
  VariantRecord record = variant(vt::kError);
  record.value.error = static_cast<Hresult>(0x80020004);
  return record;
}
inline VariantRecord reference_to(VariantRecord& target) {
  VariantRecord record = variant(vt::kByReference | vt::kVariant);
  record.value.variant_reference = &target;
  return record;
}

/// What a call gave. Its texts and objects are freed with it.
struct Outcome {
  Outcome() = default;
  Outcome(Outcome&& other) noexcept
      : result(other.result),
        value(std::exchange(other.value, {})),
        exception(std::exchange(other.exception, {})),
        argument_index(other.argument_index) {}
  Outcome& operator=(Outcome&&) = delete;
  ~Outcome() {
    clear_variant_of_library(&value);
    clear_exception_of_library(&exception);
  }

  std::u16string text() const { return text_behind(value.value.string); }
  /// The object that was given; a test that relies on one ends where there is none.
  IDispatchAbi& object() const {
    if (value.type != vt::kDispatch || value.value.dispatch == nullptr) {
      throw std::logic_error("the call gave no object");
    }
    return *value.value.dispatch;
  }

  static constexpr std::uint32_t kUntouched = 777;

  Hresult result = kUnexpected;
  VariantRecord value{};
  ExceptionRecord exception{};
  std::uint32_t argument_index = kUntouched;
};

inline std::optional<DispatchId> find_id(IDispatchAbi& object, std::u16string name) {
  char16_t* names[] = {name.data()};
  DispatchId id = kUnknownId;
  if (object.GetIDsOfNames(&kNullGuid, names, 1, 0, &id) != kOk) return std::nullopt;
  return id;
}

/// Named arguments: the numbers of their names, in the order of the first values.
struct Named {
  std::vector<DispatchId> ids;
  std::vector<VariantRecord> values;
};

/// Calls by number. `arguments` stand in the order of the declaration and are reversed here.
inline Outcome call_id(IDispatchAbi& object, DispatchId id, std::uint16_t flags,
                       const std::vector<VariantRecord>& arguments = {}, Named named = {}) {
  std::vector<VariantRecord> all = named.values;
  all.insert(all.end(), arguments.rbegin(), arguments.rend());
  DispatchParams parameters{all.data(), named.ids.data(), static_cast<std::uint32_t>(all.size()),
                            static_cast<std::uint32_t>(named.ids.size())};
  Outcome outcome;
  outcome.result = object.Invoke(id, &kNullGuid, 0, flags, &parameters, &outcome.value,
                                 &outcome.exception, &outcome.argument_index);
  return outcome;
}

/// Calls by name; kUnknownName when the object does not know it.
inline Outcome call(IDispatchAbi& object, std::u16string name,
                    const std::vector<VariantRecord>& arguments = {}) {
  const auto id = find_id(object, std::move(name));
  if (id) return call_id(object, *id, call_flag::kMethod, arguments);
  Outcome outcome;
  outcome.result = kUnknownName;
  return outcome;
}

inline Outcome get(IDispatchAbi& object, std::u16string name) {
  const auto id = find_id(object, std::move(name));
  if (id) return call_id(object, *id, call_flag::kPropertyGet);
  Outcome outcome;
  outcome.result = kUnknownName;
  return outcome;
}

inline Outcome put(IDispatchAbi& object, std::u16string name, const VariantRecord& value,
                   const std::vector<VariantRecord>& arguments = {},
                   std::uint16_t flags = call_flag::kPropertyPut) {
  const auto id = find_id(object, std::move(name));
  if (id) return call_id(object, *id, flags, arguments, {{kPropertyPutValue}, {value}});
  Outcome outcome;
  outcome.result = kUnknownName;
  return outcome;
}

struct Releaser {
  template <typename Interface>
  void operator()(Interface* object) const {
    object->Release();
  }
};
/// A counted reference of the host.
template <typename Interface>
using Held = std::unique_ptr<Interface, Releaser>;

template <typename Interface>
Held<Interface> ask(IUnknownAbi& object) {
  void* found = nullptr;
  const Hresult result = object.QueryInterface(&Interface::kId, &found);
  return Held<Interface>(result == kOk ? static_cast<Interface*>(found) : nullptr);
}

/// A sink of events on the host's side.
class CountingSink final : public IDispatchAbi {
 public:
  explicit CountingSink(const Guid& events) : events_(events) {}
  virtual ~CountingSink() = default;

  Hresult BVCONN_CALL QueryInterface(const Guid* id, void** object) noexcept override {
    *object = nullptr;
    if (!(*id == IUnknownAbi::kId) && !(*id == IDispatchAbi::kId) && !(*id == events_)) {
      return kNoInterface;
    }
    *object = static_cast<IDispatchAbi*>(this);
    AddRef();
    return kOk;
  }
  std::uint32_t BVCONN_CALL AddRef() noexcept override { return ++references; }
  std::uint32_t BVCONN_CALL Release() noexcept override { return --references; }
  Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t*) noexcept override { return kNotImplemented; }
  Hresult BVCONN_CALL GetTypeInfo(std::uint32_t, std::uint32_t, void**) noexcept override {
    return kNotImplemented;
  }
  Hresult BVCONN_CALL GetIDsOfNames(const Guid*, char16_t**, std::uint32_t, std::uint32_t,
                                    DispatchId*) noexcept override {
    return kNotImplemented;
  }
  Hresult BVCONN_CALL Invoke(DispatchId id, const Guid*, std::uint32_t, std::uint16_t flags,
                             DispatchParams* parameters, VariantRecord*, ExceptionRecord*,
                             std::uint32_t*) noexcept override {
    raised.push_back(id);
    last_flags = flags;
    last_argument_count = parameters->count;
    return answer;
  }

  std::uint32_t references = 1;
  std::vector<DispatchId> raised;
  std::uint16_t last_flags = 0;
  std::uint32_t last_argument_count = 999;
  Hresult answer = kOk;

 private:
  const Guid events_;
};

}  // namespace bvconn::test
