#pragma once

#include <cstddef>
#include <vector>

#include "bvconn/platform/soap/node_view.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "json_output.h"

/// Nodes and the values in them as JSON. Neither walk recurses, so that no reply is too deep.
namespace bvconn::tool {

/// What the text of some nodes comes to, as a bound from below; every array counts as a value, too.
class TreeMeasure {
 public:
  explicit TreeMeasure(std::size_t max_nodes) : max_nodes_(max_nodes) {}

  // Each fails with 0x80044206 beyond the bounds.
  void add(const SoapNode& node);
  void add(const SoapNodes& nodes);
  void add(const Variant& value);

 private:
  struct Frame {
    detail::NodeView view;
    bool values = false;  ///< whether the children count as values, or as nodes
    std::size_t next = 0;
  };

  void count_node(const detail::NodeData& node);
  void count_value(const detail::NodeData& node);
  /// One more of these, and so much text with it.
  void count(std::size_t& things, std::size_t text);
  void open(const detail::NodeView& view, bool values);
  void run();

  std::size_t max_nodes_;
  std::size_t nodes_ = 0;
  std::size_t values_ = 0;  ///< in arrays, which may be without text
  std::size_t text_ = 0;
  std::vector<Frame> open_;
};

class TreeWriter {
 public:
  TreeWriter(JsonOutput& out, bool tells_missing) : out_(out), tells_missing_(tells_missing) {}

  void value(const Variant& value);
  /// The nodes in brackets.
  void list(const SoapNodes& nodes);

 private:
  enum class Stage : unsigned char {
    kItems,   ///< the values of a node that is an array, before its nodes
    kValues,  ///< the values of an array within a value
    kNodes,   ///< the children of a node
    kList,    ///< nodes without one around them
  };
  struct Frame {
    detail::NodeView view;
    Stage stage = Stage::kNodes;
    bool in_braces = false;   ///< whether a brace stands behind the node
    bool unreadable = false;  ///< whether the reason stands behind its children
    std::size_t next = 0;
  };

  void array(const VariantArray& array);
  void reference(const SoapNode& node);
  void begin_node(const detail::NodeData& node, bool in_braces);
  void begin_array(Frame& frame);
  void begin_children(Frame& frame, std::string_view unreadable);
  void end_node(const Frame& frame, std::string_view unreadable);
  void item(const detail::NodeData& node);
  void end(const Frame& frame);
  void run(std::size_t until);

  JsonOutput& out_;
  bool tells_missing_;
  std::vector<Frame> open_;
};

}  // namespace bvconn::tool
