#include "bvconn/connectors/documents/bv_quote_connector.h"

#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVQuoteConnector";

constexpr Operation kGetExistingQuote{
    // Errors are logged under the project connector's operation.
    .log = {.cls = kClass,
            .method = "getExistingQuote",
            .brackets = true,
            .error = "getExistingProject"},
    .method = &BVMethods::Quote,
    .service = &BVServices::Quote,
};
constexpr Operation kSetQuoteStatusToQuoted{
    .log = {.cls = kClass, .method = "setQuoteStatusToQuoted"},
    .method = &BVMethods::SetQuoteStatusToQuoted,
    .service = &BVServices::Quote,
};
constexpr Operation kCanExpirationBeOveridden{
    .log = {.cls = kClass, .method = "canExpirationBeOveridden", .form = LogForm::kNone},
    .wire = "canExpirationBeOveridden",
    .service = &BVServices::Quote,
    .tail = Tail::kNone,
};
constexpr Operation kGetNewPriceExpirationDate{
    .log = {.cls = kClass, .method = "getNewPriceExpirationDate", .form = LogForm::kNone},
    .wire = "getNewPriceExpirationDate",
    .service = &BVServices::Quote,
    .tail = Tail::kNone,
};

Call& send_key(Call& call, std::string_view aServerURL, std::string_view aSessionID,
               std::string_view gid) {
  call.envelope(aSessionID, kSoapEncoding).Create("GID", gid, "", "", "");
  return call.send(aServerURL);
}

std::string expiration_text(const Variant& value) {
  constexpr std::string_view kPicture = "m/d/yyyy";
  if (value.is(Variant::Type::kDate)) return conversions::format_date(value.date(), kPicture);
  const std::string text = to_text(value);
  const auto date = conversions::date_of(text);
  return date ? conversions::format_date(*date, kPicture) : text;
}

}  // namespace

SoapNode BVQuoteConnector::getExistingQuote(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aGID) {
  return ConnectorMethodFrame(kGetExistingQuote, [&](Call& call) {
    return send_key(call, aServerURL, aSessionID, aGID).first();
  });
}

SoapNode BVQuoteConnector::SetQuoteStatusToQuoted(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  std::string_view aGID) {
  return ConnectorMethodFrame(kSetQuoteStatusToQuoted, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().QuoteService().SetQuoteStatusToQuoted(aGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, aGID).first();
  });
}

bool BVQuoteConnector::canExpirationBeOveridden(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aQuoteGID) {
  return ConnectorMethodFrame(kCanExpirationBeOveridden, [&](Call& call) {
    return to_boolean(send_key(call, aServerURL, aSessionID, aQuoteGID).value());
  });
}

std::string BVQuoteConnector::getNewPriceExpirationDate(std::string_view aServerURL,
                                                        std::string_view aSessionID,
                                                        std::string_view aQuoteGID) {
  return ConnectorMethodFrame(kGetNewPriceExpirationDate, [&](Call& call) {
    return expiration_text(send_key(call, aServerURL, aSessionID, aQuoteGID).value());
  });
}

}  // namespace bvconn
