#include "sandbox/faults/fault_forms.h"
#include "sandbox/toml_file.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

json json_of(const toml::node& node) {
  if (const auto* text = node.as_string()) return text->get();
  if (const auto* number = node.as_integer()) return number->get();
  if (const auto* number = node.as_floating_point()) return number->get();
  if (const auto* truth = node.as_boolean()) return truth->get();
  // A table, an array or a date, which no field takes: it is refused by what it is not.
  return json::object();
}

json json_of_table(const toml::table& table) {
  json object = json::object();
  for (auto&& [key, value] : table) object[std::string(key.str())] = json_of(value);
  return object;
}

toml::table parse(const std::string& file) {
  try {
    return read_toml_file(file);
  } catch (const std::runtime_error& error) {
    throw BadFault(error.what());
  }
}

}  // namespace

std::vector<FaultRule> faults_from_file(const std::string& file,
                                        const std::vector<std::string>& operations) {
  const toml::table whole = parse(file);
  for (auto&& [key, value] : whole) {
    if (key.str() != "fault") {
      throw BadFault(file + ": there is no " + std::string(key.str()) +
                     "; each fault is a table [[fault]]");
    }
  }
  const toml::array* const tables = whole["fault"].as_array();
  if (tables == nullptr) throw BadFault(file + " has no table [[fault]]");
  std::vector<FaultRule> rules;
  for (const toml::node& each : *tables) {
    const toml::table* const table = each.as_table();
    if (table == nullptr) throw BadFault(file + ": each fault is a table [[fault]]");
    try {
      rules.push_back(fault_from_json(json_of_table(*table), operations));
    } catch (const BadFault& error) {
      throw BadFault(file + ", line " + std::to_string(table->source().begin.line) + ": " +
                     error.what());
    }
  }
  return rules;
}

}  // namespace bvconn::sandbox
