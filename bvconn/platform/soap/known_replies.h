#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/text_buffer.h"

/// Small replies that are like one before: the same bytes but for the texts of elements, as the
/// answers of one operation, its faults or the heart beat's are again and again.
///
/// Whoever leaves this out in thought loses nothing: the reader makes the same nodes of the same
/// bytes, and whatever is not surely the same here is left to it.
namespace bvconn::detail {

/// Where in a tree the parts of an envelope are.
struct EnvelopeParts {
  NodeData* root = nullptr;
  NodeData* header = nullptr;  ///< null where there is none
  NodeData* method = nullptr;  ///< null for an empty Body
  std::string_view encoding_style;
};

/// A tree that is not yet kept by a handle, and its parts.
struct ReadTree {
  std::unique_ptr<Tree> tree;
  EnvelopeParts parts;
};

/// A reply as it was read once: its bytes and what became of them.
class KnownReply {
 public:
  /// Nothing where it has something that is not only repeated. `bytes` are those from before it was
  /// read.
  static std::optional<KnownReply> of(std::string bytes, const Tree& tree,
                                      const EnvelopeParts& parts);

  /// The tree that the reader would make of this text, which it then owns; nothing, and the text
  /// left alone, where it is another kind of reply.
  std::optional<ReadTree> read(TextBuffer& text) const;

 private:
  /// A text of an element in the bytes. What lies between two of them stays as it is.
  struct Run {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
  };
  /// A slice of the bytes, and how many runs end before it.
  struct Place {
    Slice slice;
    std::uint32_t runs_before = 0;
  };
  struct ShapePlaces {
    Place name;
    Place name_space;
    Place type;
    Place type_space;
  };
  struct KnownNode {
    NodeData node;  ///< with neither shape nor content
    std::uint32_t shape = 0;
    std::uint32_t first_child = 0;
    Place text;
    bool is_run = false;  ///< then the text is the run with the number `text.runs_before`
  };
  static constexpr std::uint32_t kNone = UINT32_MAX;
  using Shifts = std::array<std::uint32_t, 65>;  ///< of what follows so many runs
  static constexpr std::size_t kRunsMax = std::tuple_size_v<Shifts> - 1;

  bool take_nodes(const Tree& tree, const EnvelopeParts& parts);
  bool take_node(const Tree& tree, const NodeData& node, std::vector<const NodeData*>& found);
  bool take_runs();
  bool take_shapes(const std::vector<const Shape*>& shapes);
  bool is_run(Slice text) const;
  bool settle(Place& place) const;
  bool find_runs(std::string_view text, std::array<Run, kRunsMax>& found) const;

  std::string bytes_;
  std::vector<Run> runs_;
  std::vector<ShapePlaces> shapes_;
  std::vector<KnownNode> nodes_;  ///< the root first, and children side by side
  std::uint32_t header_ = kNone;
  std::uint32_t method_ = kNone;
  Place encoding_style_;
};

/// The replies that a thread knows.
class KnownReplies {
 public:
  /// The calling thread's.
  static KnownReplies& of_thread();

  /// As `KnownReply::read`, by any of them.
  std::optional<ReadTree> read(TextBuffer& text);
  /// Whether a text is worth to be learned; its bytes are to be kept until it has been read.
  bool wants(std::string_view text);
  /// Learns a reply that the reader has read, if it can be.
  void learn(std::string bytes, const Tree& tree, const EnvelopeParts& parts);

  /// How many replies were like one before.
  std::size_t times_used() const { return times_used_; }

 private:
  static constexpr std::size_t kKept = 4;
  static constexpr std::size_t kSizeMax = 4096;
  // A program whose replies never repeat should not pay for it much longer.
  static constexpr int kInVainMax = 8;
  static constexpr int kPause = 64;

  std::array<std::optional<KnownReply>, kKept> all_;
  std::size_t latest_ = 0;  ///< that was used or learned
  std::size_t times_used_ = 0;
  int in_vain_ = 0;  ///< learned since one was used last
  int pause_ = 0;    ///< replies that are not learned
};

}  // namespace bvconn::detail
