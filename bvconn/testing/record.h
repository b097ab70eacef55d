#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/variant.h"

namespace bvconn::test {

/// What a test's world saw, in order, as lines for people. A line is what was done and its
/// arguments, texts in quotes: `EnterMethod Global.sendXML 1`, `SOAPAction "urn:InvoiceService"`,
/// `SearchService.SearchForCustomer("C1")`, `ReadString HKLM\…\tracePort`.
struct Record {
  std::vector<std::string> all;        ///< every line
  std::vector<std::string> log;        ///< the logger's lines alone, questions to it left out
  std::vector<std::string> transport;  ///< the transport's lines alone
  std::vector<std::string> dal;        ///< the calls on service objects alone
  std::vector<std::string> settings;   ///< the calls on the settings alone
  std::vector<std::string> messages;   ///< "title | text" of each message box

  void clear() { *this = Record(); }
};

/// The text of a reply whose Body's first element is `<m:method>` with these parameters (XML).
std::string envelope_text(std::string_view method, std::string_view parameters);
/// The text of a fault. Its parts stand there as they are given: no character is escaped.
std::string fault_text(std::string_view code, std::string_view text);

/// A value as the record shows it: strings in quotes, booleans and 32-bit integers plain, others
/// with the type in front ("int16 7"), an array or a node by its type alone.
std::string shown(const Variant& value);

}  // namespace bvconn::test
