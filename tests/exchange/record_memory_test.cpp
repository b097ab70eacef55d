#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "bvconn/core/recording.h"
#include "bvconn/core/session_state.h"
#include "support/idle_transport.h"
#include "support/watched_memory.h"

namespace bvconn {
namespace {

using test::FailingMemory;
using test::MemoryCount;
using test::Shortage;

/// Answers without taking memory.
class OneReply final : public test::IdleTransport {
 public:
  std::string Receive(std::string_view) override { return std::move(reply); }
  const WireFacts* LastWire() const override { return &facts; }

  std::string reply;
  WireFacts facts;
};

class IdleObject final : public ServiceObject {
 public:
  std::string_view name() const override { return "SearchService"; }
  std::string invoke(std::string_view, std::span<const Variant>, bool) override { return {}; }
  bool offers(std::string_view) const override { return false; }
};

const std::string kText(512, 'x');

void exchange(OneReply& transport) {
  const RecordedCall call("BVInvoiceConnector", "GetInvoice", "http://sales.example:8080/soap",
                          "a session that is no short one");
  set_soap_action(transport, "urn:InvoiceService");
  send_recorded(transport, "http://sales.example:8080/soap", kText);
  transport.reply = receive_recorded(transport).take_string();
}

TEST(RecordMemory, IsTakenOnceForEachPlaceBySoap) {
  OneReply transport;
  transport.reply = kText;
  transport.facts.reply_headers.assign(kText);
  for (int i = 0; i < 8; ++i) exchange(transport);
  const MemoryCount count;
  for (int i = 0; i < 100; ++i) exchange(transport);
  EXPECT_EQ(count.made(), 0U);
  EXPECT_EQ(session().LastExchange(Secrets::kShown)->reply_headers.text, kText);
  EXPECT_EQ(session().LastExchange()->number, 108U);
}

TEST(RecordMemory, IsTakenOnceForEachPlaceByDal) {
  session() = SessionState();
  session().DALUrl = "http://dal.example:8080/";
  IdleObject object;
  const std::vector<Variant> arguments{kText, true, std::int32_t{5}, Variant::Missing{}};
  const auto invoke = [&] {
    const RecordedCall call("BVSearchConnector", "SearchForBrands", "http://h/", "S");
    static_cast<void>(invoke_recorded(object, "SearchForManufacturersOfBrands", arguments, false));
  };
  for (int i = 0; i < 8; ++i) invoke();
  const MemoryCount count;
  for (int i = 0; i < 100; ++i) invoke();
  EXPECT_EQ(count.made(), 0U);
  EXPECT_EQ(session().LastExchange()->arguments[0].text.text, kText);
}

TEST(RecordMemory, WhereThereIsNoneTheCallGoesOn) {
  session() = SessionState();
  session().clock();
  OneReply transport;
  transport.reply = kText;
  {
    const FailingMemory none(1, Shortage::kOnward);
    exchange(transport);
  }
  EXPECT_TRUE(FailingMemory::has_struck());
  EXPECT_EQ(transport.reply, kText);
  exchange(transport);
  EXPECT_EQ(session().LastExchange()->number, 2U);
}

}  // namespace
}  // namespace bvconn
