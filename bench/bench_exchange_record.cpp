// What the record of exchanges costs a call: the steps of an exchange on a transport that does
// nothing, with the eight exchanges that are kept by default and with none. The difference is the
// record's.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/core/recording.h"
#include "bvconn/core/session_state.h"

namespace {

/// Hands out the same reply again and again, without a copy of its own in the measured time.
class IdleTransport final : public bvconn::HTTPTransport {
 public:
  explicit IdleTransport(std::size_t reply_size) : reply_(reply_size, 'r') {
    facts_.went_out = true;
    facts_.http_status = 200;
    facts_.reply_headers.assign(
        "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: 512\r\n"
        "Date: Fri, 05 Jan 2007 13:04:09 GMT\r\nServer: bench\r\n\r\n");
  }

  void Option(std::string_view, std::string_view) override {}
  void setProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void SOAPAction(std::string_view) override {}
  void Timeout(std::int32_t) override {}
  void Send(std::string_view, std::string_view) override {}
  std::string Receive(std::string_view) override { return std::move(reply_); }
  void give_back(std::string reply) { reply_ = std::move(reply); }
  const bvconn::WireFacts* LastWire() const override { return &facts_; }

 private:
  std::string reply_;
  bvconn::WireFacts facts_;
};

void call(benchmark::State& state) {
  const auto kept = static_cast<std::size_t>(state.range(0));
  const auto size = static_cast<std::size_t>(state.range(1));
  bvconn::session() = bvconn::SessionState();
  bvconn::session().KeepExchanges(kept);
  IdleTransport transport(size);
  const std::string request(size, 'q');
  for (auto round : state) {
    const bvconn::RecordedCall record("BVInvoiceConnector", "GetInvoice",
                                      "http://sales.example:8080/soap", "session 4711");
    bvconn::set_soap_action(transport, "urn:InvoiceService");
    bvconn::send_recorded(transport, "http://sales.example:8080/soap", request);
    transport.give_back(bvconn::receive_recorded(transport));
  }
}

// 0.5 KB, the bound of what is kept, and far above it.
BENCHMARK(call)->ArgNames({"kept", "bytes"})->ArgsProduct({{0, 8}, {512, 64 << 10, 1 << 20}});

}  // namespace
