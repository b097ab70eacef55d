#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/xml_document.h"

/// Calls of the document connectors that the sandbox has to answer, and the documents in them.
namespace bvconn::test {

struct DocumentCall {
  std::string operation;
  std::function<void(const std::string& url)> make;
};

/// One call of each operation, with arguments that a new store knows.
std::vector<DocumentCall> all_document_calls();

/// A project with what a tree can hold; without a key when that is "".
SoapNode some_project(std::string_view gid);
/// Two line items: a brick and a door.
SoapNode line_items();
SoapNode header_comments(std::string_view gid, std::string_view type, std::string_view words);
/// Comments of a line as XML text.
std::string line_comments(std::string_view line, std::string_view words);
/// A submittal of a project that has none in a new store.
SoapNode submittal_of_project(std::string_view uid);
void pilfer(const std::string& url, std::string_view gid, std::string_view user,
            XMLDocument& answer);

}  // namespace bvconn::test
