// Reading a reply: our reader, and expat on the same documents in the same run, each with a sink
// that only counts. The reader works in place, so each of its rounds begins with a copy of the
// document.
#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_reader.h"

namespace {

namespace xml = bvconn::detail::xml;

std::string reply(std::size_t rows, std::string_view line_end) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<soapenv:Envelope "
      "xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><soapenv:Body>"
      "<ns1:searchForOrdersResponse xmlns:ns1=\"urn:OrderSearch\"><searchForOrdersReturn>";
  const auto leaf = [&](std::string_view name, std::string_view type, std::string_view value) {
    text.append("<").append(name).append(" xsi:type=\"xsd:").append(type).append("\">");
    text.append(value).append("</").append(name).append(">").append(line_end);
  };
  for (std::size_t i = 0; i < rows; ++i) {
    text.append("<order>").append(line_end);
    leaf("orderNumber", "string", std::to_string(4'711'000 + i));
    leaf("customerName", "string", "Harrow &amp; Finch Mechanical Supply");
    leaf("city", "string", "K\xC3\xB6ln");
    leaf("status", "int", std::to_string(i % 7));
    leaf("total", "double", std::to_string(i * 17) + ".25");
    leaf("entered", "dateTime", "2006-11-30T08:15:00");
    leaf("comment", "string",
         "To be delivered in two parts, the second one after the drawings have been approved; "
         "please call the site office a day ahead.");
    text.append("<agent xsi:nil=\"true\"/></order>").append(line_end);
  }
  return text +
         "</searchForOrdersReturn></ns1:searchForOrdersResponse></soapenv:Body></soapenv:Envelope>";
}

struct Counter {
  void start_element(const xml::Name& name, std::span<const xml::Attribute> attributes,
                     const xml::Scope&) {
    total += name.local.size() + attributes.size();
  }
  void text(std::string_view text) { total += text.size(); }
  void end_element(const xml::Scope&) { ++total; }
  std::size_t total = 0;
};

void set_bytes(benchmark::State& state, const std::string& document) {
  state.SetBytesProcessed(static_cast<std::int64_t>(document.size()) *
                          static_cast<std::int64_t>(state.iterations()));
}

void read_reply(benchmark::State& state) {
  const std::string document =
      reply(static_cast<std::size_t>(state.range(0)), state.range(1) != 0 ? "\n  " : "");
  std::string buffer;
  for (auto round : state) {
    buffer = document;
    Counter counter;
    xml::parse(buffer, {}, counter);
    benchmark::DoNotOptimize(counter.total);
  }
  set_bytes(state, document);
}

void read_reply_with_expat(benchmark::State& state) {
  const std::string document =
      reply(static_cast<std::size_t>(state.range(0)), state.range(1) != 0 ? "\n  " : "");
  for (auto round : state) {
    std::size_t total = 0;
    const XML_Parser parser = XML_ParserCreateNS(nullptr, '\x01');
    XML_SetUserData(parser, &total);
    XML_SetElementHandler(
        parser,
        [](void* sum, const XML_Char* name, const XML_Char**) {
          *static_cast<std::size_t*>(sum) += static_cast<std::size_t>(name[0]);
        },
        [](void* sum, const XML_Char*) { ++*static_cast<std::size_t*>(sum); });
    XML_SetCharacterDataHandler(parser, [](void* sum, const XML_Char*, int size) {
      *static_cast<std::size_t*>(sum) += static_cast<std::size_t>(size);
    });
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == 0) {
      state.SkipWithError("expat refuses the document");
    }
    XML_ParserFree(parser);
    benchmark::DoNotOptimize(total);
  }
  set_bytes(state, document);
}

// About 90 kB and 9 MB, without and with line ends between the elements.
void sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"rows", "lines"})->ArgsProduct({{130, 13'000}, {0, 1}});
}
BENCHMARK(read_reply)->Apply(sizes);
BENCHMARK(read_reply_with_expat)->Apply(sizes);

}  // namespace
