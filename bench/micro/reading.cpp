// Reading a reply into a tree whose fields can be asked for their values, and freeing it: the
// library's, and those of others, on the same text in the same run. Those that work in place begin
// with a copy of the text, and that is part of what is measured.
//
// The counter bytes_a_node is what a process grows by while it holds the tree of 20,000 rows, text
// included, for each element; it is taken in a process of its own.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <pugixml.hpp>
#include <string>

#include "bvconn/platform/soap/soap_envelope.h"
#include "common/expat_tree.h"
#include "common/process.h"
#include "common/replies.h"

namespace {

constexpr std::size_t kHeldRows = 20'000;
constexpr std::size_t kElementsOfARow = 9;

// Each reads the text as its own user would, and gives back what holds the tree.

auto with_library(const std::string& text) {
  auto envelope = bvconn::SoapEnvelope::make();
  envelope.Parse(std::string(text), "UTF-8");
  return envelope;
}

struct PugiTree {
  std::string text;
  pugi::xml_document document;
};
auto with_pugixml(const std::string& text) {
  auto tree = std::make_unique<PugiTree>();
  tree->text = text;
  tree->document.load_buffer_inplace(tree->text.data(), tree->text.size(), pugi::parse_default,
                                     pugi::encoding_utf8);
  return tree;
}

auto with_libxml2(const std::string& text) {
  return std::unique_ptr<xmlDoc, decltype(&::xmlFreeDoc)>(
      ::xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT),
      ::xmlFreeDoc);
}

auto with_expat(const std::string& text) {
  auto tree = std::make_unique<bench::ExpatTree>();
  tree->read(text);
  tree->read({});
  return tree;
}

/// Rows of which no two elements have the same name: nothing that was learned from one helps with
/// the next.
std::string different_names(std::size_t rows) {
  std::string text =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><e:Body><r><return>";
  for (std::size_t index = 0; index < rows * kElementsOfARow; ++index) {
    const std::string name = "field" + std::to_string(index);
    text.append("<" + name + " xsi:type=\"xsd:string\">in two parts</" + name + ">");
  }
  return text + "</return></r></e:Body></e:Envelope>";
}

template <class Reader>
double bytes_a_node(Reader reader) {
  int ends[2];
  if (::pipe(ends) != 0) return 0;
  const pid_t child = ::fork();
  if (child == 0) {
    const std::string text = bench::rows_envelope(kHeldRows);
    reader(bench::rows_envelope(1));
    const std::int64_t before = bench::Memory::now().resident;
    const auto tree = reader(text);
    // What the system's allocator keeps for later is not the tree's.
    ::malloc_trim(0);
    const double grown = static_cast<double>(bench::Memory::now().resident - before);
    const double each = grown / static_cast<double>(kHeldRows * kElementsOfARow);
    std::_Exit(::write(ends[1], &each, sizeof(each)) == sizeof(each) ? 0 : 1);
  }
  double each = 0;
  if (::read(ends[0], &each, sizeof(each)) != sizeof(each)) each = 0;
  ::waitpid(child, nullptr, 0);
  ::close(ends[0]);
  ::close(ends[1]);
  return each;
}

template <class Reader>
void read(benchmark::State& state, Reader reader, const std::string& text) {
  for (auto round : state) benchmark::DoNotOptimize(reader(text));
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) *
                          static_cast<std::int64_t>(state.iterations()));
}

template <class Reader>
void add(const std::string& name, Reader reader) {
  // Before there is any other benchmark's memory that the tree could come to lie in.
  const double each = bytes_a_node(reader);
  for (const std::size_t rows : {std::size_t{200}, kHeldRows}) {
    benchmark::RegisterBenchmark(("read/" + std::to_string(rows) + "_rows/" + name).c_str(),
                                 [=](benchmark::State& state) {
                                   read(state, reader, bench::rows_envelope(rows));
                                   if (rows == kHeldRows) state.counters["bytes_a_node"] = each;
                                 });
  }
  benchmark::RegisterBenchmark(
      ("read/different_names/" + name).c_str(),
      [=](benchmark::State& state) { read(state, reader, different_names(200)); });
}

}  // namespace

int main(int argc, char** argv) {
  add("library", [](const std::string& text) { return with_library(text); });
  add("pugixml", [](const std::string& text) { return with_pugixml(text); });
  add("libxml2", [](const std::string& text) { return with_libxml2(text); });
  add("expat_tree", [](const std::string& text) { return with_expat(text); });
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
