#include "sandbox/http/message.h"

#include <algorithm>
#include <array>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::sandbox {
namespace {

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string lower_case(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::string_view reason(int status) {
  struct Row {
    int status;
    std::string_view text;
  };
  static constexpr std::array kReasons{
      Row{200, "OK"},
      Row{204, "No Content"},
      Row{400, "Bad Request"},
      Row{401, "Unauthorized"},
      Row{403, "Forbidden"},
      Row{404, "Not Found"},
      Row{405, "Method Not Allowed"},
      Row{408, "Request Timeout"},
      Row{409, "Conflict"},
      Row{413, "Content Too Large"},
      Row{415, "Unsupported Media Type"},
      Row{429, "Too Many Requests"},
      Row{431, "Request Header Fields Too Large"},
      Row{500, "Internal Server Error"},
      Row{501, "Not Implemented"},
      Row{502, "Bad Gateway"},
      Row{503, "Service Unavailable"},
      Row{504, "Gateway Timeout"},
  };
  const auto* row = std::find_if(kReasons.begin(), kReasons.end(),
                                 [status](const Row& each) { return each.status == status; });
  return row == kReasons.end() ? std::string_view("Unnamed") : row->text;
}

Reply reply_of(int status, std::string_view content_type, std::string body) {
  return Reply{.status = status,
               .headers = {{.name = "Content-Type", .value = std::string(content_type)}},
               .body = std::move(body)};
}

}  // namespace

std::optional<std::string> Request::header(std::string_view name) const {
  const auto found = std::find_if(headers.begin(), headers.end(), [name](const Header& each) {
    return conversions::equal_ignoring_case(each.name, name);
  });
  if (found == headers.end()) return std::nullopt;
  return found->value;
}

std::string_view Request::path() const {
  const std::string_view whole = target;
  return whole.substr(0, whole.find('?'));
}

std::string media_type(std::string_view content_type) {
  return lower_case(trimmed(content_type.substr(0, content_type.find(';'))));
}

std::string charset(std::string_view content_type) {
  for (auto at = content_type.find(';'); at != std::string_view::npos;
       at = content_type.find(';', at)) {
    ++at;
    const auto parameter = content_type.substr(at, content_type.find(';', at) - at);
    const auto equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    if (lower_case(trimmed(parameter.substr(0, equals))) != "charset") continue;
    auto value = trimmed(parameter.substr(equals + 1));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
      value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
  }
  return {};
}

Reply text_reply(int status, std::string_view text) {
  return reply_of(status, "text/plain; charset=utf-8", std::string(text));
}

Reply xml_reply(int status, std::string text) {
  return reply_of(status, "text/xml; charset=utf-8", std::move(text));
}

Reply json_reply(int status, std::string text) {
  return reply_of(status, "application/json", std::move(text));
}

std::string head_bytes(const Reply& reply) {
  std::string bytes = "HTTP/1.1 ";
  bytes.append(std::to_string(reply.status)).append(" ").append(reason(reply.status));
  bytes.append("\r\nServer: bvsandbox\r\n");
  for (const Header& each : reply.headers) {
    bytes.append(each.name).append(": ").append(each.value).append("\r\n");
  }
  return bytes;
}

std::string to_bytes(const Reply& reply, bool keep_alive, bool with_body) {
  std::string bytes = head_bytes(reply);
  bytes.append("Content-Length: ").append(std::to_string(reply.body.size()));
  bytes.append("\r\nConnection: ").append(keep_alive ? "keep-alive" : "close").append("\r\n\r\n");
  if (with_body) bytes.append(reply.body);
  return bytes;
}

}  // namespace bvconn::sandbox
