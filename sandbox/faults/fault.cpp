#include "sandbox/faults/fault.h"

#include <algorithm>
#include <array>
#include <limits>

namespace bvconn::sandbox {
namespace {

constexpr std::array kKinds{
    FaultKind{Misconduct::kSoapFault, "soap-fault", "a SOAP fault, on both routes",
              "code text detail status", false},
    FaultKind{Misconduct::kDalError, "dal-error", "an error of the data access layer, in JSON",
              "number source text status", false},
    FaultKind{Misconduct::kStatus, "status", "an HTTP status with a page in HTML, or with nothing",
              "status page text", false},
    FaultKind{Misconduct::kDelay, "delay", "the right answer, later", "", true},
    FaultKind{Misconduct::kDrip, "drip", "the right answer, a few bytes at a time",
              "bytes every_ms", true},
    FaultKind{Misconduct::kClose, "close", "the end of the connection in place of a status line",
              "", true},
    FaultKind{Misconduct::kCloseInBody, "close-in-body",
              "the end of the connection in the middle of the body", "after_bytes", true},
    FaultKind{Misconduct::kReset, "reset",
              "a reset of the connection, before the status line or in the body", "after_bytes",
              true},
    FaultKind{Misconduct::kWrongLength, "wrong-length", "a Content-Length that is not the body's",
              "by", true},
    FaultKind{Misconduct::kBadChunk, "bad-chunk", "a chunk whose size is no number", "", true},
    FaultKind{Misconduct::kGzip, "gzip", "the right answer, compressed", "", true},
    FaultKind{Misconduct::kCutGzip, "cut-gzip", "a compressed answer that ends too early",
              "after_bytes", true},
    FaultKind{Misconduct::kWrongCharset, "wrong-charset",
              "an answer that is not in the encoding that it names", "charset", true},
    FaultKind{Misconduct::kCutXml, "cut-xml", "an answer whose XML ends too early", "after_bytes",
              true},
    FaultKind{Misconduct::kMalformedXml, "malformed-xml", "an answer with a tag that is not closed",
              "", true},
    FaultKind{Misconduct::kEmptyBody, "empty-body", "the right status and nothing behind it", "",
              true},
    FaultKind{Misconduct::kBigBody, "big-body",
              "the right answer with so many bytes more in its first text, made on the way",
              "bytes", true},
    FaultKind{Misconduct::kMultiRef, "multi-ref",
              "the right answer with references in place of what lies deeper", "", true},
    FaultKind{Misconduct::kOtherAnswer, "other-answer",
              "the answer to the request before this one on the same route", "", true},
};

constexpr std::int64_t kAny = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLongest_ms = 3'600'000;
constexpr std::int64_t kLargest = std::int64_t{1} << 50;

constexpr std::array kFields{
    FaultField{"name", &FaultRule::name, "its name, fault-1 and so on without one", 0, 0, true},
    FaultField{"operation", &FaultRule::operation,
               "only calls of it, as BVInvoiceConnector.GetInvoice or BVInvoiceConnector.*", 0, 0,
               true},
    FaultField{"route", &FaultRule::route, "only calls on this route, soap or dal", 0, 0, true},
    FaultField{"session", &FaultRule::session, "only calls of this session", 0, 0, true},
    FaultField{"header", &FaultRule::header,
               "only requests with this header, as 'X-Test' or 'X-Test: value'", 0, 0, true},
    FaultField{"skip", &FaultRule::skip, "the first so many go by", 0, kAny, true},
    FaultField{"count", &FaultRule::count, "so many are hit, then no more", 1, kAny, true},
    FaultField{"probability", &FaultRule::probability, "the share that is hit, from 0 to 1", 0, 1,
               true},
    FaultField{"seed", &FaultRule::seed, "which ones that are, 1 by itself", 0, kAny, true},
    FaultField{"delay_ms", &FaultRule::delay_ms, "milliseconds before the first byte", 0,
               kLongest_ms, true},
    FaultField{"run", &FaultRule::run, "whether the request is done all the same", 0, 0, true},
    FaultField{"code", &FaultRule::code, "of the fault, SOAP-ENV:Server by itself"},
    FaultField{"text", &FaultRule::text, "of the fault, of the error or of the page"},
    FaultField{"detail", &FaultRule::detail, "of the fault, as XML or as text"},
    FaultField{"status", &FaultRule::status, "of HTTP", 200, 599},
    FaultField{"page", &FaultRule::page, "html or empty"},
    FaultField{"number", &FaultRule::number, "of the error",
               std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::uint32_t>::max()},
    FaultField{"source", &FaultRule::source, "of the error"},
    FaultField{"bytes", &FaultRule::bytes, "how many", 1, kLargest},
    FaultField{"every_ms", &FaultRule::every_ms, "milliseconds from some bytes to the next ones", 1,
               kLongest_ms},
    FaultField{"after_bytes", &FaultRule::after_bytes, "bytes of the body that still leave", 0,
               kLargest},
    FaultField{"by", &FaultRule::by, "added to the length, or taken from it", -kLargest, kLargest},
    FaultField{"charset", &FaultRule::charset, "the encoding that is named"},
};

}  // namespace

std::span<const FaultKind> fault_kinds() {
  return kKinds;
}

std::span<const FaultField> fault_fields() {
  return kFields;
}

const FaultKind& kind_of(Misconduct kind) {
  return *std::find_if(kKinds.begin(), kKinds.end(),
                       [kind](const FaultKind& each) { return each.kind == kind; });
}

bool takes(const FaultKind& kind, const FaultField& field) {
  if (field.is_common) return true;
  const std::string_view all = kind.fields;
  for (std::size_t at = 0; at < all.size();) {
    const std::string_view name = all.substr(at, all.find(' ', at) - at);
    if (name == field.name) return true;
    at += name.size() + 1;
  }
  return false;
}

}  // namespace bvconn::sandbox
