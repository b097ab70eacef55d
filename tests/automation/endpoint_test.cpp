#include "bvconn/automation/endpoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "bvconn/automation/class_builder.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/marks.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/soap/xml_document.h"
#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::Sightings;
using automation::Value;
using automation::detail::FixedText;
using automation::detail::MarkForm;
using automation::detail::World;
using testing::ElementsAre;

// The interface by name and the form with an endpoint, run side by side: `Member::invoke` puts the
// same arguments into the same slots, and one thunk or the other takes them from there.
Endpoint endpoint_in_use;

template <auto operation, std::size_t... index>
Value call_by_endpoint(void* object, const void* const* slots, std::index_sequence<index...>) {
  namespace detail = automation::detail;
  using Type = detail::TypeOf<operation>;
  auto& connector = *static_cast<typename Type::Class*>(object);
  static_cast<void>(slots);
  const auto run = [&] {
    return call<operation>(
        endpoint_in_use, connector,
        detail::from_slot<
            detail::ArgumentOf<operation, detail::kPlaces<operation>.place_of_own(index)>>(
            slots[detail::kPlaces<operation>.place_of_own(index)])...);
  };
  if constexpr (std::is_void_v<typename Type::Result>) {
    run();
    return {};
  } else {
    return detail::BridgeOf<typename Type::Result>::to(run());
  }
}

template <auto operation>
Value with_all(void* object, const void* const* slots) {
  return call_by_endpoint<operation>(
      object, slots, std::make_index_sequence<automation::detail::kPlaces<operation>.own()>());
}

template <auto operation>
Value with_fewest(void* object, const void* const* slots) {
  return call_by_endpoint<operation>(
      object, slots, std::make_index_sequence<automation::detail::kPlaces<operation>.required>());
}

struct Row {
  std::string cls;
  std::string name;
  Value (*with_all)(void* object, const void* const* slots);
  Value (*with_fewest)(void* object, const void* const* slots);
};

