#pragma once

#include <cstdint>

/// The numbers that `Error::number` can hold; `explain` says of each what it means and what helps.
/// A service object's failure may bring any other number of the server's.
namespace bvconn::error_numbers {

constexpr std::int32_t from_bits(std::uint32_t bits) {
  return static_cast<std::int32_t>(bits);
}

/// The base that server fault codes are added to; no error itself.
inline constexpr std::int32_t kObjectErrorBase = from_bits(0x80040000);

// The platform's own, raised with the source "BVConn".
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kObjectNotSet = 91;
/// An exception that is no `Error`, with its words as the description.
inline constexpr std::int32_t kFailed = from_bits(0x80004005);

// SOAP: envelopes, nodes, XML.
inline constexpr std::int32_t kSoapFault = from_bits(0x80044201);
inline constexpr std::int32_t kNotWellFormed = from_bits(0x80044202);
inline constexpr std::int32_t kNotASoapEnvelope = from_bits(0x80044203);
inline constexpr std::int32_t kNoSuchNode = from_bits(0x80044204);
inline constexpr std::int32_t kUnwritableText = from_bits(0x80044205);
inline constexpr std::int32_t kSoapLimit = from_bits(0x80044206);

// HTTP.
inline constexpr std::int32_t kCannotConnect = from_bits(0x80044301);
inline constexpr std::int32_t kTimeout = from_bits(0x80044302);
inline constexpr std::int32_t kTls = from_bits(0x80044303);
inline constexpr std::int32_t kProxy = from_bits(0x80044304);
inline constexpr std::int32_t kHttpStatus = from_bits(0x80044305);
inline constexpr std::int32_t kBadReply = from_bits(0x80044306);
inline constexpr std::int32_t kConnectionLost = from_bits(0x80044307);
inline constexpr std::int32_t kBadUrlOrHeader = from_bits(0x80044308);
inline constexpr std::int32_t kUnknownOption = from_bits(0x80044309);

// The heart beat, the check of an acknowledgement's answer, the faults of the RFQ connector.
inline constexpr std::int32_t kHeartBeatNotOk = from_bits(0x80040064);
inline constexpr std::int32_t kUnexpectedAnswer = from_bits(0x80042AF9);
inline constexpr std::int32_t kRfqFault = from_bits(0x80042B5D);

// Faults of the server's that an operation turns into errors of their own, by the fault's code.
// They have no description.
/// `GetInvoice` and `GetSAPInvoice`: the fault code 10041.
inline constexpr std::int32_t kInvoiceFault = from_bits(0x80042739);
/// `SaveOrderReconcile`: 10081.
inline constexpr std::int32_t kSaveReconcileFault = from_bits(0x80042761);
/// `GetOrderReconcile`: 10011 and 10012; deliberate [two-codes-one-error].
inline constexpr std::int32_t kGetReconcileFault = from_bits(0x8004271B);
/// `AssocInvoiceAndOrderReconcile`: 10061.
inline constexpr std::int32_t kAssociateFault = from_bits(0x8004274D);
/// `AutoReconcileSingle` and `AutoReconcileMultiple`: 10071.
inline constexpr std::int32_t kAutoReconcileFault = from_bits(0x80042757);

// Files: settings and the log.
inline constexpr std::int32_t kSettingsNotToml = from_bits(0x80041001);
inline constexpr std::int32_t kSettingsUnusable = from_bits(0x80041002);
inline constexpr std::int32_t kLogFile = from_bits(0x80041003);
inline constexpr std::int32_t kSettingsLock = from_bits(0x80041004);

}  // namespace bvconn::error_numbers
