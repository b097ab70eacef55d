// Plays a component host that makes objects, calls members of them by any number with any flags,
// counts and types, and passes on what it was given. Its memory is sound, as the binary interface
// asks for; everything else about its calls may be wrong.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/component/class_factory.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/lifetime.h"
#include "bvconn/component/memory.h"
#include "component/host.h"
#include "fuzzing.h"
#include "memory/quiet_world.h"

namespace {

using namespace bvconn::component;  // NOLINT(google-build-using-namespace): the interface under
                                    // test
namespace test = bvconn::test;
namespace vt = variant_type;
using bvconn::fuzz::Choices;
using bvconn::fuzz::require;

constexpr std::string_view kReply =
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/' "
    "xmlns:i='http://www.w3.org/2001/XMLSchema-instance' "
    "xmlns:d='http://www.w3.org/2001/XMLSchema'>"
    "<s:Body><r><return><GID>G-1</GID><Price i:type='d:double'>1.5</Price>"
    "<Day i:type='d:dateTime'>2007-01-05T00:00:00</Day><None i:nil='1'/></return></r></s:Body>"
    "</s:Envelope>";

constexpr std::array kResults{
    kOk,           kNullPointer, kInvalidArgument, kMemberNotFound,    kParameterNotFound,
    kTypeMismatch, kException,   kOverflow,        kBadParameterCount, kParameterNotOptional,
};

// The element's type stands in front of the record in arrays of the library's alone.
constexpr std::uint64_t kFeaturesOfHosts = 0xFFFFU ^ array_feature::kHasType;
constexpr std::size_t kObjectsMax = 12;
constexpr std::size_t kCallsMax = 24;
constexpr std::uint32_t kElementsMax = 6;

/// The host: its objects, and the memory that its arguments lie in until the call has ended.
class Host {
 public:
  explicit Host(Choices& choices) : choices_(choices) {}
  ~Host() {
    objects_.clear();
    require(own_object_.references == 1, "an object of the host is still held");
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void run() {
    for (std::size_t call = 0; call < kCallsMax && !choices_.done(); ++call) {
      if (objects_.empty() || choices_.below(8) == 0) {
        make_object();
      } else if (choices_.below(16) == 0) {
        objects_.erase(objects_.begin() + static_cast<std::ptrdiff_t>(chosen()));
      } else {
        invoke();
      }
      forget_arguments();
    }
  }

 private:
  std::size_t chosen() { return choices_.below(objects_.size()); }

  void keep(test::Held<IDispatchAbi> object) {
    if (object == nullptr) return;
    if (objects_.size() == kObjectsMax) objects_.pop_front();
    objects_.push_back(std::move(object));
  }

  void make_object() {
    const auto classes = component_classes();
    const Guid& id = classes[choices_.below(classes.size())].id;
    const test::Held<IClassFactoryAbi> factory(make_class_factory(maker_of(id)));
    void* made = nullptr;
    const Hresult result = factory->CreateInstance(nullptr, &IDispatchAbi::kId, &made);
    require(result == kOk && made != nullptr, "an object that cannot be made");
    keep(test::Held<IDispatchAbi>(static_cast<IDispatchAbi*>(made)));
  }

  StringPointer make_string() {
    if (choices_.below(8) == 0) return nullptr;
    std::u16string text;
    for (const char c : choices_.text(24)) text.push_back(static_cast<unsigned char>(c));
    if (choices_.below(4) == 0) text.push_back(static_cast<char16_t>(choices_.number(2)));
    return strings_.emplace_back(text).get();
  }

  ArrayRecord* make_array_record(std::uint16_t type) {
    if (choices_.below(8) == 0) return nullptr;
    // Room for the widest element, whatever the record says of its elements.
    auto& data = buffers_.emplace_back(std::size_t{kElementsMax} * 2);
    ArrayRecord& record = arrays_.emplace_back();
    record.dimensions = choices_.below(8) == 0 ? static_cast<std::uint16_t>(choices_.byte()) : 1;
    record.features = static_cast<std::uint16_t>(choices_.number(2) & kFeaturesOfHosts);
    record.element_size = choices_.below(8) == 0 ? choices_.byte() : element_size(type);
    record.bounds[0].count = static_cast<std::uint32_t>(choices_.below(kElementsMax));
    record.bounds[0].lower = static_cast<std::int32_t>(choices_.number(1));
    if (record.dimensions > 1) record.dimensions = 2;
    record.data = choices_.below(16) == 0 ? nullptr : data.data();
    fill(data, type, record.bounds[0].count);
    return &record;
  }

  void fill(std::vector<VariantRecord>& data, std::uint16_t type, std::uint32_t count) {
    auto* bytes = reinterpret_cast<std::byte*>(data.data());
    for (std::uint32_t i = 0; i < count; ++i) {
      const VariantRecord element = make_value(type == vt::kVariant ? make_type() : type);
      if (type == vt::kVariant) {
        data[i] = element;
      } else {
        std::memcpy(bytes + i * element_size(type), &element.value, element_size(type));
      }
    }
  }

  std::uint16_t make_type() {
    constexpr std::array<std::uint16_t, 16> kCommon{vt::kString,
                                                    vt::kString,
                                                    vt::kString,
                                                    vt::kInt32,
                                                    vt::kInt32,
                                                    vt::kBoolean,
                                                    vt::kEmpty,
                                                    vt::kDouble,
                                                    vt::kDispatch,
                                                    vt::kError,
                                                    vt::kInt16,
                                                    vt::kArray | vt::kString,
                                                    vt::kDate,
                                                    vt::kNull,
                                                    vt::kArray | vt::kVariant,
                                                    vt::kByReference | vt::kVariant};
    if (choices_.below(4) != 0) return kCommon[choices_.below(kCommon.size())];
    const auto type = static_cast<std::uint16_t>(choices_.below(40));
    const std::uint16_t marks[] = {0, vt::kArray, vt::kByReference, vt::kArray | vt::kByReference,
                                   0x1000};
    return static_cast<std::uint16_t>(type | marks[choices_.below(std::size(marks))]);
  }

  /// Of a type that nobody knows, all zeros.
  VariantRecord make_value(std::uint16_t type) {
    VariantRecord record{};
    record.type = type;
    if (++depth_ > 6) {
      record.type = vt::kEmpty;
    } else if ((type & vt::kByReference) != 0) {
      record.value.reference = make_target(static_cast<std::uint16_t>(type & ~vt::kByReference));
    } else if ((type & vt::kArray) != 0) {
      record.value.array = make_array_record(static_cast<std::uint16_t>(type & ~vt::kArray));
    } else {
      make_simple(record);
    }
    --depth_;
    return record;
  }

  void* make_target(std::uint16_t type) {
    if (choices_.below(16) == 0) return nullptr;
    VariantRecord& target = targets_.emplace_back();
    if (type == vt::kVariant) {
      target = make_value(make_type());
      return &target;
    }
    target.value = make_value(type).value;
    return &target.value;
  }

  /// One of the library's, one of the host's own, or none.
  IDispatchAbi* choose_object() {
    const std::size_t choice = choices_.below(8);
    if (choice == 0) return nullptr;
    return choice == 1 ? &own_object_ : objects_[chosen()].get();
  }

  void make_simple(VariantRecord& record) {
    switch (record.type) {
      case vt::kString:
        record.value.string = make_string();
        break;
      case vt::kDispatch:
      case vt::kUnknown:
        record.value.dispatch = choose_object();
        break;
      case vt::kError:
        record.value.error =
            choices_.flag() ? kParameterNotFound : static_cast<Hresult>(choices_.number(4));
        break;
      default:
        if (record.type == vt::kVariant) break;
        record.value.int64 = static_cast<std::int64_t>(choices_.number(choices_.below(9)));
    }
  }

  void invoke() {
    // A place of its own, as the arguments may be this very object.
    IDispatchAbi* object = objects_[chosen()].get();
    constexpr std::uint16_t kFlags[] = {
        call_flag::kMethod, call_flag::kPropertyGet, call_flag::kPropertyPut,
        call_flag::kMethod | call_flag::kPropertyGet, call_flag::kPropertyPutReference};
    const std::uint16_t flags = choices_.below(16) == 0
                                    ? static_cast<std::uint16_t>(choices_.number(2))
                                    : kFlags[choices_.below(std::size(kFlags))];
    const auto id = choices_.below(16) == 0 ? static_cast<DispatchId>(choices_.number(4))
                                            : static_cast<DispatchId>(choices_.byte());
    std::vector<VariantRecord> arguments(choices_.below(30));
    for (VariantRecord& argument : arguments) argument = make_value(make_type());
    std::vector<DispatchId> names = make_names(flags, arguments.size());
    DispatchParams parameters{arguments.data(), names.data(),
                              static_cast<std::uint32_t>(arguments.size()),
                              static_cast<std::uint32_t>(names.size())};
    call(*object, id, flags, parameters);
  }

  std::vector<DispatchId> make_names(std::uint16_t flags, std::size_t arguments) {
    std::vector<DispatchId> names;
    const bool writes = (flags & (call_flag::kPropertyPut | call_flag::kPropertyPutReference)) != 0;
    if (writes && choices_.below(8) != 0) names.push_back(kPropertyPutValue);
    if (choices_.below(4) == 0) {
      for (std::size_t count = choices_.below(arguments + 2); count > 0; --count) {
        names.push_back(static_cast<std::int8_t>(choices_.byte()));
      }
    }
    return names;
  }

  void call(IDispatchAbi& object, DispatchId id, std::uint16_t flags, DispatchParams& parameters) {
    test::Outcome outcome;
    const bool wants_result = choices_.below(8) != 0;
    outcome.result = object.Invoke(id, choices_.flag() ? &kNullGuid : nullptr, 0, flags,
                                   &parameters, wants_result ? &outcome.value : nullptr,
                                   &outcome.exception, &outcome.argument_index);
    check(outcome, parameters.count);
    if (outcome.value.type == vt::kDispatch && outcome.value.value.dispatch != nullptr) {
      keep(test::Held<IDispatchAbi>(std::exchange(outcome.value.value.dispatch, nullptr)));
    }
  }

  static void check(const test::Outcome& outcome, std::uint32_t arguments) {
    const auto is_known = [&](Hresult result) { return result == outcome.result; };
    require(std::any_of(kResults.begin(), kResults.end(), is_known), "an unknown result",
            std::to_string(outcome.result));
    const bool has_exception = outcome.exception.result != 0;
    require(has_exception == (outcome.result == kException), "an exception in the wrong place");
    require(!has_exception || outcome.exception.result < 0 || outcome.exception.result > 0xFFFF,
            "an exception that passes for success");
    require(outcome.result == kOk || outcome.value.type == vt::kEmpty, "a failure with a result");
    require(
        outcome.argument_index == test::Outcome::kUntouched || outcome.argument_index < arguments,
        "an argument that is none of the call's");
  }

  void forget_arguments() {
    strings_.clear();
    arrays_.clear();
    buffers_.clear();
    targets_.clear();
  }

  Choices& choices_;
  test::CountingSink own_object_{kNullGuid};
  std::deque<test::Held<IDispatchAbi>> objects_;
  std::deque<test::HostString> strings_;
  std::deque<ArrayRecord> arrays_;
  std::deque<std::vector<VariantRecord>> buffers_;
  std::deque<VariantRecord> targets_;
  int depth_ = 0;
};

void check_good_call() {
  const ComponentClass* methods = find_component_class("BVConn.BVMethods");
  const test::Held<IDispatchAbi> object(maker_of(methods->id)());
  require(test::get(*object, u"GetInvoice").text() == u"getInvoice",
          "the good call fails afterwards");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  {
    const test::QuietWorld world(kReply);
    Host(choices).run();
    check_good_call();
  }
  require(can_unload() == kOk, "objects that nobody holds are still alive");
  return 0;
}
