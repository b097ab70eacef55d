#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

/// Looking into documents whose form is their author's business, but for a few names.
namespace bvconn::sandbox {

/// The first child with this local name; an empty reference where there is none.
SoapNode child(const SoapNode& node, std::string_view name);
/// Its text; "" where it is missing or holds no simple value.
std::string child_text(const SoapNode& node, std::string_view name);
/// Its number; 0 where it is missing or holds none.
double child_number(const SoapNode& node, std::string_view name);
/// Gives the child this value, a node too; makes it at the end where it is missing.
void set_child(const SoapNode& node, std::string_view name, const Variant& value);
/// A node without a value of its own, appended to `parent`.
SoapNode append_group(SoapNodes parent, std::string_view name);

/// The first text that is not empty below a node, at any depth, nearest first: that of the first
/// name wherever it stands, then that of the second, and so on; "" for none, and
/// where there is no such node.
std::string find_text(const SoapNode& root, std::initializer_list<std::string_view> names);
/// The elements below a node that have a child with this name.
std::vector<SoapNode> holders_of(const SoapNode& root, std::string_view child_name);

/// The lines of a document: its elements Line or LineItem, at any depth.
std::vector<SoapNode> lines_of(const SoapNode& document);
/// The key of a line: its GID or LineItemGID.
std::string line_key(const SoapNode& line);

}  // namespace bvconn::sandbox
