#include "hostile/hostile_bytes.h"

#include <zlib.h>

#include <charconv>
#include <chrono>
#include <stdexcept>

#include "http/gzip_text.h"

namespace bvconn::test {
namespace {

using Kind = HostileStep::Kind;

/// Reads a text from the front: `\` begins an escape, `{` a hole or a repetition.
class Expander {
 public:
  Expander(std::string_view text, const Holes& holes) : rest_(text), holes_(holes) {}

  std::string run() {
    std::string bytes;
    while (!rest_.empty()) {
      const char c = take();
      if (c == '\\') {
        escape(bytes);
      } else if (c == '{') {
        hole(bytes);
      } else {
        bytes.push_back(c);
      }
    }
    return bytes;
  }

 private:
  char take() {
    if (rest_.empty()) throw std::runtime_error("a text ends too early");
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  void escape(std::string& bytes) {
    const char c = take();
    switch (c) {
      case 'r':
        return bytes.push_back('\r');
      case 'n':
        return bytes.push_back('\n');
      case 't':
        return bytes.push_back('\t');
      case 's':
        return bytes.push_back(' ');
      case '0':
        return bytes.push_back('\0');
      case 'x': {
        unsigned value = 0;
        const std::string_view digits = rest_.substr(0, 2);
        const auto [end, code] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (code != std::errc() || digits.size() != 2 || end != digits.data() + 2) {
          throw std::runtime_error("\\x is followed by two digits");
        }
        rest_.remove_prefix(2);
        return bytes.push_back(static_cast<char>(value));
      }
      case '\\':
      case '{':
      case '}':
        return bytes.push_back(c);
      default:
        throw std::runtime_error(std::string("there is no escape \\") + c);
    }
  }

  // The text up to the brace that closes it, without that.
  std::string_view enclosed() {
    std::size_t depth = 1;
    for (std::size_t at = 0; at < rest_.size(); ++at) {
      if (rest_[at] == '\\') {
        ++at;
      } else if (rest_[at] == '{') {
        ++depth;
      } else if (rest_[at] == '}' && --depth == 0) {
        const std::string_view inside = rest_.substr(0, at);
        rest_.remove_prefix(at + 1);
        return inside;
      }
    }
    throw std::runtime_error("a brace is not closed");
  }

  void hole(std::string& bytes) {
    const std::string_view inside = enclosed();
    std::size_t count = 0;
    const auto [end, code] = std::from_chars(inside.data(), inside.data() + inside.size(), count);
    const auto digits = static_cast<std::size_t>(end - inside.data());
    if (code == std::errc() && digits < inside.size() && inside[digits] == '*') {
      repeat(bytes, expanded(inside.substr(digits + 1), holes_), count);
    } else if (code == std::errc() && digits < inside.size() && inside[digits] == '@') {
      numbered(bytes, expanded(inside.substr(digits + 1), holes_), count);
    } else if (const auto found = holes_.find(inside); found != holes_.end()) {
      bytes.append(found->second);
    } else {
      throw std::runtime_error("nothing is known of {" + std::string(inside) + "}");
    }
  }

  // Doubling what is there, since sixteen million single appends take their time.
  static void repeat(std::string& bytes, const std::string& part, std::size_t count) {
    const std::size_t begin = bytes.size();
    const std::size_t size = count * part.size();
    bytes.reserve(begin + size);
    if (count > 0) bytes.append(part);
    while (bytes.size() < begin + size) {
      bytes.append(bytes, begin, begin + size - bytes.size());
    }
  }

  // `@` is the count, `~` the one that follows.
  static void numbered(std::string& bytes, const std::string& part, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      for (const char c : part) {
        if (c == '@') {
          bytes.append(std::to_string(i));
        } else if (c == '~') {
          bytes.append(std::to_string(i + 1));
        } else {
          bytes.push_back(c);
        }
      }
    }
  }

