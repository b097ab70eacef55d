// One and the same call, whose transport sends nothing: in C++, by name, and through a component's
// Invoke; with the record of the last eight exchanges, and in C++ without it.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/component/abi.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/platform.h"
#include "common/replies.h"
#include "micro/idle_platform.h"

namespace {

constexpr const char* kUrl = "http://127.0.0.1/soap";

/// The platform of one benchmark; one exchange was kept or so many.
class World {
 public:
  explicit World(std::size_t kept = 8)
      : platform_((bench::use_own_files("0"), bench::idle_platform(envelope(bench::kCases[0])))) {
    bvconn::session().KeepExchanges(kept);
  }

 private:
  bvconn::platform::ScopedPlatform platform_;
};

void call_in_cpp(benchmark::State& state) {
  const World world(static_cast<std::size_t>(state.range(0)));
  bvconn::BVInvoiceConnector connector;
  for (auto round : state) {
    benchmark::DoNotOptimize(connector.GetInvoice(kUrl, bench::kSession, bench::kInvoice));
  }
}
BENCHMARK(call_in_cpp)->ArgName("kept")->Arg(8)->Arg(0);

void call_by_name(benchmark::State& state) {
  using bvconn::Variant;
  using bvconn::automation::Value;
  const World world;
  const auto* const info = bvconn::automation::find_class("BVInvoiceConnector");
  const std::shared_ptr<void> object = info->make();
  const std::array<Value, 3> arguments{Variant(kUrl), Variant(bench::kSession),
                                       Variant(bench::kInvoice)};
  for (auto round : state) {
    benchmark::DoNotOptimize(info->find("GetInvoice")->invoke(object.get(), arguments));
  }
}
BENCHMARK(call_by_name);

namespace component = bvconn::component;

void need(component::Hresult result) {
  if (result != component::kOk) throw std::runtime_error("the component does not answer");
}

component::IDispatchAbi* new_connector() {
  component::Guid class_id{};
  void* made = nullptr;
  need(::BVConnFindClass(u"BVConn.BVInvoiceConnector", &class_id));
  need(::DllGetClassObject(&class_id, &component::IClassFactoryAbi::kId, &made));
  auto* const factory = static_cast<component::IClassFactoryAbi*>(made);
  need(factory->CreateInstance(nullptr, &component::IDispatchAbi::kId, &made));
  factory->Release();
  return static_cast<component::IDispatchAbi*>(made);
}

component::VariantRecord text_record(const std::u16string& text) {
  component::VariantRecord record{};
  record.type = component::variant_type::kString;
  record.value.string = ::BVConnAllocString(text.c_str(), static_cast<std::uint32_t>(text.size()));
  return record;
}

void component_invoke(benchmark::State& state) {
  const World world;
  component::IDispatchAbi* const object = new_connector();
  std::u16string name = u"GetInvoice";
  char16_t* names[] = {name.data()};
  component::DispatchId id = component::kUnknownId;
  need(object->GetIDsOfNames(&component::kNullGuid, names, 1, 0, &id));
  // The last argument comes first.
  std::array<component::VariantRecord, 3> values{text_record(u"U-2"), text_record(u"S-1"),
                                                 text_record(u"http://127.0.0.1/soap")};
  component::DispatchParams parameters{values.data(), nullptr, values.size(), 0};
  for (auto round : state) {
    component::VariantRecord result{};
    component::ExceptionRecord exception{};
    std::uint32_t index = 0;
    need(object->Invoke(id, &component::kNullGuid, 0, component::call_flag::kMethod, &parameters,
                        &result, &exception, &index));
    ::BVConnClearVariant(&result);
  }
  for (component::VariantRecord& value : values) ::BVConnClearVariant(&value);
  object->Release();
}
BENCHMARK(component_invoke);

}  // namespace

BENCHMARK_MAIN();
