// As strict as the library: expat behind libcurl, which reads as the bytes come, with a tree
// of its events.
#include "common/expat_tree.h"
#include "peers/curl_post.h"
#include "peers/peer.h"

namespace {

class Expat final : public bench::Peer {
 public:
  explicit Expat(const std::string& url)
      : post_(url, [this](std::string_view piece) { tree_.read(piece); }) {}

  void call(const bench::Case& which) override {
    tree_.clear();
    post_.call(which);
    tree_.read({});
    const auto& method = tree_.child(tree_.child(tree_.root(), 0), 0);
    result_ = which.is_fault ? &method : &tree_.child(method, 0);
  }

  std::string seen(const bench::Case& which) override {
    if (which.is_fault) return text(*result_, "faultstring");
    if (which.rows == 0) return text(*result_, "number");
    std::size_t rows = 0;
    const bench::ExpatTree::Node* last = nullptr;
    for (const auto* row = tree_.first(*result_); row != nullptr; row = tree_.next(*row)) {
      ++rows;
      last = row;
    }
    return bench::facts_of_rows(rows, text(*last, "number"));
  }

 private:
  std::string text(const bench::ExpatTree::Node& node, std::string_view name) const {
    return std::string(tree_.text(tree_.child(node, name)));
  }

  bench::CurlPost post_;
  bench::ExpatTree tree_;
  const bench::ExpatTree::Node* result_ = nullptr;
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<Expat>(url);
}
