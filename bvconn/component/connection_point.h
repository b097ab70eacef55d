#pragma once

#include <mutex>
#include <vector>

#include "bvconn/component/counted.h"

namespace bvconn::component {

/// The outgoing interface of an object: the sinks that listen to it. It is a part of its owner,
/// which it shares the count of references with, but has an identity of its own.
class ConnectionPoint final : public IConnectionPointAbi {
 public:
  ConnectionPoint(IConnectionPointContainerAbi& owner, const Guid& events)
      : owner_(owner), events_(events) {}

  Hresult BVCONN_CALL QueryInterface(const Guid* id, void** object) noexcept override;
  std::uint32_t BVCONN_CALL AddRef() noexcept override { return owner_.AddRef(); }
  std::uint32_t BVCONN_CALL Release() noexcept override { return owner_.Release(); }

  Hresult BVCONN_CALL GetConnectionInterface(Guid* id) noexcept override;
  Hresult BVCONN_CALL
  GetConnectionPointContainer(IConnectionPointContainerAbi** owner) noexcept override;
  /// The sink must offer the interface of the events or, as some hosts' do, `IDispatch` alone; it
  /// is called as the latter.
  Hresult BVCONN_CALL Advise(IUnknownAbi* sink, std::uint32_t* cookie) noexcept override;
  Hresult BVCONN_CALL Unadvise(std::uint32_t cookie) noexcept override;
  Hresult BVCONN_CALL EnumConnections(IEnumConnectionsAbi** connections) noexcept override;

  const Guid& events() const { return events_; }
  /// Calls every sink that is connected now, in the order in which they were. What a sink answers
  /// is its own affair.
  void fire(DispatchId event);

 private:
  struct Connection {
    std::uint32_t cookie = 0;
    Reference<IDispatchAbi> sink;
  };

  IConnectionPointContainerAbi& owner_;
  const Guid events_;
  std::mutex mutex_;
  std::vector<Connection> connections_;
  std::uint32_t last_cookie_ = 0;
};

/// The enumerator of an object with one connection point.
IEnumConnectionPointsAbi* make_point_enumerator(ConnectionPoint& point);

}  // namespace bvconn::component
