// Parses an envelope, reads all that it holds, writes it and reads it again, and then moves its
// nodes about. Besides crashes it looks for replies that change when they are written and read.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"

namespace {

using bvconn::Error;
using bvconn::SoapEnvelope;
using bvconn::SoapNode;
using bvconn::SoapNodes;
using bvconn::Variant;

void fail(const char* what, const std::string& first, const std::string& second) {
  std::fprintf(stderr, "%s\n%s\n%s\n", what, first.c_str(), second.c_str());
  std::abort();
}

/// False for what is no envelope.
bool parse(const SoapEnvelope& envelope, const std::string& text) {
  try {
    envelope.Parse(text, "");
  } catch (const Error& error) {
    return error.number == bvconn::error_numbers::kSoapFault;
  }
  return true;
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
      fail("nil with a value", node.Name(), node.Type());
    }
  } catch (const Error&) {
  }
}

void write_and_read_again(const SoapEnvelope& envelope) {
  std::string first;
  try {
    first = envelope.Serialize();
  } catch (const Error&) {
    return;  // through references deeper than any document
  }
  const SoapEnvelope again = SoapEnvelope::make();
  if (!parse(again, first)) fail("what was written cannot be read", first, "");
  const std::string second = again.Serialize();
  if (second != first) fail("what was written reads differently", first, second);
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
  if (!parse(envelope, text)) return 0;
  std::vector<SoapNode> nodes;
  if (!collect(envelope.Headers(), nodes) || !collect(envelope.Parameters(), nodes)) return 0;
  for (const SoapNode& node : nodes) read(node);
  write_and_read_again(envelope);
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
