#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <limits>
#include <memory>
#include <string>

// Declares the entry points.
#define BVCONN_ENTRY_POINTS
#include "bvconn/component/abi.h"
#include "bvconn/component/class_table.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/windows/components.h"
#include "support/idle_logger.h"
#include "support/idle_settings.h"
#include "support/idle_transport.h"

// One and the same call, whose transport sends nothing, in C++ and by its name: what calling by
// name costs.
namespace bvconn::test {
namespace {

constexpr const char* kReply =
    "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><r><return>"
    "<InvoiceNumber>700101</InvoiceNumber><Sum>12.5</Sum></return></r></s:Body></s:Envelope>";

class AnsweringTransport final : public IdleTransport {
 public:
  std::string Receive(std::string_view) override { return kReply; }
};

platform::Platform idle_platform() {
  platform::Platform idle = platform::system_platform();
  idle.transport = [] { return std::make_shared<AnsweringTransport>(); };
  idle.settings = [] { return std::make_unique<IdleSettings>(); };
  idle.logger = [] { return std::make_shared<IdleLogger>(); };
  return idle;
}

IDispatch* new_connector() {
  const component::Guid id = component::class_id_of("BVInvoiceConnector");
  void* made = nullptr;
  if (::DllGetClassObject(&id, &component::IClassFactoryAbi::kId, &made) != component::kOk) {
    return nullptr;
  }
  auto* const factory = static_cast<IClassFactory*>(made);
  IDispatch* object = nullptr;
  factory->CreateInstance(nullptr, __uuidof(IDispatch), reinterpret_cast<void**>(&object));
  factory->Release();
  return object;
}

void call_late_bound(IDispatch* object, VARIANT (&values)[3]) {
  wchar_t name[] = L"GetInvoice";
  LPOLESTR names[] = {name};
  DISPID id = DISPID_UNKNOWN;
  ASSERT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  DISPPARAMS parameters{values, nullptr, 3, 0};
  VARIANT result{};
  ASSERT_EQ(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                           nullptr, nullptr),
            S_OK);
  ASSERT_EQ(result.vt, VT_DISPATCH);
  ::VariantClear(&result);
}

/// Microseconds for each of many calls.
template <class Call>
double time_of(Call call) {
  constexpr int kCalls = 200;
  const auto begun = std::chrono::steady_clock::now();
  for (int turn = 0; turn < kCalls; ++turn) call();
  const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begun;
  return took.count() / kCalls;
}

TEST(ALateBoundCall, CostsAtMostFifteenMicrosecondsMoreThanOneInCpp) {
  const platform::ScopedPlatform platform(idle_platform());
  BVInvoiceConnector connector;
  IDispatch* const object = new_connector();
  ASSERT_NE(object, nullptr);
  VARIANT values[3] = {};
  const wchar_t* const texts[3] = {L"INV-1001", L"ANNA", L"http://127.0.0.1/soap"};
  for (std::size_t place = 0; place < 3; ++place) {
    values[place].vt = VT_BSTR;
    values[place].bstrVal = ::SysAllocString(texts[place]);
  }
  // The quickest turns are those that nothing else of the machine stood in.
  double in_cpp = std::numeric_limits<double>::max();
  double late_bound = in_cpp;
  for (int turn = 0; turn < 100; ++turn) {
    in_cpp = std::min(in_cpp, time_of([&] {
                        const SoapNode invoice =
                            connector.GetInvoice("http://127.0.0.1/soap", "ANNA", "INV-1001");
                        ASSERT_EQ(invoice.Nodes().Count(), 2);
                      }));
    late_bound = std::min(late_bound, time_of([&] { call_late_bound(object, values); }));
  }
  for (VARIANT& value : values) ::VariantClear(&value);
  object->Release();
  std::cout << "GetInvoice: " << in_cpp << " us in C++, " << late_bound << " us late-bound\n";
  EXPECT_LE(late_bound - in_cpp, 15.0);
}

}  // namespace
}  // namespace bvconn::test
