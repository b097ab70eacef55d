#pragma once

/// Sixteen bytes looked at in one step, for the scanning in xml_scan.h.
///
/// Each function of `xml_scan.h` that uses these has a plain loop beside it, which does the same
/// byte by byte: for the last bytes of a buffer, for machines that are not known here, and for a
/// build with BVCONN_PLAIN_SCANNING, in which nothing else runs.
#if defined(BVCONN_PLAIN_SCANNING)
#elif defined(__SSE2__)
#define BVCONN_XML_VECTORS
#include <emmintrin.h>
#elif defined(__aarch64__) && defined(__ARM_NEON) && defined(__AARCH64EL__)
#define BVCONN_XML_VECTORS
#include <arm_neon.h>
#endif

namespace bvconn::detail::xml {

#if defined(BVCONN_XML_VECTORS)
inline constexpr bool kHasVectors = true;
#else
inline constexpr bool kHasVectors = false;
#endif

inline constexpr int kVectorBytes = 16;

#if defined(BVCONN_XML_VECTORS) && defined(__SSE2__)

/// Bytes of text, or what a comparison of each of them said: all bits or none.
using Vector = __m128i;

inline Vector load(const char* at) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}
inline Vector equals(Vector bytes, char c) noexcept {
  return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c));
}
inline Vector equals(Vector a, Vector b) noexcept {
  return _mm_cmpeq_epi8(a, b);
}
/// Below a character of ASCII, bytes from 0x80 on included.
inline Vector below_or_beyond_ascii(Vector bytes, char c) noexcept {
  return _mm_cmplt_epi8(bytes, _mm_set1_epi8(c));
}
/// From `first` to `last`, both included.
inline Vector between(Vector bytes, char first, char last) noexcept {
  const Vector above = _mm_sub_epi8(bytes, _mm_set1_epi8(first));
  const Vector width = _mm_set1_epi8(static_cast<char>(last - first));
  return _mm_cmpeq_epi8(_mm_min_epu8(above, width), above);
}
inline Vector either(Vector a, Vector b) noexcept {
  return _mm_or_si128(a, b);
}
inline Vector first_without_second(Vector a, Vector b) noexcept {
  return _mm_andnot_si128(b, a);
}
/// The place of the first byte for which a comparison held, 16 when it held for none.
inline int first_of(Vector held) noexcept {
  return __builtin_ctz(static_cast<unsigned>(_mm_movemask_epi8(held)) | 0x10000u);
}
inline int first_not_of(Vector held) noexcept {
  return __builtin_ctz(~static_cast<unsigned>(_mm_movemask_epi8(held)));
}

#elif defined(BVCONN_XML_VECTORS)

using Vector = uint8x16_t;

inline Vector load(const char* at) noexcept {
  return vld1q_u8(reinterpret_cast<const unsigned char*>(at));
}
inline Vector all_of(char c) noexcept {
  return vdupq_n_u8(static_cast<unsigned char>(c));
}
inline Vector equals(Vector bytes, char c) noexcept {
  return vceqq_u8(bytes, all_of(c));
}
inline Vector equals(Vector a, Vector b) noexcept {
  return vceqq_u8(a, b);
}
inline Vector below_or_beyond_ascii(Vector bytes, char c) noexcept {
  return vcltq_s8(vreinterpretq_s8_u8(bytes), vreinterpretq_s8_u8(all_of(c)));
}
inline Vector between(Vector bytes, char first, char last) noexcept {
  return vcleq_u8(vsubq_u8(bytes, all_of(first)), all_of(static_cast<char>(last - first)));
}
inline Vector either(Vector a, Vector b) noexcept {
  return vorrq_u8(a, b);
}
inline Vector first_without_second(Vector a, Vector b) noexcept {
  return vbicq_u8(a, b);
}
inline int first_of(Vector held) noexcept {
  // Four bits for each byte.
  const uint8x8_t narrow = vshrn_n_u16(vreinterpretq_u16_u8(held), 4);
  const unsigned long bits = vget_lane_u64(vreinterpret_u64_u8(narrow), 0);
  return bits == 0 ? kVectorBytes : __builtin_ctzl(bits) / 4;
}
inline int first_not_of(Vector held) noexcept {
  return first_of(vmvnq_u8(held));
}

#endif

}  // namespace bvconn::detail::xml
