#include "bvconn/component/connection_point.h"

#include <algorithm>
#include <utility>

#include "bvconn/component/enumerator.h"
#include "bvconn/component/host_calls.h"

namespace bvconn::component {
namespace {

// The connections as they were when the enumerator was asked for.
struct ConnectionSource {
  std::vector<std::pair<std::uint32_t, Reference<IDispatchAbi>>> connections;

  std::size_t count() const { return connections.size(); }
  ConnectionRecord produce(std::size_t index) const {
    const auto& [cookie, sink] = connections[index];
    sink->AddRef();
    return {sink.get(), cookie};
  }
  static void drop(ConnectionRecord& record) noexcept { record.sink->Release(); }
};

struct PointSource {
  Reference<IConnectionPointAbi> point;

  static std::size_t count() { return 1; }
  IConnectionPointAbi* produce(std::size_t /*index*/) const {
    point->AddRef();
    return point.get();
  }
  static void drop(IConnectionPointAbi* dropped) noexcept { dropped->Release(); }
};

Reference<IDispatchAbi> dispatch_of(IUnknownAbi& sink, const Guid& id) noexcept {
  void* found = nullptr;
  if (!succeeded(sink.QueryInterface(&id, &found))) return {};
  return Reference<IDispatchAbi>(static_cast<IDispatchAbi*>(found));
}

}  // namespace

Hresult BVCONN_CALL ConnectionPoint::QueryInterface(const Guid* id, void** object) noexcept {
  if (object == nullptr) return kNullPointer;
  *object = nullptr;
  if (id == nullptr) return kNullPointer;
  if (!(*id == IUnknownAbi::kId) && !(*id == IConnectionPointAbi::kId)) return kNoInterface;
  *object = static_cast<IConnectionPointAbi*>(this);
  AddRef();
  return kOk;
}

Hresult BVCONN_CALL ConnectionPoint::GetConnectionInterface(Guid* id) noexcept {
  if (id == nullptr) return kNullPointer;
  *id = events_;
  return kOk;
}

Hresult BVCONN_CALL
ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainerAbi** owner) noexcept {
  if (owner == nullptr) return kNullPointer;
  owner_.AddRef();
  *owner = &owner_;
  return kOk;
}

Hresult BVCONN_CALL ConnectionPoint::Advise(IUnknownAbi* sink, std::uint32_t* cookie) noexcept {
  if (cookie == nullptr) return kNullPointer;
  *cookie = 0;
  if (sink == nullptr) return kNullPointer;
  Reference<IDispatchAbi> counted = dispatch_of(*sink, events_);
  if (!counted) counted = dispatch_of(*sink, IDispatchAbi::kId);
  if (!counted) return kCannotConnect;
  return guarded([&] {
    const std::lock_guard lock(mutex_);
    connections_.push_back({.cookie = last_cookie_ + 1, .sink = std::move(counted)});
    *cookie = ++last_cookie_;
    return kOk;
  });
}

Hresult BVCONN_CALL ConnectionPoint::Unadvise(std::uint32_t cookie) noexcept {
  // The sink is let go of outside the lock: it may call back.
  Reference<IDispatchAbi> dropped;
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(connections_, cookie, &Connection::cookie);
  if (found == connections_.end()) return kNoConnection;
  dropped = std::move(found->sink);
  connections_.erase(found);
  return kOk;
}

Hresult BVCONN_CALL ConnectionPoint::EnumConnections(IEnumConnectionsAbi** connections) noexcept {
  if (connections == nullptr) return kNullPointer;
  *connections = nullptr;
  return guarded([&] {
    ConnectionSource source;
    const std::lock_guard lock(mutex_);
    for (const Connection& connection : connections_) {
      source.connections.emplace_back(connection.cookie, connection.sink);
    }
    *connections =
        new Enumerator<IEnumConnectionsAbi, ConnectionRecord, ConnectionSource>(std::move(source));
    return kOk;
  });
}

void ConnectionPoint::fire(DispatchId event) {
  std::vector<Reference<IDispatchAbi>> sinks;
  {
    const std::lock_guard lock(mutex_);
    for (const Connection& connection : connections_) sinks.push_back(connection.sink);
  }
  for (const auto& sink : sinks) {
    DispatchParams none{};
    host_invoke(*sink.get(), event, call_flag::kMethod, none, nullptr, nullptr);
  }
}

IEnumConnectionPointsAbi* make_point_enumerator(ConnectionPoint& point) {
  return new Enumerator<IEnumConnectionPointsAbi, IConnectionPointAbi*, PointSource>(
      PointSource{Reference<IConnectionPointAbi>::share(&point)});
}

}  // namespace bvconn::component
