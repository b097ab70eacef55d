#include "words/raised_numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "bvconn/automation/class_builder.h"
#include "bvconn/core/envelope.h"
#include "bvconn/core/transport.h"
#include "bvconn/dal/dal_switch.h"
#include "bvconn/dal/service_objects.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::test {
namespace {

using error_numbers::kNoSuchNode;
using error_numbers::kNotWellFormed;
using error_numbers::kObjectNotSet;
using error_numbers::kOverflow;
using error_numbers::kSoapFault;
using error_numbers::kSubscriptOutOfRange;
using error_numbers::kTypeMismatch;
using testing::Contains;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::int32_t kOwnNumber = 4711;

/// Operations that fail each in its own way.
class Specimen {
 public:
  void SendsNothing(std::string_view) {}

  std::string GivesText(std::string_view aServerURL) {
    return to_text(send(aServerURL).Parameters().Item(0).Value());
  }

  void MapsACode(std::string_view aServerURL) {
    const SoapEnvelope envelope = Global::getEnvelope("maps", "urn:Specimen", "S");
    try {
      Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
    } catch (const Error& error) {
      if (error.number != kSoapFault) throw;
      const auto code = to_text(envelope.Parameters().ItemByName("faultcode", "").Value());
      if (code == "10061") throw Error(kOwnNumber, "Specimen", "");
      throw;
    }
  }

  void HidesTheText(std::string_view aServerURL) {
    try {
      send(aServerURL);
    } catch (const Error& error) {
      throw Error(error.number, error.source, "");
    }
  }

  void TakesAShortNumber(std::string_view aCount) { conversions::text_to_int16(aCount); }
  void TakesAnArray(const StringArray& aCodes) { aCodes.upper_bound(); }
  void TakesANode(const SoapNode& aNode) { aNode.Name(); }
  void AsksTheLayer() { dal::Services().SearchService().SearchForBrands(); }

 private:
  static SoapEnvelope send(std::string_view aServerURL) {
    SoapEnvelope envelope = Global::getEnvelope("gives", "urn:Specimen", "S");
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
    return envelope;
  }
};

RaisedNumbers numbers_of(std::string_view operation) {
  using C = Specimen;
  static const automation::ClassInfo info =
      automation::ClassBuilder<C>("Specimen")
          .operation<&C::SendsNothing>("SendsNothing", {"aServerURL"})
          .operation<&C::GivesText>("GivesText", {"aServerURL"})
          .operation<&C::MapsACode>("MapsACode", {"aServerURL"})
          .operation<&C::HidesTheText>("HidesTheText", {"aServerURL"})
          .operation<&C::TakesAShortNumber>("TakesAShortNumber", {"aCount"})
          .operation<&C::TakesAnArray>("TakesAnArray", {"aCodes"})
          .operation<&C::TakesANode>("TakesANode", {"aNode"})
          .operation<&C::AsksTheLayer>("AsksTheLayer")
          .take();
  return raised_numbers(info, *info.find(operation));
}

TEST(RaisedNumbers, AreNoneWhereNothingCanFail) {
  EXPECT_THAT(numbers_of("SendsNothing").all, IsEmpty());
  EXPECT_EQ(numbers_of("SendsNothing").fault, std::nullopt);
}

TEST(RaisedNumbers, ComeFromEachOddReply) {
  const RaisedNumbers raised = numbers_of("GivesText");
  EXPECT_THAT(raised.all,
              UnorderedElementsAre(kTypeMismatch, kSoapFault, kNotWellFormed, kNoSuchNode));
  EXPECT_EQ(raised.fault, kSoapFault);
  EXPECT_THAT(raised.mapped, IsEmpty());
}

TEST(RaisedNumbers, SetAMappedCodeApartFromOtherFaults) {
  const RaisedNumbers raised = numbers_of("MapsACode");
  EXPECT_THAT(raised.all, Contains(kOwnNumber));
  EXPECT_EQ(raised.fault, kSoapFault);
  EXPECT_THAT(raised.mapped, UnorderedElementsAre(Pair(10061, kOwnNumber)));
}

TEST(RaisedNumbers, TellWhetherAFaultKeepsTheServersText) {
  EXPECT_EQ(numbers_of("GivesText").has_text_by_soap, true);
  EXPECT_EQ(numbers_of("MapsACode").has_text_by_soap, true);
  EXPECT_EQ(numbers_of("HidesTheText").has_text_by_soap, false);
  EXPECT_EQ(numbers_of("SendsNothing").has_text_by_soap, std::nullopt);
}

TEST(RaisedNumbers, ComeFromHostileArguments) {
  EXPECT_THAT(numbers_of("TakesAShortNumber").all, UnorderedElementsAre(kOverflow, kTypeMismatch));
  EXPECT_THAT(numbers_of("TakesAnArray").all, UnorderedElementsAre(kSubscriptOutOfRange));
  EXPECT_THAT(numbers_of("TakesANode").all, UnorderedElementsAre(kObjectNotSet));
}

TEST(RaisedNumbers, AreNoFaultsWhereTheGoodReplyFailsAlike) {
  EXPECT_EQ(numbers_of("TakesANode").fault, std::nullopt);
  EXPECT_THAT(numbers_of("TakesAShortNumber").mapped, IsEmpty());
}

TEST(RaisedNumbers, ComeFromALayerThatIsNotThere) {
  EXPECT_THAT(numbers_of("AsksTheLayer").all, UnorderedElementsAre(kObjectNotSet));
}

}  // namespace
}  // namespace bvconn::test
