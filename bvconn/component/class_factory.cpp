#include "bvconn/component/class_factory.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "bvconn/component/class_table.h"
#include "bvconn/component/counted.h"
#include "bvconn/component/instance_object.h"
#include "bvconn/component/soap_objects.h"
#include "bvconn/component/support_object.h"
#include "bvconn/platform/error.h"

namespace bvconn::component {
namespace {

class ClassFactory final : public Counted<IClassFactoryAbi> {
 public:
  explicit ClassFactory(ObjectMaker maker) : maker_(std::move(maker)) {}

  Hresult BVCONN_CALL CreateInstance(IUnknownAbi* outer, const Guid* id,
                                     void** object) noexcept override {
    if (object == nullptr) return kNullPointer;
    *object = nullptr;
    if (id == nullptr) return kNullPointer;
    if (outer != nullptr) return kNoAggregation;
    return guarded([&] { return create(id, object); });
  }

  Hresult BVCONN_CALL LockServer(std::int32_t lock) noexcept override {
    if (lock == 0) return unlock_library();
    lock_library();
    return kOk;
  }

 private:
  Hresult create(const Guid* id, void** object) {
    try {
      const Reference<IDispatchAbi> made(maker_());
      return made->QueryInterface(id, object);
    } catch (const Error& error) {
      return succeeded(error.number) ? kFailed : error.number;
    }
  }

  const ObjectMaker maker_;
};

struct HelperRow {
  std::string_view name;
  IDispatchAbi* (*make)();
};

constexpr std::array kHelpers{
    HelperRow{"SoapNode", [] { return make_node_object(SoapNode::make()); }},
    HelperRow{"XMLDocument", &make_document_object},
    HelperRow{"Support", &make_support_object},
};

ObjectMaker helper_maker(std::string_view name) {
  const auto* const row = std::ranges::find(kHelpers, name, &HelperRow::name);
  return row == kHelpers.end() ? ObjectMaker() : ObjectMaker(row->make);
}

}  // namespace

IClassFactoryAbi* make_class_factory(ObjectMaker maker) {
  return new ClassFactory(std::move(maker));
}

ObjectMaker maker_of(const Guid& class_id) {
  const ComponentClass* const row = find_component_class(class_id);
  if (row == nullptr) return {};
  if (row->helper) return helper_maker(row->name);
  const automation::ClassInfo* const info = automation::find_class(row->name);
  if (info == nullptr) return {};
  return [info] { return make_instance_object(*info, kHeartBeatEvents); };
}

}  // namespace bvconn::component
