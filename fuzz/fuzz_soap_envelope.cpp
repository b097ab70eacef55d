// Parses an envelope, reads all that it holds, writes it and reads it again, and then moves its
// nodes about. Besides crashes it looks for replies that change when they are written and read, and
// for those that are read otherwise when one was like them before.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "bvconn/platform/thread_record.h"
#include "fuzzing.h"

namespace {

using bvconn::Error;
using bvconn::SoapEnvelope;
using bvconn::SoapNode;
using bvconn::SoapNodes;
using bvconn::Variant;

namespace numbers = bvconn::error_numbers;

/// False for what is no envelope.
bool parse(const SoapEnvelope& envelope, const std::string& text) {
  try {
    envelope.Parse(text, "");
  } catch (const Error& error) {
    bvconn::fuzz::require_error(error, {numbers::kSoapFault, numbers::kNotWellFormed,
                                        numbers::kNotASoapEnvelope, numbers::kSoapLimit});
    return error.number == numbers::kSoapFault;
  }
  return true;
}

/// An envelope that holds something, which a text that is no envelope must leave as it is.
const std::string kGood =
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><r><return>good"
    "</return></r></s:Body></s:Envelope>";

void require_good(const SoapEnvelope& envelope, const std::string& text) {
  bvconn::fuzz::require(envelope.MethodName() == "r" && envelope.Parameters().Count() == 1 &&
                            envelope.Parameters().Item(0).Value() == Variant("good"),
                        "a text that is no envelope changed one", text);
}

/// All nodes below a list, through references as often as they are referred to; false when they are
/// too many to be written out.
bool collect(const SoapNodes& nodes, std::vector<SoapNode>& found) {
  constexpr std::size_t kMost = 2'000;
  std::vector<SoapNodes> waiting{nodes};
  while (!waiting.empty()) {
    const SoapNodes next = waiting.back();
    waiting.pop_back();
    for (const SoapNode& node : next) {
      found.push_back(node);
      waiting.push_back(node.Nodes());
      if (found.size() > kMost) return false;
    }
  }
  return true;
}

/// Reads the value; an error is a text that is not of its type, or an array that is too deep.
void read(const SoapNode& node) {
  try {
    const Variant value = node.Value();
    const bool is_wrapper = value.is(Variant::Type::kNode);
    if (node.nil() && !value.empty() && !is_wrapper) {
      bvconn::fuzz::found("nil with a value", node.Name() + " " + node.Type());
    }
  } catch (const Error&) {
  }
}

/// Whether some type has a blank or a mark in what should be its name. Such a name is kept as it
/// stands, but where it is written in another place its blanks may go when it is read again.
bool has_odd_type(std::string_view text) {
  constexpr std::string_view kType = "ype=\"";
  for (auto at = text.find(kType); at != std::string_view::npos; at = text.find(kType, at)) {
    at += kType.size();
    const std::string_view value = text.substr(at, text.find('"', at) - at);
    if (value.find_first_of(" \t\r\n&") != std::string_view::npos) return true;
  }
  return false;
}

void write_and_read_again(const SoapEnvelope& envelope) {
  std::string first;
  try {
    first = envelope.Serialize();
  } catch (const Error&) {
    return;  // through references deeper than any document
  }
  const SoapEnvelope again = SoapEnvelope::make();
  bvconn::fuzz::require(parse(again, first), "what was written cannot be read", first);
  bvconn::fuzz::require(has_odd_type(first) || again.Serialize() == first,
                        "what was written reads differently", first);
}

/// What is made of the text, or the error.
std::string read_again(const std::string& text) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  try {
    envelope.Parse(text, "");
  } catch (const Error& error) {
    if (error.number != numbers::kSoapFault) return error.description;
  }
  try {
    return envelope.MethodName() + " " + envelope.Serialize();
  } catch (const Error& error) {
    return error.description;
  }
}

/// Another text in the element that begins or ends at about this place.
void read_one_that_is_like_it(const std::string& text, std::size_t about) {
  const auto end = text.find('>', about);
  if (end == std::string::npos) return;
  const std::string other = text.substr(0, end + 1) + text[about] + text.substr(end + 1);
  std::string anew;
  {
    const bvconn::detail::ThreadScope nothing_is_known;
    anew = read_again(other);
  }
  const bvconn::detail::ThreadScope nothing_is_known;
  read_again(text);
  bvconn::fuzz::require(read_again(other) == anew, "reads otherwise where its like is known",
                        other);
}

/// Changes eight nodes as the input says.
void change(std::vector<SoapNode>& nodes, const std::uint8_t* data, std::size_t size) {
  for (std::size_t i = 0; i + 2 < size && i < 24; i += 3) {
    SoapNode node = nodes[data[i] % nodes.size()];
    const SoapNode other = nodes[data[i + 1] % nodes.size()];
    try {
      switch (data[i + 2] % 6) {
        case 0:
          node.Nodes().Append(other);
          break;
        case 1:
          node.Value(other);
          break;
        case 2:
          node.Value(other.Value());
          break;
        case 3:
          nodes.push_back(node.Nodes().Create("made", other));
          break;
        case 4:
          node.Name(other.Namespace() + "x");
          break;
        default:
          node.Value(bvconn::StringArray{other.Name(), "y"});
          break;
      }
    } catch (const Error&) {
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(kGood, "");
  if (!parse(envelope, text)) {
    require_good(envelope, text);
    return 0;
  }
  std::vector<SoapNode> nodes;
  if (!collect(envelope.Headers(), nodes) || !collect(envelope.Parameters(), nodes)) return 0;
  for (const SoapNode& node : nodes) read(node);
  write_and_read_again(envelope);
  read_one_that_is_like_it(text, data[size - 1] * (size - 1) / 255);
  if (nodes.empty()) return 0;
  change(nodes, data + size / 2, size - size / 2);
  std::vector<SoapNode> changed;
  if (!collect(envelope.Parameters(), changed)) return 0;  // too many, or a circle
  for (const SoapNode& node : changed) read(node);
  try {
    static_cast<void>(envelope.Serialize());
  } catch (const Error&) {
  }
  return 0;
}
