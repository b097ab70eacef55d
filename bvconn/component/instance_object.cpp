#include "bvconn/component/instance_object.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

#include "bvconn/component/connection_point.h"
#include "bvconn/component/named_object.h"
#include "bvconn/component/values.h"

namespace bvconn::component {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::Value;

// The tables of the classes in use; they are made once, since a table is as large as its class. A
// list that only grows at its head needs no lock, which all threads that make objects would share.
class SharedTables {
 public:
  ~SharedTables() {
    for (const Entry* entry = first_; entry != nullptr;) delete std::exchange(entry, entry->next);
  }

  const MemberTable& of(const ClassInfo& info) {
    Entry* first = first_.load(std::memory_order_acquire);
    if (const Entry* known = find(first, info)) return known->table;
    auto made = std::make_unique<Entry>(Entry{info, member_table(info), first});
    while (!first_.compare_exchange_weak(made->next, made.get(), std::memory_order_acq_rel)) {
      if (const Entry* known = find(made->next, info)) return known->table;
    }
    return made.release()->table;
  }

 private:
  struct Entry {
    const ClassInfo& info;
    const MemberTable table;
    Entry* next;
  };

  static const Entry* find(const Entry* entry, const ClassInfo& info) {
    while (entry != nullptr && &entry->info != &info) entry = entry->next;
    return entry;
  }

  std::atomic<Entry*> first_{nullptr};
};

const MemberTable& shared_table(const ClassInfo& info) {
  static SharedTables tables;
  return tables.of(info);
}

template <typename... Others>
class InstanceObject : public NamedObject<Others...> {
 public:
  explicit InstanceObject(const ClassInfo& info)
      : info_(info), table_(shared_table(info)), instance_(info.make()) {}

  std::string_view class_name() const noexcept override { return info_.name; }

 protected:
  void* instance() const { return instance_.get(); }
  void end_instance() { instance_.reset(); }

 private:
  const MemberTable& table() const override { return table_; }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    const Member& slot = slot_of(member);
    return record_from_value(slot.callable() ? slot.invoke(instance(), values)
                                             : slot.get(instance()));
  }

  void put(const NamedMember& member, std::span<const Value> values) override {
    slot_of(member).set(instance(), values.back());
  }

  const Member& slot_of(const NamedMember& member) const {
    return info_.members[static_cast<std::size_t>(member.id - 1)];
  }

  const ClassInfo& info_;
  const MemberTable& table_;
  std::shared_ptr<void> instance_;
};

class EventfulObject final : public InstanceObject<IConnectionPointContainerAbi> {
 public:
  EventfulObject(const ClassInfo& info, const Guid& events)
      : InstanceObject(info), point_(*this, events) {
    DispatchId event = 0;
    for (const Member& member : info.members) {
      if (member.kind != MemberKind::kEvent) continue;
      ++event;
      member.connect(instance(), [this, event] { point_.fire(event); });
    }
  }

  Hresult BVCONN_CALL EnumConnectionPoints(IEnumConnectionPointsAbi** points) noexcept override {
    if (points == nullptr) return kNullPointer;
    *points = nullptr;
    return guarded([&] {
      *points = make_point_enumerator(point_);
      return kOk;
    });
  }

  Hresult BVCONN_CALL FindConnectionPoint(const Guid* id,
                                          IConnectionPointAbi** point) noexcept override {
    if (point == nullptr) return kNullPointer;
    *point = nullptr;
    if (id == nullptr) return kNullPointer;
    if (!(*id == point_.events())) return kNoConnection;
    point_.AddRef();
    *point = &point_;
    return kOk;
  }

 private:
  Guid events() const noexcept override { return point_.events(); }

  // The instance goes first: what it raises on its way still finds the connection point.
  ~EventfulObject() override { end_instance(); }

  ConnectionPoint point_;
};

}  // namespace

IDispatchAbi* make_instance_object(const ClassInfo& info, const Guid& events) {
  const bool eventful = std::ranges::any_of(
      info.members, [](const Member& member) { return member.kind == MemberKind::kEvent; });
  if (eventful) return new EventfulObject(info, events);
  return new InstanceObject<>(info);
}

}  // namespace bvconn::component
