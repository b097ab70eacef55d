// The fastest tree: pugixml behind libcurl, in the buffer that the reply came into. It takes broken
// documents too, and knows nothing of namespaces.
#include <cstring>
#include <pugixml.hpp>
#include <stdexcept>

#include "peers/curl_post.h"
#include "peers/peer.h"

namespace {

class PugiXml final : public bench::Peer {
 public:
  explicit PugiXml(const std::string& url) : post_(url) {}

  void call(const bench::Case& which) override {
    std::string& body = post_.call(which);
    if (!document_.load_buffer_inplace(body.data(), body.size(), pugi::parse_default,
                                       pugi::encoding_utf8)) {
      throw std::runtime_error("pugixml cannot read the reply");
    }
    const pugi::xml_node method = document_.first_child().first_child().first_child();
    is_fault_ = std::strcmp(method.name(), "soapenv:Fault") == 0;
    result_ = is_fault_ ? method : method.first_child();
  }

  std::string seen(const bench::Case& which) override {
    if (is_fault_) return result_.child("faultstring").text().get();
    if (which.rows == 0) return result_.child("number").text().get();
    std::size_t rows = 0;
    for (pugi::xml_node row = result_.first_child(); row; row = row.next_sibling()) ++rows;
    return bench::facts_of_rows(rows, result_.last_child().child("number").text().get());
  }

 private:
  bench::CurlPost post_;
  pugi::xml_document document_;
  pugi::xml_node result_;
  bool is_fault_ = false;
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<PugiXml>(url);
}