  std::string_view rest_;
  const Holes& holes_;
};

std::string as_16_bit(std::string_view ascii, bool big) {
  std::string bytes;
  for (const char c : ascii) {
    if (big) bytes.push_back('\0');
    bytes.push_back(c);
    if (!big) bytes.push_back('\0');
  }
  return bytes;
}

std::string deflated(std::string_view text) {
  uLongf size = compressBound(static_cast<uLong>(text.size()));
  std::string packed(size, '\0');
  compress(reinterpret_cast<Bytef*>(packed.data()), &size,
           reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size()));
  packed.resize(size);
  return packed;
}

std::string in_chunks(std::string_view body, std::size_t size) {
  std::string text;
  while (!body.empty()) {
    const std::string_view chunk = body.substr(0, size);
    std::string digits(16, '\0');
    const auto [end, code] =
        std::to_chars(digits.data(), digits.data() + digits.size(), chunk.size(), 16);
    digits.resize(static_cast<std::size_t>(end - digits.data()));
    text.append(digits).append("\r\n").append(chunk).append("\r\n");
    body.remove_prefix(chunk.size());
  }
  return text + "0\r\n\r\n";
}

std::size_t last_number(std::string_view words) {
  std::size_t number = 0;
  const std::string_view digits = words.substr(words.rfind(' ') + 1);
  const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (code != std::errc()) throw std::runtime_error("no number in \"" + std::string(words) + "\"");
  return number;
}

// Bytes of a reply, and how they are handed over.
struct Framed {
  std::string bytes;
  std::size_t drop_ms = 0;  ///< after each byte, where it is not 0
};

void pack(std::string& body, Framing& framing, Framed& framed, const std::string& as) {
  if (as == "gzip") {
    body = gzip(body);
    framing.head.emplace_back("Content-Encoding: gzip");
  } else if (as.starts_with("gzip of repeated ")) {
    body = gzip_of_repeated(body, static_cast<int>(last_number(as)));
    framing.head.emplace_back("Content-Encoding: gzip");
  } else if (as == "deflate") {
    body = deflated(body);
    framing.head.emplace_back("Content-Encoding: deflate");
  } else if (as == "UTF-16LE" || as == "UTF-16BE") {
    body = as_16_bit(body, as == "UTF-16BE");
  } else if (as == "UTF-16LE with mark" || as == "UTF-16BE with mark") {
    const bool big = as.starts_with("UTF-16BE");
    body = (big ? "\xFE\xFF" : "\xFF\xFE") + as_16_bit(body, big);
  } else if (as.starts_with("chunks of ")) {
    body = in_chunks(body, last_number(as));
    framing.head.emplace_back("Transfer-Encoding: chunked");
    framing.length = "none";
  } else if (as.starts_with("cut by ")) {
    // A reply that is cut states the length that it would have had.
    if (!framing.length) framing.length = std::to_string(body.size());
    body.resize(body.size() - last_number(as));
  } else if (as.starts_with("drops every ")) {
    framed.drop_ms = last_number(as);
  } else {
    throw std::runtime_error("nothing is known of \"as: " + as + "\"");
  }
}

Framed framed(const HostileStep& step, const Holes& holes) {
  Framed framed;
  std::string body = expanded(step.text, holes);
  if (step.kind == Kind::kReply) body = response_around(body);
  if (step.kind == Kind::kBody) body = envelope_around(body);
  Framing framing = step.framing;
  for (const std::string& as : framing.as) pack(body, framing, framed, as);
  if (step.kind == Kind::kSend) {
    framed.bytes = std::move(body);
    return framed;
  }
  std::string head = "HTTP/1.1 " + framing.status + "\r\n";
  if (framing.type != "none") head += "Content-Type: " + framing.type + "\r\n";
  for (const std::string& line : framing.head) head += expanded(line, holes) + "\r\n";
  const std::string length = framing.length.value_or(std::to_string(body.size()));
  if (length != "none") head += "Content-Length: " + length + "\r\n";
  framed.bytes = head + "\r\n" + body;
  return framed;
}

void add_then(Answer& answer, const std::string& what) {
  static const std::map<std::string_view, Step::Kind> kinds{
      {"close", Step::Kind::kClose}, {"reset", Step::Kind::kReset},   {"cut", Step::Kind::kCut},
      {"hang", Step::Kind::kHang},   {"unread", Step::Kind::kUnread},
  };
  if (what.starts_with("wait ")) {
    answer.push_back(
        {.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(last_number(what))});
  } else if (const auto kind = kinds.find(what); kind != kinds.end()) {
    answer.push_back({.kind = kind->second});
  } else {
    throw std::runtime_error("nothing is known of \"then: " + what + "\"");
  }
}

void add_dropped(Answer& answer, const Framed& framed) {
  for (const char byte : framed.bytes) {
    answer.push_back({.bytes = std::string(1, byte)});
    answer.push_back(
        {.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(framed.drop_ms)});
  }
}

}  // namespace

std::string expanded(std::string_view text, const Holes& holes) {
  return Expander(text, holes).run();
}

std::string envelope_around(std::string_view body) {
  std::string text =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:enc=\"http://schemas.xmlsoap.org/soap/encoding/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><e:Body>";
  return text.append(body).append("</e:Body></e:Envelope>");
}

std::string response_around(std::string_view parameters) {
  std::string text = "<m:answer xmlns:m=\"urn:answer\">";
  return envelope_around(text.append(parameters).append("</m:answer>"));
}

Answer answer_of(const HostileCase& hostile, HostileStep::Moment moment, const Holes& holes) {
  Answer answer;
  for (const HostileStep& step : hostile.steps) {
    if (step.moment != moment) continue;
    if (step.kind == Kind::kThen) {
      add_then(answer, step.text);
    } else if (step.kind == Kind::kBelow || step.kind == Kind::kRepeat) {
      const bool below = step.kind == Kind::kBelow;
      answer.push_back({.kind = below ? Step::Kind::kBelow : Step::Kind::kRepeat,
                        .bytes = expanded(step.text, holes)});
    } else if (Framed bytes = framed(step, holes); bytes.drop_ms > 0) {
      add_dropped(answer, bytes);
    } else {
      answer.push_back({.bytes = std::move(bytes.bytes)});
    }
  }
  return answer;
}

}  // namespace bvconn::test
