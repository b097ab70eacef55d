#include "notes.h"

#include <cstdlib>
#include <fstream>
#include <map>

namespace notes {
namespace {

std::string local_name(const std::string& name) {
  return name.substr(name.find(':') + 1);
}

/// The value of an attribute by its local name; "" without one.
std::string attribute(const soap_dom_element* element, const std::string& name) {
  for (const soap_dom_attribute* one = element->atts; one != nullptr; one = one->next) {
    if (local_name(one->name) == name && one->text != nullptr) return one->text;
  }
  return "";
}

/// The simple value of an element of this type.
Json simple(const soap_dom_element* element, const std::string& type) {
  const std::string text = element->text == nullptr ? "" : element->text;
  if (type == "boolean") return text == "true";
  if (type == "short" || type == "int" || type == "long") return std::stol(text);
  if (type == "double") return shown(std::stod(text));
  return text;
}

Json tree(const soap_dom_element* element, const std::string& type_of_items) {
  if (attribute(element, "nil") == "true") return nullptr;
  const std::string array = attribute(element, "arrayType");
  const soap_dom_element* child = element->elts;
  if (!array.empty()) {
    Json items = Json::array();
    for (; child != nullptr; child = child->next) {
      items.push_back(tree(child, local_name(array.substr(0, array.find('[')))));
    }
    return items;
  }
  if (child == nullptr) {
    const std::string type = attribute(element, "type");
    return simple(element, type.empty() ? type_of_items : local_name(type));
  }
  std::map<std::string, Json> members;
  for (; child != nullptr; child = child->next) {
    members[local_name(child->name)].push_back(tree(child, ""));
  }
  Json object = Json::object();
  for (const auto& [name, values] : members) {
    object[name] = values.size() == 1 ? values[0] : values;
  }
  return object;
}

}  // namespace

Text text(soap* context, const std::string& words) {
  return soap_strdup(context, words.c_str());
}

Json shown(const char* text) {
  return text == nullptr ? Json() : Json(text);
}

Json shown(double value) {
  return {{"double", value}};
}

Json shown(const Strings* list) {
  if (list == nullptr) return nullptr;
  Json items = Json::array();
  for (int i = 0; i < list->__size; ++i) items.push_back(shown(list->__ptr[i]));
  return items;
}

Json shown(const soap_dom_element* element) {
  return element == nullptr ? Json() : tree(element, "");
}

void note(const soap* context, const std::string& function, const Json& parameters) {
  const std::size_t end = function.find("__");
  const std::string prefix = end == std::string::npos ? "" : function.substr(0, end);
  std::string service;
  for (const Namespace* one = context->namespaces; one->id != nullptr; ++one) {
    if (one->id == prefix) service = one->ns;
  }
  const char* const user = context->header == nullptr ? nullptr : context->header->userID;
  const Json line{{"action", shown(context->action)},
                  {"service", service},
                  {"method", end == std::string::npos ? function : function.substr(end + 2)},
                  {"userID", shown(user)},
                  {"parameters", parameters}};
  std::ofstream(std::getenv("FOREIGN_SEEN"), std::ios::app) << line.dump() << "\n";
}

}  // namespace notes
