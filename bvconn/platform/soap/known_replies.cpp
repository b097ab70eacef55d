#include "bvconn/platform/soap/known_replies.h"

#include <algorithm>
#include <new>
#include <utility>

#include "bvconn/platform/thread_record.h"

namespace bvconn::detail {
namespace {

constexpr std::size_t kNodesMax = 128;

/// What a text may hold to be taken as it stands: it is its own UTF-8, and nothing of it means
/// anything but itself.
bool is_plain(char c) {
  return c >= ' ' && c <= '~' && c != '<' && c != '&' && c != ']';
}

/// A text that begins with a space could be blank, which says something else of some elements.
bool begins_text(char c) {
  return is_plain(c) && c != ' ';
}

std::uint32_t number_of(std::size_t size) {
  return static_cast<std::uint32_t>(size);
}

Slice shifted(Slice slice, std::uint32_t shift) {
  if (slice.size == 0 || slice.offset == kXmlUriSlice.offset) return slice;
  return {slice.offset + shift, slice.size};
}

}  // namespace

std::optional<KnownReply> KnownReply::of(std::string bytes, const Tree& tree,
                                         const EnvelopeParts& parts) {
  // Where the reader has changed something, its slices are not those of the bytes as they came.
  if (tree.buffer.view() != bytes) return std::nullopt;
  KnownReply known;
  known.bytes_ = std::move(bytes);
  if (!known.take_nodes(tree, parts)) return std::nullopt;
  return known;
}

// Level by level, so that children come side by side.
bool KnownReply::take_nodes(const Tree& tree, const EnvelopeParts& parts) {
  std::vector<const NodeData*> found{parts.root};
  std::vector<const Shape*> shapes;
  for (std::size_t i = 0; i < found.size(); ++i) {
    const NodeData& node = *found[i];
    if (&node == parts.header) header_ = number_of(i);
    if (&node == parts.method) method_ = number_of(i);
    if (node.shape->is_own || !take_node(tree, node, found)) return false;
    const auto shape = std::find(shapes.begin(), shapes.end(), node.shape);
    nodes_.back().shape = number_of(static_cast<std::size_t>(shape - shapes.begin()));
    if (shape == shapes.end()) shapes.push_back(node.shape);
  }
  const bool has_style = !parts.encoding_style.empty();
  if (has_style) {
    encoding_style_.slice = {
        number_of(static_cast<std::size_t>(parts.encoding_style.data() - tree.buffer.data())),
        number_of(parts.encoding_style.size())};
  }
  return take_runs() && take_shapes(shapes) && settle(encoding_style_);
}

bool KnownReply::take_node(const Tree& tree, const NodeData& node,
                           std::vector<const NodeData*>& found) {
  KnownNode& known = nodes_.emplace_back();
  known.node.flags = node.flags;
  known.node.content = node.content;
  if (node.content == Content::kText) {
    known.text.slice = node.text;
    known.is_run = !node.has(kQualified) && is_run(node.text);
    return node.text.size == 0 || node.text.offset < tree.buffer.size();
  }
  // What a typed array says of its items, and what is referred to, is left to the reader.
  if (node.content != Content::kChildren) return node.content == Content::kNil;
  if (node.has(kTypedItems) || found.size() + node.count > kNodesMax) return false;
  known.node.count = node.count;
  known.first_child = number_of(found.size());
  for (std::size_t i = 0; i < node.count; ++i) found.push_back(node.children + i);
  return true;
}

bool KnownReply::is_run(Slice text) const {
  const std::size_t end = std::size_t{text.offset} + text.size;
  if (text.size == 0 || text.offset == 0 || end >= bytes_.size()) return false;
  const std::string_view run = std::string_view(bytes_).substr(text.offset, text.size);
  return bytes_[text.offset - 1] == '>' && bytes_[end] == '<' && begins_text(run.front()) &&
         std::all_of(run.begin(), run.end(), is_plain);
}

bool KnownReply::take_runs() {
  for (const KnownNode& known : nodes_) {
    const Slice text = known.text.slice;
    if (known.is_run) runs_.push_back({text.offset, text.offset + text.size});
  }
  if (runs_.size() > kRunsMax) return false;
  const auto before = [](const Run& a, const Run& b) { return a.begin < b.begin; };
  std::sort(runs_.begin(), runs_.end(), before);
  for (KnownNode& known : nodes_) {
    if (known.is_run) {
      const Run own{known.text.slice.offset, 0};
      known.text.runs_before = number_of(static_cast<std::size_t>(
          std::lower_bound(runs_.begin(), runs_.end(), own, before) - runs_.begin()));
    } else if (!settle(known.text)) {
      return false;
    }
  }
  return true;
}

bool KnownReply::take_shapes(const std::vector<const Shape*>& shapes) {
  for (const Shape* shape : shapes) {
    ShapePlaces& places = shapes_.emplace_back();
    places.name.slice = shape->name;
    places.name_space.slice = shape->name_space;
    places.type.slice = shape->type;
    places.type_space.slice = shape->type_space;
    if (!settle(places.name) || !settle(places.name_space) || !settle(places.type) ||
        !settle(places.type_space)) {
      return false;
    }
  }
  return true;
}

/// Whether the slice lies in what stays as it is; then it is known what is before it.
bool KnownReply::settle(Place& place) const {
  const auto [offset, size] = place.slice;
  if (size == 0 || offset == kXmlUriSlice.offset) return true;
  for (const Run& run : runs_) {
    if (run.end > offset) return std::size_t{offset} + size <= run.begin;
    ++place.runs_before;
  }
  return std::size_t{offset} + size <= bytes_.size();
}

bool KnownReply::find_runs(std::string_view text, std::array<Run, kRunsMax>& found) const {
  const std::string_view bytes = bytes_;
  std::size_t known_at = 0;
  std::size_t at = 0;
  for (std::size_t i = 0; i < runs_.size(); ++i) {
    const std::string_view same = bytes.substr(known_at, runs_[i].begin - known_at);
    if (text.substr(at, same.size()) != same) return false;
    at += same.size();
    const std::size_t begin = at;
    if (at == text.size() || !begins_text(text[at])) return false;
    while (at < text.size() && is_plain(text[at])) ++at;
    found[i] = {number_of(begin), number_of(at)};
    known_at = runs_[i].end;
  }
  return text.substr(at) == bytes.substr(known_at);
}

std::optional<ReadTree> KnownReply::read(TextBuffer& text) const {
  std::array<Run, kRunsMax> runs;
  if (!find_runs(text.view(), runs)) return std::nullopt;
  // Offsets are counted around the whole range of their type, so a shift back is one too.
  Shifts shifts;
  shifts[0] = 0;
  for (std::size_t i = 0; i < runs_.size(); ++i) shifts[i + 1] = runs[i].end - runs_[i].end;
  const auto slice_at = [&shifts](const Place& place) {
    return shifted(place.slice, shifts[place.runs_before]);
  };

  auto tree = std::make_unique<Tree>();
  const std::size_t shapes_size = shapes_.size() * sizeof(Shape);
  const std::size_t size = shapes_size + nodes_.size() * sizeof(NodeData);
  tree->blocks.expect(size);
  auto* const memory = static_cast<std::byte*>(tree->blocks.take(size));
  auto* const shapes = reinterpret_cast<Shape*>(memory);
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    Shape* const shape = ::new (shapes + i) Shape;
    shape->tree = tree.get();
    shape->name = slice_at(shapes_[i].name);
    shape->name_space = slice_at(shapes_[i].name_space);
    shape->type = slice_at(shapes_[i].type);
    shape->type_space = slice_at(shapes_[i].type_space);
  }
  auto* const nodes = reinterpret_cast<NodeData*>(memory + shapes_size);
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    const KnownNode& known = nodes_[i];
    NodeData* const node = ::new (nodes + i) NodeData(known.node);
    node->shape = shapes + known.shape;
    if (node->content == Content::kChildren) {
      node->children = node->count != 0 ? nodes + known.first_child : nullptr;
    } else if (known.is_run) {
      const Run& run = runs[known.text.runs_before];
      node->text = {run.begin, run.end - run.begin};
    } else {
      node->text = slice_at(known.text);
    }
  }
  tree->buffer = std::move(text);
  const EnvelopeParts parts{
      .root = nodes,
      .header = header_ == kNone ? nullptr : nodes + header_,
      .method = method_ == kNone ? nullptr : nodes + method_,
      .encoding_style = view(*tree, slice_at(encoding_style_)),
  };
  return ReadTree{.tree = std::move(tree), .parts = parts};
}

KnownReplies& KnownReplies::of_thread() {
  return ThreadRecord<KnownReplies>::get();
}

std::optional<ReadTree> KnownReplies::read(TextBuffer& text) {
  if (text.size() > kSizeMax) return std::nullopt;
  for (std::size_t i = 0; i < kKept; ++i) {
    const std::size_t at = (latest_ + i) % kKept;
    if (!all_[at]) continue;
    if (auto read = all_[at]->read(text)) {
      latest_ = at;
      ++times_used_;
      in_vain_ = 0;
      return read;
    }
  }
  return std::nullopt;
}

bool KnownReplies::wants(std::string_view text) {
  if (text.size() > kSizeMax) return false;
  if (pause_ == 0) return true;
  --pause_;
  return false;
}

void KnownReplies::learn(std::string bytes, const Tree& tree, const EnvelopeParts& parts) {
  if (++in_vain_ == kInVainMax) {
    in_vain_ = 0;
    pause_ = kPause;
  }
  auto known = KnownReply::of(std::move(bytes), tree, parts);
  if (!known) return;
  latest_ = (latest_ + 1) % kKept;
  all_[latest_] = std::move(known);
}

}  // namespace bvconn::detail
