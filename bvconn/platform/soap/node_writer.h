#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/node_data.h"

namespace bvconn::detail {

/// Writes nodes as elements.
///
/// Prefixes: those of the four namespaces that an envelope declares, `m` for that of the method,
/// and `n`, `t`, `i`, `q` for those of elements, types, types of items and qualified names,
/// declared where they are needed.
class NodeWriter {
 public:
  /// `source` is that of the errors, `open_elements` the number of elements around.
  NodeWriter(std::string& out, std::string_view source, std::size_t open_elements)
      : out_(out), source_(source), open_elements_(open_elements) {}

  /// From here on `m` stands for this namespace.
  void bind_method(std::string_view uri) { method_uri_ = uri; }
  /// A node and all below it. Fails with 0x80044205 and 0x80044206.
  void write(const NodeData& root);

  /// `xmlns:prefix="uri"` for each of the envelope's namespaces that was used so far.
  std::string used_declarations() const;
  /// Where the name of the last root ends.
  std::size_t root_name_end() const { return root_name_end_; }

  // For the elements of the envelope itself.
  void attribute(std::string_view name, std::string_view value);
  /// Names the element that is about to be written. Fails with 0x80044205 for what is no local
  /// name.
  void begin_element(std::string_view name);
  /// Fails with 0x80044205 for a namespace that no prefix can stand for.
  void check_namespace(std::string_view uri) const;

 private:
  /// An element that is open.
  struct Frame {
    Children children;
    std::size_t next = 0;
    std::string_view prefix;
    std::string_view name;
    std::string_view outer_uri;  ///< what `n` stood for outside
    TypeName items;              ///< of an array
    bool is_array = false;
    bool referenced = false;  ///< reached through a reference
  };

  void open(const NodeData& node);
  void close();
  Frame new_frame(const NodeData& node, const NodeData& holder);
  void check_limits(bool referenced);
  void start_tag(const NodeData& node, Frame& frame);
  void type_attributes(const NodeData& node, const NodeData& holder, const Frame& frame);
  void type_attribute(const NodeData& node);
  void derived_type_attribute(std::string_view type);
  static TypeName item_type_of(const NodeData& array);
  void leaf(const NodeData& holder, const Frame& frame);
  /// The rest of an attribute from its value on.
  void attribute_value(std::string_view name, std::string_view value);
  void qualified_text(std::string_view uri, std::string_view local);
  void text(std::string_view text);
  void prefixed(std::string_view prefix, std::string_view local);
  std::string_view prefix_for(std::string_view uri, std::string_view fallback, bool& declared);
  void declare(std::string_view prefix, std::string_view uri);
  [[noreturn]] void unwritable(std::string_view what, std::string_view text,
                               std::size_t offset) const;
  [[noreturn]] void fail_limit(std::string_view description) const;

  std::string& out_;
  std::string_view source_;
  std::size_t open_elements_;
  std::string_view method_uri_;
  std::string_view n_uri_;
  std::vector<Frame> frames_;
  std::string_view element_;  ///< the name of the element that is written, for descriptions
  std::size_t referenced_elements_ = 0;
  std::size_t root_name_end_ = 0;
  std::uint8_t used_ = 0;
};

/// ` xmlns:SOAP-ENV="…"` and so on: the declarations of an envelope.
const std::string& envelope_declarations();

}  // namespace bvconn::detail