std::vector<Row> rows() {
  std::vector<Row> all;
#define BVCONN_CLASS(name, function) \
  {                                  \
    using C = name;                  \
    const std::string cls = #name;
#define BVCONN_ROW(name, ...) \
  all.push_back({cls, #name, &with_all<&C::name>, &with_fewest<&C::name>});
#define BVCONN_ROW_READ_ONLY(name)
#define BVCONN_ROW_EVENT(name)
#define BVCONN_ROW_OPTIONAL(...) ""
#define BVCONN_ROW_REQUIRED(...) ""
#define BVCONN_CLASS_END }
#include "bvconn/automation/classes/connector_rows.inc"
  return all;
}

// Lines of the log tell times.
class StillClock final : public Clock {
 public:
  Date now() override { return from_civil({.year = 2007, .month = 1, .day = 5}); }
  double timer() override { return 100.0; }
};

platform::Platform standing_still(platform::Platform world) {
  world.clock = [] { return std::make_shared<StillClock>(); };
  return world;
}

std::string text_of(const Variant& value) {
  if (value.is(Variant::Type::kNode)) return value.node() ? node_to_xml(value.node()) : "no node";
  if (!value.is(Variant::Type::kArray)) return shown(value);
  std::string text = "array";
  for (const Variant& item : value.array().items()) text.append(" ").append(text_of(item));
  return text;
}

/// All that a call did, one line for each thing.
std::vector<std::string> lines_of(const Sightings& seen) {
  std::vector<std::string> lines;
  for (const auto& post : seen.posts) {
    lines.push_back(post.url + " " + post.soap_action.value_or("no action") + " " +
                    std::to_string(post.timeout_ms) + " " + post.text);
  }
  for (const auto& call : seen.dal_calls) {
    std::string line = call.object + "." + call.operation + (call.by_name ? " by name" : "");
    for (const Variant& argument : call.arguments) line.append(" ").append(text_of(argument));
    lines.push_back(line);
  }
  for (const auto& line : seen.log) {
    lines.push_back(line.action + " " + line.cls + "." + line.method + " " + line.text);
  }
  return lines;
}

class EndpointCalls : public testing::TestWithParam<bool> {
 protected:
  std::vector<std::string> run(const ClassInfo& info, const Member& operation,
                               const std::vector<Value>& values) {
    session() = SessionState();
    BVConnectorObject control;
    control.InitTorvexDAL("http://dal.example");
    control.UsingTorvexDAL(GetParam());
    control.UseDALSave(GetParam());
    world.forget();
    std::string end = "returned";
    try {
      const auto object = info.make();
      static_cast<void>(operation.invoke(object.get(), values));
    } catch (const Error& error) {
      end = hex_number(error.number) + " " + error.source + " " + error.description;
    }
    auto lines = lines_of(world.sightings());
    if (!world.sightings().empty()) ++seen;
    lines.push_back(end);
    return lines;
  }

  static Member with_thunk(const Member& operation,
                           Value (*thunk)(void* object, const void* const* slots)) {
    Member other = operation;
    other.thunks.invoke = thunk;
    return other;
  }

  static std::string given_text(const Member& operation, std::string_view argument,
                                const std::vector<Value>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (operation.arguments[i].name != argument) continue;
      const auto* given = std::get_if<Variant>(&values[i]);
      return given != nullptr ? given->string() : "";
    }
    return "";
  }

  // Each run has arguments of its own, since operations may change a node that they are given.
  void compare(const Row& row, MarkForm form, const std::optional<FixedText>& fixed, bool fewest) {
    const ClassInfo& info = *automation::find_class(row.cls);
    const Member& operation = *info.find(row.name);
    const auto arguments = [&] {
      auto call = automation::detail::marked_call(operation, form, fixed);
      for (std::size_t i = 0; fewest && i < call.values.size(); ++i) {
        if (operation.arguments[i].optional) call.values[i] = Value();
      }
      return call;
    };
    const auto by_name = arguments();
    const auto lines = run(info, operation, by_name.values);
    const auto by_endpoint = arguments();
    endpoint_in_use = {.url = given_text(operation, "aServerURL", by_endpoint.values),
                       .session = given_text(operation, "aSessionID", by_endpoint.values)};
    const Member other = with_thunk(operation, fewest ? row.with_fewest : row.with_all);
    EXPECT_EQ(run(info, other, by_endpoint.values), lines) << row.cls << "." << row.name;
  }

  void compare_all(bool fewest) {
    const auto all = rows();
    EXPECT_EQ(all.size(), 205U);
    for (const Row& row : all) {
      const Member& operation = *automation::find_class(row.cls)->find(row.name);
      const int before = seen;
      for (const auto& fixed : automation::detail::cases_of(operation)) {
        for (const MarkForm form : {MarkForm::kText, MarkForm::kNumber, MarkForm::kArray}) {
          compare(row, form, fixed, fewest);
        }
      }
      if (seen == before) silent.push_back(row.name);
    }
  }

  World world;
  platform::ScopedPlatform scope{standing_still(world.platform())};
  int seen = 0;
  std::vector<std::string> silent;
};

// These three send nothing, by either form.
TEST_P(EndpointCalls, SendWhatTheInterfaceByNameSends) {
  compare_all(false);
  EXPECT_THAT(silent, ElementsAre("setStatusToNegotiating", "setStatusToLostOpportunity",
                                  "UpdateHeartBeatTime"));
}

TEST_P(EndpointCalls, LeaveOutWhatTheInterfaceByNameLeavesOut) {
  compare_all(true);
}

INSTANTIATE_TEST_SUITE_P(Routes, EndpointCalls, testing::Bool(), [](const auto& route) {
  return route.param ? std::string("Dal") : std::string("Soap");
});

class EndpointCall : public testing::Test {
 protected:
  // What the last request was: its address, and its text.
  std::string sent_to() const { return world.sent.back().url; }
  const std::string& request() const { return world.sent.back().text; }
  bool holds(const std::string& text) const { return request().find(text) != std::string::npos; }

  RecordingPlatform world;
  const Endpoint office{.url = "http://h/soap", .session = "S-1"};
};

TEST_F(EndpointCall, PutsServerAndSessionWhereTheOperationWantsThem) {
  BVQuoteConnector quotes;
  world.reply(envelope_text("r", "<return>Q</return>"));
  const SoapNode quote = call<&BVQuoteConnector::getExistingQuote>(office, quotes, "Q-1");
  EXPECT_EQ(quote.Value(), Variant("Q"));
  EXPECT_EQ(sent_to(), "http://h/soap");
  EXPECT_TRUE(holds(">S-1</userID>")) << request();
  EXPECT_TRUE(holds(">Q-1</GID>")) << request();

  BVSearchConnector search;  // The session first.
  world.reply(envelope_text("r", "<return>B</return>"));
  call<&BVSearchConnector::SearchForBrands>(office, search);
  EXPECT_EQ(sent_to(), "http://h/soap");
  EXPECT_TRUE(holds(">S-1</userID>")) << request();

  BVRequestForQuoteConnector requests;  // Both at the end.
  world.reply(envelope_text("r", "<return>R</return>"));
  call<&BVRequestForQuoteConnector::getRFQs>(office, requests, "Q-2");
  EXPECT_EQ(sent_to(), "http://h/soap");
  EXPECT_TRUE(holds(">S-1</userID>") && holds(">Q-2<")) << request();
}

TEST_F(EndpointCall, TakesAnAggregateInBraces) {
  BVInvoiceConnector invoices;
  world.reply(envelope_text("r", "<return>I</return>"));
  call<&BVInvoiceConnector::InvoiceSearch>(office, invoices, {.strInvoiceNumber = "4711"});
  EXPECT_TRUE(holds("4711")) << request();
}

TEST_F(EndpointCall, LeavesOutASessionThatMayBeLeftOut) {
  BVGenericConnector any;
  const SoapNode node = SoapNode::make("n");
  world.reply(envelope_text("r", "<return>I</return>"));
  call<&BVGenericConnector::Send>({.url = "http://h/"}, any, "urn:T", "m", "Root", node);
  EXPECT_FALSE(holds("userID")) << request();
  world.reply(envelope_text("r", "<return>I</return>"));
  call<&BVGenericConnector::Send>(office, any, "urn:T", "m", "Root", node, 7000);
  EXPECT_TRUE(holds(">S-1</userID>")) << request();
  EXPECT_THAT(world.record.transport, testing::Contains("Timeout 7000"));
}

TEST_F(EndpointCall, FailsAsTheOperationDoes) {
  BVQuoteConnector quotes;
  world.reply(fault_text("Server", "no such quote"));
  try {
    call<&BVQuoteConnector::getExistingQuote>(office, quotes, "Q-1");
    FAIL() << "it did not fail";
  } catch (const Error& error) {
    EXPECT_EQ(error.description, "no such quote");
  }
}

template <auto operation, class C, class... Own>
constexpr bool kTakes = std::is_invocable_v<decltype(call<operation>), const Endpoint&, C&, Own...>;

// What an operation does not take, its form with an endpoint does not take either.
static_assert(kTakes<&BVQuoteConnector::getExistingQuote, BVQuoteConnector, const char*>);
static_assert(!kTakes<&BVQuoteConnector::getExistingQuote, BVQuoteConnector>);
static_assert(!kTakes<&BVQuoteConnector::getExistingQuote, BVQuoteConnector, int>);
static_assert(
    !kTakes<&BVQuoteConnector::getExistingQuote, BVQuoteConnector, const char*, const char*>);
static_assert(!kTakes<&BVQuoteConnector::getExistingQuote, BVOrderConnector, const char*>);
static_assert(kTakes<&BVSearchConnector::SearchForPriceHistory, BVSearchConnector>);
static_assert(kTakes<&BVSearchConnector::SearchForPriceHistory, BVSearchConnector, const char*>);
static_assert(!automation::detail::IsOperation<&BVGenericConnector::SoapEnvelope>);

}  // namespace
}  // namespace bvconn::test
