// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows_x86.h"

#ifdef __x86_64__

#  include <cstdint>
#  include <cstring>
#  include <immintrin.h>

#  include "pdf/cs/cmyk_formula.h"
#  include "pdf/cs/cmyk_grid.h"

#  define ROWS_TARGET __attribute__((target("sse4.1")))
#  define ROWS_FN __attribute__((target("sse4.1"), always_inline)) inline

namespace {

using Vec = __m128i;

ROWS_FN int load32(const void* p) {
  int word;
  std::memcpy(&word, p, 4);
  return word;
}
ROWS_FN __m128i load128(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
ROWS_FN Vec load(const void* p) { return _mm_loadu_si128(static_cast<const Vec*>(p)); }
ROWS_FN void store(void* p, Vec v) { _mm_storeu_si128(static_cast<Vec*>(p), v); }

/// The words p, p + stride, ...; the last of all is read `early` bytes before its place.
ROWS_FN Vec quads_at(const unsigned char* p, size_t stride, size_t early) {
  return _mm_setr_epi32(load32(p), load32(p + stride), load32(p + 2 * stride),
                        load32(p + 3 * stride - early));
}

/// The lanes p, p + stride, ...; the last is read `early` bytes before its place.
ROWS_FN Vec lanes_at(const unsigned char* p, size_t, size_t early) { return load(p - early); }
ROWS_FN Vec all_lanes(__m128i lane) { return lane; }

ROWS_FN Vec set16(unsigned v) { return _mm_set1_epi16(static_cast<short>(v)); }
ROWS_FN Vec set32(int v) { return _mm_set1_epi32(v); }
ROWS_FN Vec set64(int64_t v) { return _mm_set1_epi64x(v); }
ROWS_FN Vec widen8to16(const void* p) {
  return _mm_cvtepu8_epi16(_mm_loadl_epi64(static_cast<const __m128i*>(p)));
}
ROWS_FN Vec and_(Vec a, Vec b) { return _mm_and_si128(a, b); }
ROWS_FN Vec or_(Vec a, Vec b) { return _mm_or_si128(a, b); }
ROWS_FN Vec xor_(Vec a, Vec b) { return _mm_xor_si128(a, b); }

ROWS_FN Vec add16(Vec a, Vec b) { return _mm_add_epi16(a, b); }
ROWS_FN Vec add32(Vec a, Vec b) { return _mm_add_epi32(a, b); }
ROWS_FN Vec sub16(Vec a, Vec b) { return _mm_sub_epi16(a, b); }
ROWS_FN Vec sub32(Vec a, Vec b) { return _mm_sub_epi32(a, b); }
ROWS_FN Vec mullo16(Vec a, Vec b) { return _mm_mullo_epi16(a, b); }
ROWS_FN Vec mulhi16(Vec a, Vec b) { return _mm_mulhi_epu16(a, b); }
ROWS_FN Vec madd16(Vec a, Vec b) { return _mm_madd_epi16(a, b); }
ROWS_FN Vec maddubs(Vec a, Vec b) { return _mm_maddubs_epi16(a, b); }
ROWS_FN Vec max16(Vec a, Vec b) { return _mm_max_epi16(a, b); }
ROWS_FN Vec min16(Vec a, Vec b) { return _mm_min_epi16(a, b); }
ROWS_FN Vec shuffle8(Vec a, Vec b) { return _mm_shuffle_epi8(a, b); }
ROWS_FN Vec packus32(Vec a, Vec b) { return _mm_packus_epi32(a, b); }
ROWS_FN Vec packus16(Vec a, Vec b) { return _mm_packus_epi16(a, b); }
ROWS_FN Vec unpacklo16(Vec a, Vec b) { return _mm_unpacklo_epi16(a, b); }
ROWS_FN Vec unpackhi16(Vec a, Vec b) { return _mm_unpackhi_epi16(a, b); }
ROWS_FN Vec unpacklo64(Vec a, Vec b) { return _mm_unpacklo_epi64(a, b); }
ROWS_FN Vec unpackhi64(Vec a, Vec b) { return _mm_unpackhi_epi64(a, b); }

template <int N>
ROWS_FN Vec srl16(Vec v) {
  return _mm_srli_epi16(v, N);
}
template <int N>
ROWS_FN Vec srl32(Vec v) {
  return _mm_srli_epi32(v, N);
}
template <int N>
ROWS_FN Vec sll16(Vec v) {
  return _mm_slli_epi16(v, N);
}
template <int N>
ROWS_FN Vec sll32(Vec v) {
  return _mm_slli_epi32(v, N);
}

/// value where test is 0, else 0, by 16-bit words.
ROWS_FN Vec where_zero16(Vec test, Vec value) {
  return and_(_mm_cmpeq_epi16(test, _mm_setzero_si128()), value);
}
/// a == b ? x : y, by 32-bit words.
ROWS_FN Vec if_equal32(Vec a, Vec b, Vec x, Vec y) {
  return _mm_blendv_epi8(y, x, _mm_cmpeq_epi32(a, b));
}
/// (v & bit) ? on : off, by bytes.
ROWS_FN Vec choose8(Vec v, Vec bit, Vec off, Vec on) {
  const Vec set = _mm_cmpeq_epi8(and_(v, bit), bit);
  return xor_(off, and_(set, xor_(off, on)));
}

#  include "pdf/cs/rows_x86.inl"

}  // namespace

void overlay_sse41(CPDFRows& rows) { overlay(rows); }

#endif
