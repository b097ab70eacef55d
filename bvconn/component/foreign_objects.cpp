#include "bvconn/component/foreign_objects.h"

#include <cstring>
#include <new>
#include <span>
#include <string>
#include <utility>

#include "bvconn/component/host_calls.h"
#include "bvconn/component/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::component {
namespace {

// Beyond this an object is none that a host builds, but one that holds itself.
constexpr int kDepthMax = 256;
constexpr std::size_t kPartsMax = 1'000'000;

[[noreturn]] void mismatch() {
  throw Error(error_numbers::kTypeMismatch, "BVConn", "The object is not of a kind that fits");
}

Hresult invoke_for(IDispatchAbi& object, DispatchId id, std::uint16_t flags,
                   std::span<VariantRecord> arguments, OwnedVariant& result) {
  DispatchParams parameters{.arguments = arguments.data(),
                            .named_ids = nullptr,
                            .count = static_cast<std::uint32_t>(arguments.size()),
                            .named_count = 0};
  ExceptionRecord exception{};
  const Hresult answer = host_invoke(object, id, flags, parameters, &*result, &exception);
  clear_exception(&exception);
  return answer;
}

class ForeignObject {
 public:
  explicit ForeignObject(IUnknownAbi* object) : object_(query<IDispatchAbi>(object)) {}

  std::optional<DispatchId> find(std::string_view name) const {
    if (!object_) return std::nullopt;
    std::u16string wide = utf16_from_utf8(name);
    DispatchId id = kUnknownId;
    const Hresult result = host_id_of(*object_.get(), wide.data(), id);
    if (!succeeded(result) || id == kUnknownId) return std::nullopt;
    return id;
  }

  // Some hosts refuse "method or read" for what is data.
  OwnedVariant read(DispatchId id) const { return call(id, call_flag::kPropertyGet, {}); }

  OwnedVariant read(std::string_view name) const {
    const auto id = find(name);
    if (!id) mismatch();
    return read(*id);
  }

  OwnedVariant call(DispatchId id, std::uint16_t flags, std::span<VariantRecord> arguments) const {
    OwnedVariant result;
    if (!succeeded(invoke_for(*object_.get(), id, flags, arguments, result))) mismatch();
    return result;
  }

  Reference<IDispatchAbi> reference() const { return object_; }

 private:
  Reference<IDispatchAbi> object_;
};

IUnknownAbi* object_in(const VariantRecord& record) {
  const bool is_object =
      record.type == variant_type::kDispatch || record.type == variant_type::kUnknown;
  return is_object ? record.value.unknown : nullptr;
}

// Copies one tree of nodes.
class NodeReader {
 public:
  explicit NodeReader(const ReadVariant& read) : read_(read) {}

  SoapNode node(const ForeignObject& object, int depth) {
    if (!object.reference() || depth == kDepthMax || ++parts_ > kPartsMax) mismatch();
    SoapNode made = SoapNode::make(text(object, "Name"));
    if (object.find("Namespace")) made.Namespace(text(object, "Namespace"));
    const OwnedVariant nodes = object.read("Nodes");
    if (!append_children(made, ForeignObject(object_in(*nodes)), depth)) {
      made.Value(read_(*object.read("Value")));
    }
    return made;
  }

 private:
  std::string text(const ForeignObject& object, std::string_view name) const {
    return to_text(read_(*object.read(name)));
  }

  // Whether there are any.
  bool append_children(const SoapNode& made, const ForeignObject& nodes, int depth) {
    if (!nodes.reference()) return false;
    const std::int32_t count = to_int32(read_(*nodes.read("Count")));
    const auto item = nodes.find("Item");
    if (!item) mismatch();
    constexpr std::uint16_t kEither = call_flag::kMethod | call_flag::kPropertyGet;
    for (std::int32_t index = 0; index < count; ++index) {
      VariantRecord argument{};
      argument.type = variant_type::kInt32;
      argument.value.int32 = index;
      const OwnedVariant child = nodes.call(*item, kEither, {&argument, 1});
      made.Nodes().Append(child_of(object_in(*child), depth));
    }
    return count > 0;
  }

  // One of ours is taken as it is.
  SoapNode child_of(IUnknownAbi* object, int depth) {
    auto own = object == nullptr ? std::nullopt : own_node(object);
    return own ? *std::move(own) : node(ForeignObject(object), depth + 1);
  }

  const ReadVariant& read_;
  std::size_t parts_ = 0;
};

}  // namespace

std::optional<SoapNode> foreign_node(IUnknownAbi* object, const ReadVariant& read) {
  const ForeignObject foreign(object);
  if (!foreign.find("Name") || !foreign.find("Nodes")) return std::nullopt;
  return NodeReader(read).node(foreign, 0);
}

std::optional<std::vector<Variant>> foreign_array(IUnknownAbi* object, const ReadVariant& read) {
  const ForeignObject foreign(object);
  const auto length = foreign.find("length");
  if (!length) return std::nullopt;
  const std::int32_t count = to_int32(read(*foreign.read(*length)));
  if (count < 0 || static_cast<std::size_t>(count) > kPartsMax) mismatch();
  std::vector<Variant> items;
  for (std::int32_t index = 0; index < count; ++index) {
    const auto item = foreign.find(std::to_string(index));
    items.push_back(item ? read(*foreign.read(*item)) : Variant());
  }
  return items;
}

std::optional<Variant> foreign_value(IUnknownAbi* object, const ReadVariant& read) {
  const ForeignObject foreign(object);
  if (!foreign.reference()) return std::nullopt;
  // Every object of a script has such a text ("[object Object]"), and so have others whose default
  // member is the one that makes it.
  if (foreign.find("hasOwnProperty") || foreign.find("toString") == kDefaultMember) {
    return std::nullopt;
  }
  return read(*foreign.read(kDefaultMember));
}

XMLDocument* CallDocuments::stand_in(IUnknownAbi* object) {
  const ForeignObject foreign(object);
  const auto load = foreign.find("load");
  if (!load) return nullptr;
  documents_.push_back(
      {.object = foreign.reference(), .load = *load, .stand_in = std::make_unique<XMLDocument>()});
  return documents_.back().stand_in.get();
}

void CallDocuments::keep(Reference<IDocumentHandleAbi> own) {
  own_.push_back(std::move(own));
}

void CallDocuments::load_all() const {
  for (const Document& document : documents_) {
    const std::string text = document.stand_in->xml();
    OwnedVariant bytes;
    bytes->value.array =
        create_array(variant_type::kUint8, static_cast<std::uint32_t>(text.size()));
    if (bytes->value.array == nullptr) throw std::bad_alloc();
    bytes->type = variant_type::kArray | variant_type::kUint8;
    if (!text.empty()) std::memcpy(bytes->value.array->data, text.data(), text.size());
    OwnedVariant ignored;
    invoke_for(*document.object.get(), document.load, call_flag::kMethod, {&*bytes, 1}, ignored);
  }
}

}  // namespace bvconn::component
