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

}  // namespace

void Distance::add(const Distance& more) noexcept {
  line_ends += more.line_ends;
  columns = more.columns + (more.line_ends == 0 ? columns : 0);
}

void Overwritten::note(const char* from, const char* to) {
  const std::uint32_t begin = offset(from);
  const std::uint32_t end = offset(to);
  if (stretches_.empty() || stretches_.back().end < begin) {
    stretches_.push({.begin = begin, .end = begin, .held = {}});
  }
  Stretch& last = stretches_.back();
  if (last.end >= end) return;
  last.held.add(counted(buffer_ + last.end, to));
  last.end = end;
}

Distance Overwritten::distance(const char* from, const char* to) const {
  Distance all;
  for (const Stretch& stretch : stretches_.items()) {
    if (stretch.end > offset(to)) break;
    all.add(counted(from, buffer_ + stretch.begin));
    all.add(stretch.held);
    from = buffer_ + stretch.end;
  }
  all.add(counted(from, to));
  return all;
}

}  // namespace bvconn::detail::xml
