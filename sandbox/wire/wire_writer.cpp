#include "sandbox/wire/wire_writer.h"

#include <string_view>
#include <vector>

#include "sandbox/wire/stand_ins.h"
#include "sandbox/wire/wire_fields.h"

namespace bvconn::wire {
namespace {

// One line stands behind the key, more below it.
void write(std::string& file, std::string_view key, const std::vector<std::string>& lines) {
  file.append(key).push_back(':');
  const std::string_view before = lines.size() == 1 ? " " : "\n  ";
  for (const std::string& line : lines) {
    if (!line.empty()) file.append(before).append(line);
  }
  file.push_back('\n');
}

void write_step(std::string& file, const WireStep& step) {
  if (!step.given.empty()) write(file, "given", step.given);
  write(file, "call", {step.arguments.empty() ? step.member : step.member + " " + step.arguments});
  for (const WireField& field : kWireFields) {
    if (field.lines != nullptr) {
      if (!(step.*field.lines).empty()) write(file, field.key, step.*field.lines);
    } else if (const auto& text = step.*field.text) {
      write(file, field.key,
            field.takes_stand_ins ? lines_with_stand_ins(*text) : std::vector{*text});
    }
  }
}

}  // namespace

std::string wire_case_text(const WireCase& wire_case) {
  std::string file;
  write(file, "claim", {wire_case.claim});
  for (const WireStep& step : wire_case.steps) write_step(file, step);
  return file;
}

}  // namespace bvconn::wire
