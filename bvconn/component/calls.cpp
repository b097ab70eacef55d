#include "bvconn/component/calls.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <vector>

#include "bvconn/component/text.h"
#include "bvconn/component/values.h"
#include "bvconn/platform/error.h"

namespace bvconn::component {
namespace {

using automation::Argument;
using automation::Value;

constexpr std::uint16_t kReads = call_flag::kMethod | call_flag::kPropertyGet;
constexpr std::uint16_t kWrites = call_flag::kPropertyPut | call_flag::kPropertyPutReference;

// One call's arguments on their way from the host's array to the places of the member's arguments.
class ArgumentReader {
 public:
  ArgumentReader(const NamedMember& member, const InvokeRequest& request, bool writes,
                 CallDocuments& documents)
      : member_(member),
        request_(request),
        documents_(documents),
        writes_(writes),
        places_(member.arguments.size() + (writes ? 1 : 0)) {}

  Hresult read(std::vector<Value>& values) {
    const DispatchParams& given = *request_.parameters;
    if (given.named_count > given.count || (given.count != 0 && given.arguments == nullptr) ||
        (given.named_count != 0 && given.named_ids == nullptr)) {
      return kInvalidArgument;
    }
    const auto optional =
        static_cast<std::size_t>(std::ranges::count(member_.arguments, true, &Argument::optional));
    if (given.count < places_.size() - optional || given.count > places_.size()) {
      return kBadParameterCount;
    }
    Hresult result = place_named();
    if (succeeded(result)) result = place_positional();
    if (succeeded(result)) result = convert(values);
    return result;
  }

 private:
  Hresult fail(Hresult result, std::uint32_t index) const {
    if (request_.argument_index != nullptr) *request_.argument_index = index;
    return result;
  }

  Hresult place_named() {
    const DispatchParams& given = *request_.parameters;
    for (std::uint32_t i = 0; i < given.named_count; ++i) {
      const DispatchId id = given.named_ids[i];
      std::optional<std::size_t> place;
      if (id == kPropertyPutValue && writes_) {
        place = value_place();
      } else if (id >= 0 && static_cast<std::size_t>(id) < member_.arguments.size()) {
        place = static_cast<std::size_t>(id);
      }
      if (!place || places_[*place]) return fail(kParameterNotFound, i);
      places_[*place] = i;
    }
    // A value to set that does not say so could be meant as an argument.
    if (writes_ && !places_[value_place()]) return kParameterNotOptional;
    return kOk;
  }

  // The positional arguments stand after the named ones, in reverse.
  Hresult place_positional() {
    const DispatchParams& given = *request_.parameters;
    const std::uint32_t positional = given.count - given.named_count;
    if (positional > member_.arguments.size()) return kBadParameterCount;
    for (std::uint32_t place = 0; place < positional; ++place) {
      const std::uint32_t index = given.count - 1 - place;
      if (places_[place]) return fail(kParameterNotFound, *places_[place]);
      places_[place] = index;
    }
    return kOk;
  }

  Hresult convert(std::vector<Value>& values) const {
    values.resize(places_.size());
    for (std::size_t place = 0; place < places_.size(); ++place) {
      const auto index = places_[place];
      const bool left_out = !index || is_missing(request_.parameters->arguments[*index]);
      if (left_out) {
        if (is_optional(place)) continue;
        return index ? fail(kParameterNotOptional, *index) : kParameterNotOptional;
      }
      const Hresult result = value_from_record(request_.parameters->arguments[*index],
                                               type_of(place), values[place], documents_);
      if (!succeeded(result)) return fail(result, *index);
    }
    return kOk;
  }

  // The value that a property is set to stands behind the arguments.
  std::size_t value_place() const { return member_.arguments.size(); }
  bool is_optional(std::size_t place) const {
    return place != value_place() && member_.arguments[place].optional;
  }
  automation::ValueType type_of(std::size_t place) const {
    return place == value_place() ? member_.put_type : member_.arguments[place].type;
  }

  const NamedMember& member_;
  const InvokeRequest& request_;
  CallDocuments& documents_;
  const bool writes_;
  // For each place the index of its argument in the host's array.
  std::vector<std::optional<std::uint32_t>> places_;
};

// A positive result is no failure, so hosts would lose the small numbers (91, say) as they stand.
// They look for them in a range of their own, and show them again without it.
Hresult scode_of(std::int32_t number) {
  if (number < 1 || number > 0xFFFF) return number;
  return result_from_bits(kSmallNumbers + static_cast<std::uint32_t>(number));
}

Hresult report(const Error& error, ExceptionRecord* exception) {
  if (exception == nullptr) return kException;
  *exception = ExceptionRecord{};
  try {
    exception->source = string_from_utf8(error.source);
    exception->description = string_from_utf8(error.description);
    exception->help_file = string_from_utf8(error.helpFile);
    exception->help_context = static_cast<std::uint32_t>(error.helpContext);
    exception->result = scode_of(error.number);
  } catch (...) {
    free_string(exception->source);
    free_string(exception->description);
    *exception = ExceptionRecord{};
    throw;
  }
  return kException;
}

bool takes_none(const NamedMember& member) {
  return member.arguments.empty() && (member.access & call_flag::kPropertyGet) != 0;
}

// `node.Nodes(0)`: arguments of a property that has none are meant for the default member of the
// object that it gives.
Hresult call_default_of(OwnedVariant given, const InvokeRequest& request) {
  if ((*given).type != variant_type::kDispatch || (*given).value.dispatch == nullptr) {
    return kBadParameterCount;
  }
  return (*given).value.dispatch->Invoke(kDefaultMember, &kNullGuid, request.locale, request.flags,
                                         request.parameters, request.result, request.exception,
                                         request.argument_index);
}

Hresult run(NamedCalls& object, const InvokeRequest& request) {
  const NamedMember* member = object.table().find(request.id);
  if (member == nullptr) return kMemberNotFound;
  const bool writes = (request.flags & kWrites) != 0;
  if (!writes && request.parameters->count != 0 && takes_none(*member)) {
    return call_default_of(object.call(*member, {}), request);
  }
  if ((member->access & request.flags) == 0) return kMemberNotFound;
  CallDocuments documents;
  std::vector<Value> values;
  const Hresult read = ArgumentReader(*member, request, writes, documents).read(values);
  if (!succeeded(read)) return read;
  if (writes) {
    object.put(*member, values);
    return kOk;
  }
  OwnedVariant result = object.call(*member, values);
  documents.load_all();
  if (request.result != nullptr) *request.result = result.release();
  return kOk;
}

Hresult run_reporting_errors(NamedCalls& object, const InvokeRequest& request) {
  try {
    return run(object, request);
  } catch (const Error& error) {
    return report(error, request.exception);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return report(Error(kFailed, "BVConn", error.what()), request.exception);
  }
}

}  // namespace

Hresult invoke(NamedCalls& object, const InvokeRequest& request) noexcept {
  if (request.parameters == nullptr) return kNullPointer;
  if (request.reserved != nullptr && !(*request.reserved == kNullGuid)) return kUnknownInterface;
  const bool reads = (request.flags & kReads) != 0;
  const bool writes = (request.flags & kWrites) != 0;
  if (reads == writes || (request.flags & ~(kReads | kWrites)) != 0) return kInvalidArgument;
  if (request.result != nullptr) *request.result = VariantRecord{};
  try {
    return run_reporting_errors(object, request);
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (...) {
    return kFailed;
  }
}

}  // namespace bvconn::component
