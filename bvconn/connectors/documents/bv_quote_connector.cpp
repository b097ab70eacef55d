#include "bvconn/connectors/documents/bv_quote_connector.h"

#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVQuoteConnector";

constexpr Operation kGetExistingQuote{
    // deliberate [quote-log-name]: errors are logged under the project connector's operation.
    .log = {.cls = kClass,
            .method = "getExistingQuote",
            .brackets = true,
            .error = "getExistingProject"},
    .method = &BVMethods::Quote,
    .service = &BVServices::Quote,
};
// deliberate [small-log-name]: its lines begin with a small letter.
constexpr Operation kSetQuoteStatusToQuoted{
    .log = {.cls = kClass, .method = "setQuoteStatusToQuoted"},
    .name = "SetQuoteStatusToQuoted",
    .method = &BVMethods::SetQuoteStatusToQuoted,
    .service = &BVServices::Quote,
};
// deliberate [no-row]: the next two have their wire names from no row.
// deliberate [no-tail]: nor do they have a tail.
// deliberate [misspelt-overidden]: operation and wire name alike.
constexpr Operation kCanExpirationBeOveridden{
    .log = {.cls = kClass, .method = "canExpirationBeOveridden", .form = LogForm::kNone},
    .wire = "canExpirationBeOveridden",
    .service = &BVServices::Quote,
    .tail = Tail::kNone,
};
// deliberate [no-row]: as above.
constexpr Operation kGetNewPriceExpirationDate{
    .log = {.cls = kClass, .method = "getNewPriceExpirationDate", .form = LogForm::kNone},
    .wire = "getNewPriceExpirationDate",
    .service = &BVServices::Quote,
    .tail = Tail::kNone,
};

std::string expiration_text(const Variant& value) {
  constexpr std::string_view kPicture = "m/d/yyyy";
  if (value.is(Variant::Type::kDate)) return conversions::format_date(value.date(), kPicture);
  return conversions::format_text(to_text(value), kPicture);
}

}  // namespace

SoapNode BVQuoteConnector::getExistingQuote(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aGID) {
  return ConnectorMethodFrame(kGetExistingQuote, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [soap-alone]: the next operation has another route, this one has none.
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

SoapNode BVQuoteConnector::SetQuoteStatusToQuoted(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  std::string_view aGID) {
  return ConnectorMethodFrame(kSetQuoteStatusToQuoted, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().QuoteService().SetQuoteStatusToQuoted(aGID));
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

bool BVQuoteConnector::canExpirationBeOveridden(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aQuoteGID) {
  return ConnectorMethodFrame(kCanExpirationBeOveridden, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).add("GID", aQuoteGID).send().boolean();
  });
}

std::string BVQuoteConnector::getNewPriceExpirationDate(std::string_view aServerURL,
                                                        std::string_view aSessionID,
                                                        std::string_view aQuoteGID) {
  return ConnectorMethodFrame(
      kGetNewPriceExpirationDate, {aServerURL, aSessionID}, [&](Call& call) {
        return expiration_text(call.request(kSoapEncoding).add("GID", aQuoteGID).send().value());
      });
}

}  // namespace bvconn
