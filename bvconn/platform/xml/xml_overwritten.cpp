#include "bvconn/platform/xml/xml_overwritten.h"

namespace bvconn::detail::xml {
namespace {

Distance counted(const char* from, const char* to) noexcept {
  Distance found;
  for (const char* at = from; at < to; ++at) {
    if (*at == '\n' || (*at == '\r' && at[1] != '\n')) {
      ++found.line_ends;
      found.columns = 0;
    } else if ((static_cast<unsigned char>(*at) & 0xC0u) != 0x80) {
      ++found.columns;
    }
  }
  return found;
}

std::uint32_t taken(const unsigned char*& at) noexcept {
  std::uint32_t number = 0;
  for (unsigned shift = 0;; shift += 7) {
    const std::uint32_t byte = *at++;
    number |= (byte & 0x7Fu) << shift;
    if (byte < 0x80) return number;
  }
}

}  // namespace

void Distance::add(const Distance& more) noexcept {
  line_ends += more.line_ends;
  columns = more.columns + (more.line_ends == 0 ? columns : 0);
}

void Overwritten::note(const char* from, const char* to) {
  const std::uint32_t begin = offset(from);
  const std::uint32_t end = offset(to);
  if (last_.end < begin) {
    put_away();
    last_ = {.begin = begin, .end = begin, .held = {}};
  }
  if (last_.end >= end) return;
  last_.held.add(counted(buffer_ + last_.end, to));
  last_.end = end;
}

void Overwritten::put_away() {
  put(last_.begin - put_away_end_);
  put(last_.end - last_.begin);
  put(last_.held.line_ends);
  put(last_.held.columns);
  put_away_end_ = last_.end;
}

void Overwritten::put(std::uint32_t number) {
  for (; number >= 0x80; number >>= 7) {
    earlier_.push(static_cast<unsigned char>(0x80u | (number & 0x7Fu)));
  }
  earlier_.push(static_cast<unsigned char>(number));
}

Distance Overwritten::distance(const char* from, const char* to) const {
  Distance all;
  const auto passed = [&](const Stretch& stretch) {
    if (stretch.end > offset(to)) return false;
    if (stretch.begin < offset(from)) return true;
    all.add(counted(from, buffer_ + stretch.begin));
    all.add(stretch.held);
    from = buffer_ + stretch.end;
    return true;
  };
  Stretch stretch;
  const unsigned char* at = earlier_.begin();
  bool more = true;
  while (more && at != earlier_.end()) {
    stretch.begin = stretch.end + taken(at);
    stretch.end = stretch.begin + taken(at);
    stretch.held.line_ends = taken(at);
    stretch.held.columns = taken(at);
    more = passed(stretch);
  }
  if (more) passed(last_);
  all.add(counted(from, to));
  return all;
}

}  // namespace bvconn::detail::xml
