// The floor: the bytes of the reply in a buffer, and nothing made of them.
#include "peers/curl_post.h"
#include "peers/peer.h"

namespace {

class Floor final : public bench::Peer {
 public:
  explicit Floor(const std::string& url) : post_(url) {}
  void call(const bench::Case& which) override { post_.call(which); }
  std::string seen(const bench::Case&) override { return std::to_string(post_.body().size()); }

 private:
  bench::CurlPost post_;
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<Floor>(url);
}
