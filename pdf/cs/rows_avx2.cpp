// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows_x86.h"

#ifdef __x86_64__

#  include <cstdint>
#  include <cstring>
#  include <immintrin.h>

#  include "pdf/cs/cmyk_formula.h"
#  include "pdf/cs/cmyk_grid.h"

#  define ROWS_TARGET __attribute__((target("avx2")))
#  define ROWS_FN __attribute__((target("avx2"), always_inline)) inline

namespace {

using Vec = __m256i;

ROWS_FN int load32(const void* p) {
  int word;
  std::memcpy(&word, p, 4);
  return word;
}
ROWS_FN __m128i load128(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
ROWS_FN Vec load(const void* p) { return _mm256_loadu_si256(static_cast<const Vec*>(p)); }
ROWS_FN void store(void* p, Vec v) { _mm256_storeu_si256(static_cast<Vec*>(p), v); }

/// The words p, p + stride, ...; the last of all is read `early` bytes before its place.
ROWS_FN __m128i quad_at(const unsigned char* p, size_t stride, size_t early) {
  return _mm_setr_epi32(load32(p), load32(p + stride), load32(p + 2 * stride),
                        load32(p + 3 * stride - early));
}
ROWS_FN Vec quads_at(const unsigned char* p, size_t stride, size_t early) {
  return _mm256_set_m128i(quad_at(p + 4 * stride, stride, early), quad_at(p, stride, 0));
}

/// The lanes p, p + stride, ...; the last is read `early` bytes before its place.
ROWS_FN Vec lanes_at(const unsigned char* p, size_t stride, size_t early) {
  return _mm256_set_m128i(load128(p + stride - early), load128(p));
}
ROWS_FN Vec all_lanes(__m128i lane) { return _mm256_broadcastsi128_si256(lane); }

ROWS_FN Vec set16(unsigned v) { return _mm256_set1_epi16(static_cast<short>(v)); }
ROWS_FN Vec set32(int v) { return _mm256_set1_epi32(v); }
ROWS_FN Vec set64(int64_t v) { return _mm256_set1_epi64x(v); }
ROWS_FN Vec widen8to16(const void* p) { return _mm256_cvtepu8_epi16(load128(p)); }
ROWS_FN Vec and_(Vec a, Vec b) { return _mm256_and_si256(a, b); }
ROWS_FN Vec or_(Vec a, Vec b) { return _mm256_or_si256(a, b); }
ROWS_FN Vec xor_(Vec a, Vec b) { return _mm256_xor_si256(a, b); }

ROWS_FN Vec add16(Vec a, Vec b) { return _mm256_add_epi16(a, b); }
ROWS_FN Vec add32(Vec a, Vec b) { return _mm256_add_epi32(a, b); }
ROWS_FN Vec sub16(Vec a, Vec b) { return _mm256_sub_epi16(a, b); }
ROWS_FN Vec sub32(Vec a, Vec b) { return _mm256_sub_epi32(a, b); }
ROWS_FN Vec mullo16(Vec a, Vec b) { return _mm256_mullo_epi16(a, b); }
ROWS_FN Vec mulhi16(Vec a, Vec b) { return _mm256_mulhi_epu16(a, b); }
ROWS_FN Vec madd16(Vec a, Vec b) { return _mm256_madd_epi16(a, b); }
ROWS_FN Vec maddubs(Vec a, Vec b) { return _mm256_maddubs_epi16(a, b); }
ROWS_FN Vec max16(Vec a, Vec b) { return _mm256_max_epi16(a, b); }
ROWS_FN Vec min16(Vec a, Vec b) { return _mm256_min_epi16(a, b); }
ROWS_FN Vec shuffle8(Vec a, Vec b) { return _mm256_shuffle_epi8(a, b); }
ROWS_FN Vec packus32(Vec a, Vec b) { return _mm256_packus_epi32(a, b); }
ROWS_FN Vec packus16(Vec a, Vec b) { return _mm256_packus_epi16(a, b); }
ROWS_FN Vec unpacklo16(Vec a, Vec b) { return _mm256_unpacklo_epi16(a, b); }
ROWS_FN Vec unpackhi16(Vec a, Vec b) { return _mm256_unpackhi_epi16(a, b); }
ROWS_FN Vec unpacklo64(Vec a, Vec b) { return _mm256_unpacklo_epi64(a, b); }
ROWS_FN Vec unpackhi64(Vec a, Vec b) { return _mm256_unpackhi_epi64(a, b); }

template <int N>
ROWS_FN Vec srl16(Vec v) {
  return _mm256_srli_epi16(v, N);
}
template <int N>
ROWS_FN Vec srl32(Vec v) {
  return _mm256_srli_epi32(v, N);
}
template <int N>
ROWS_FN Vec sll16(Vec v) {
  return _mm256_slli_epi16(v, N);
}
template <int N>
ROWS_FN Vec sll32(Vec v) {
  return _mm256_slli_epi32(v, N);
}

/// value where test is 0, else 0, by 16-bit words.
ROWS_FN Vec where_zero16(Vec test, Vec value) {
  return and_(_mm256_cmpeq_epi16(test, _mm256_setzero_si256()), value);
}
/// a == b ? x : y, by 32-bit words.
ROWS_FN Vec if_equal32(Vec a, Vec b, Vec x, Vec y) {
  return _mm256_blendv_epi8(y, x, _mm256_cmpeq_epi32(a, b));
}
/// (v & bit) ? on : off, by bytes.
ROWS_FN Vec choose8(Vec v, Vec bit, Vec off, Vec on) {
  const Vec set = _mm256_cmpeq_epi8(and_(v, bit), bit);
  return xor_(off, and_(set, xor_(off, on)));
}

#  include "pdf/cs/rows_x86.inl"

}  // namespace

void overlay_avx2(CPDFRows& rows) { overlay(rows); }

#endif
