#include "bvconn/platform/explain.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

using namespace error_numbers;  // NOLINT(google-build-using-namespace): the table names them all

struct Explanation {
  std::int32_t number = 0;
  std::string_view text;
};

constexpr std::array kExplanations{
    Explanation{kOverflow,
                "A number is too large for its type, in an argument or in the reply. Pass a "
                "smaller one; if the arguments are right, the record of the exchange shows what "
                "came back."},
    Explanation{kOutOfMemory,
                "There was not enough memory for the call. Close what is not needed, or ask for "
                "less at once."},
    Explanation{kSubscriptOutOfRange,
                "An array was used that was never filled, or an element that it has not. Fill the "
                "array before it is passed."},
    Explanation{kTypeMismatch,
                "A value is not of the kind that is needed: a text that is no number or date, a "
                "node or nothing at all in the place of a simple value. Correct the argument; if "
                "the arguments are right, the record of the exchange shows what came back."},
    Explanation{kObjectNotSet,
                "Something is used that is not there: an empty node, or the data access layer on a "
                "thread that never called InitTorvexDAL. Pass a node that was made, and initialise "
                "the layer on each thread that uses it."},
    Explanation{kFailed,
                "Something failed that the library has no number for; the description has its "
                "words. Look first at what the application brought itself, a transport or a "
                "service object, and otherwise report it together with the record of the "
                "exchange."},
    Explanation{kSoapFault,
                "The server read the request and refused it. Its words are in the description, or "
                "where an operation hides them in the record of the exchange: correct what they "
                "name."},
    Explanation{kNotWellFormed,
                "What should be XML is not: as a rule an empty reply, or the page of a web server "
                "or proxy in front of the service. Check the server's address, and look at the "
                "reply in the record of the exchange."},
    Explanation{kNotASoapEnvelope,
                "The reply is XML, but no envelope of SOAP 1.1. Check that the address is that of "
                "the SOAP service, not of a page about it, and that the service speaks SOAP 1.1."},
    Explanation{kNoSuchNode,
                "A node is missing, most often because the server answered without a result. Check "
                "the keys that were asked for, and look at the reply in the record of the "
                "exchange."},
    Explanation{kUnwritableText,
                "A text or a name has characters that XML cannot carry, a control character for "
                "instance. Remove them from the arguments."},
    Explanation{
        kSoapLimit,
        "A document passes a limit: it nests too deep, is too large, or refers to itself or "
        "to what is not there. Look for the fault in the node that was passed or, in the "
        "record of the exchange, in the reply."},
    Explanation{kCannotConnect,
                "The server cannot be reached: its name cannot be resolved, or nothing answers at "
                "its address. Check the address, the network and the firewall, and whether the "
                "server runs."},
    Explanation{kTimeout,
                "The server did not answer in time. Ask for less at once, find out whether the "
                "server is overloaded, or allow more time: with defaultTimeOut in the settings, or "
                "a TimeoutScope around the call."},
    Explanation{
        kTls,
        "No secure connection came about: as a rule the server's certificate is not "
        "trusted, has expired, or belongs to another name. Check the address and this "
        "machine's clock, and have the certificate's authority added to the trusted ones or "
        "named by BVCONN_CA_FILE."},
    Explanation{kProxy,
                "The proxy cannot be reached or refuses to connect. All requests go through one "
                "where tracePort is set in the settings: start the program that listens there, or "
                "empty the value."},
    Explanation{kHttpStatus,
                "The request was refused with the HTTP status in the description. With 401 or 403 "
                "sign in again, with 404 or a redirect correct the address; with 500 and above the "
                "server itself failed, which its own log explains."},
    Explanation{kBadReply,
                "The reply is no proper HTTP, or larger than the limit. Check that address and "
                "port are those of the service, or ask for less at once."},
    Explanation{kConnectionLost,
                "The connection was lost before the reply was complete, so the server may have "
                "done what it was asked. Look there before calling again; if it happens often, ask "
                "those who run the server and the network between."},
    Explanation{kBadUrlOrHeader,
                "The address is missing or no URL of http or https, or a header's text has a line "
                "break or another control character. Write the address with its scheme, as in "
                "http://server:8080/path."},
    Explanation{kUnknownOption,
                "The transport has no option of this name. Use one of those that "
                "http_transport.h lists."},
    Explanation{kHeartBeatNotOk,
                "The server answered the heart beat, but not with OK. Look at the answer in the "
                "record of the exchange; if other calls fail too, sign in again."},
    Explanation{kUnexpectedAnswer,
                "The answer about the acknowledgement has no address that begins with http: (one "
                "with https: is none). Check the key or the document that was passed, and look at "
                "the answer in the record of the exchange."},
    Explanation{kRfqFault,
                "The server refused the call about a request for quote. Its words are in the "
                "description: correct what they name."},
    Explanation{kInvoiceFault,
                "The server refused to give the invoice, with the fault code 10041. Check its UID; "
                "the server's own words are in the record of the exchange."},
    Explanation{kSaveReconcileFault,
                "The server refused to save the order reconcile, with the fault code 10081. Check "
                "the document; the server's own words are in the record of the exchange."},
    Explanation{kGetReconcileFault,
                "The server refused to give the order reconcile, with the fault code 10011 or "
                "10012. Check its UID and the agent, and whether somebody else holds it; the "
                "server's own words are in the record of the exchange."},
    Explanation{kAssociateFault,
                "The server refused to associate the invoice with the order reconcile, with the "
                "fault code 10061. Check both keys and the agent; the server's own words are in "
                "the record of the exchange."},
    Explanation{kAutoReconcileFault,
                "The server refused to reconcile automatically, with the fault code 10071. Check "
                "the invoices and the agent; the server's own words are in the record of the "
                "exchange."},
    Explanation{kSettingsNotToml,
                "A settings file is not TOML; the description names file, line and column. Correct "
                "that line, or move the file away to start without its values."},
    Explanation{kSettingsUnusable,
                "A settings file cannot be read or written. Check the rights of the file and its "
                "folder, and that there is room on the disk."},
    Explanation{kLogFile,
                "The log file cannot be written. Check the rights of the file and its folder and "
                "the room on the disk, or name another file with BVCONN_LOG_FILE."},
    Explanation{kSettingsLock,
                "The lock on a settings file was not to be had, as a rule because another program "
                "holds it. Try again; if it stays so, end the program that holds it and check the "
                "rights of the folder."},
};

std::string unknown(const Error& error) {
  std::string text = "This number is none of the library's own";
  if (!error.source.empty()) text.append("; it comes from ").append(error.source);
  text.append(". ");
  return text.append(error.description.empty()
                         ? "What it means is known there alone; look at the record of the exchange."
                         : "What it means is known there alone; the description has its words.");
}

std::string_view about_request(Outcome outcome) {
  switch (outcome) {
    case Outcome::kNotSent:
      return " Nothing was sent.";
    case Outcome::kUnknown:
      return " The request went out and its outcome is unknown: look whether it was done before "
             "calling again.";
    case Outcome::kNone:
    case Outcome::kAnswered:
      return "";
  }
  return "";
}

}  // namespace

std::string explain(const Error& error) {
  const auto* const found = std::ranges::find(kExplanations, error.number, &Explanation::number);
  std::string text = found == kExplanations.end() ? unknown(error) : std::string(found->text);
  return text.append(about_request(error.outcome));
}

}  // namespace bvconn
