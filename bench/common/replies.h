#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// What all programs here send and read: one request, and the replies to it.
namespace bench {

/// A call that is made, by the path of its URL.
struct Case {
  std::string_view name;
  /// Rows of eight typed fields; 0 for the one invoice.
  std::size_t rows = 0;
  bool is_fault = false;
  bool is_chunked = false;
};

inline constexpr std::array kCases{
    Case{.name = "small"},
    Case{.name = "rows200", .rows = 200},
    Case{.name = "rows20000", .rows = 20'000},
    Case{.name = "fault", .is_fault = true},
    Case{.name = "chunked", .rows = 200, .is_chunked = true},
};

/// The case of this name; null where there is none.
const Case* find_case(std::string_view name);

/// The URL of a case, below that of the server.
std::string url_of(const std::string& server, const Case& which);

inline constexpr std::string_view kSession = "S-1";
inline constexpr std::string_view kInvoice = "U-2";
inline constexpr std::string_view kService = "urn:InvoiceService";

/// The request as the connector sends it.
std::string request();

/// An envelope with rows of eight fields: three strings (one with a reference, one beyond ASCII), a
/// number of each kind, a date, a boolean, and a remark. Without types each field is its text.
std::string rows_envelope(std::size_t rows, bool typed = true);

/// The envelope that answers a call.
std::string envelope(const Case& which);

/// What a reader of the whole reply can say: the number of the invoice, the words of the fault, or
/// the rows with the last one's number.
std::string facts(const Case& which);
std::string facts_of_rows(std::size_t rows, std::string_view last_number);

}  // namespace bench
