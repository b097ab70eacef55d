#include "peers/curl_post.h"

#include <stdexcept>

#include "peers/peer.h"

namespace bench {
std::size_t CurlPost::take(char* bytes, std::size_t size, std::size_t count, void* post) {
  auto& self = *static_cast<CurlPost*>(post);
  const std::string_view piece(bytes, size * count);
  if (self.sink_) {
    self.sink_(piece);
  } else {
    self.body_.append(piece);
  }
  return piece.size();
}

CurlPost::CurlPost(std::string url, Sink sink)
    : url_(std::move(url)), sink_(std::move(sink)), handle_(::curl_easy_init()) {
  for (const char* header :
       {"Content-Type: text/xml; charset=utf-8", "SOAPAction: \"urn:InvoiceService\"", "Expect:"}) {
    headers_ = ::curl_slist_append(headers_, header);
  }
  ::curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, headers_);
  ::curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, request_.c_str());
  ::curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE, static_cast<long>(request_.size()));
  ::curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  ::curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, take);
  ::curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
}

CurlPost::~CurlPost() {
  ::curl_easy_cleanup(handle_);
  ::curl_slist_free_all(headers_);
}

std::string& CurlPost::call(const Case& which) {
  if (last_ != &which) ::curl_easy_setopt(handle_, CURLOPT_URL, url_of(url_, which).c_str());
  last_ = &which;
  body_.clear();
  const CURLcode code = ::curl_easy_perform(handle_);
  if (code != CURLE_OK) throw std::runtime_error(::curl_easy_strerror(code));
  return body_;
}

}  // namespace bench
