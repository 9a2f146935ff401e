// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows_x86.h"

#ifdef __x86_64__

#  ifndef __clang__
// g++ 12's intrinsics start from an undefined vector and then warn about it (GCC bug 105593).
#    pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#  endif

#  include <cstdint>
#  include <cstring>
#  include <immintrin.h>

#  include "pdf/cs/cmyk_formula.h"
#  include "pdf/cs/cmyk_grid.h"

// Ice Lake, Zen 4 and later. What has only the first AVX-512 is as fast with AVX2.
#  define ROWS_ISA "avx512f,avx512bw,avx512vl,avx512vbmi,avx512vnni"
#  define ROWS_TARGET __attribute__((target(ROWS_ISA)))
#  define ROWS_FN __attribute__((target(ROWS_ISA), always_inline)) inline

namespace {

using Vec = __m512i;

ROWS_FN int load32(const void* p) {
  int word;
  std::memcpy(&word, p, 4);
  return word;
}
ROWS_FN __m128i load128(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
ROWS_FN Vec load(const void* p) { return _mm512_loadu_si512(p); }
ROWS_FN void store(void* p, Vec v) { _mm512_storeu_si512(p, v); }

/// The words p, p + stride, ...; the last of all is read `early` bytes before its place.
ROWS_FN __m128i quad_at(const unsigned char* p, size_t stride, size_t early) {
  return _mm_setr_epi32(load32(p), load32(p + stride), load32(p + 2 * stride),
                        load32(p + 3 * stride - early));
}
ROWS_FN Vec from_lanes(__m128i a, __m128i b, __m128i c, __m128i d) {
  const __m256i low = _mm256_set_m128i(b, a), high = _mm256_set_m128i(d, c);
  return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
}
ROWS_FN Vec quads_at(const unsigned char* p, size_t stride, size_t early) {
  return from_lanes(quad_at(p, stride, 0), quad_at(p + 4 * stride, stride, 0),
                    quad_at(p + 8 * stride, stride, 0), quad_at(p + 12 * stride, stride, early));
}

/// The lanes p, p + stride, ...; the last is read `early` bytes before its place.
ROWS_FN Vec lanes_at(const unsigned char* p, size_t stride, size_t early) {
  return from_lanes(load128(p), load128(p + stride), load128(p + 2 * stride),
                    load128(p + 3 * stride - early));
}
ROWS_FN Vec all_lanes(__m128i lane) { return _mm512_broadcast_i32x4(lane); }

ROWS_FN Vec set16(unsigned v) { return _mm512_set1_epi16(static_cast<short>(v)); }
ROWS_FN Vec set32(int v) { return _mm512_set1_epi32(v); }
ROWS_FN Vec set64(int64_t v) { return _mm512_set1_epi64(v); }
ROWS_FN Vec widen8to16(const void* p) {
  return _mm512_cvtepu8_epi16(_mm256_loadu_si256(static_cast<const __m256i*>(p)));
}
ROWS_FN Vec and_(Vec a, Vec b) { return _mm512_and_si512(a, b); }
ROWS_FN Vec or_(Vec a, Vec b) { return _mm512_or_si512(a, b); }
ROWS_FN Vec xor_(Vec a, Vec b) { return _mm512_xor_si512(a, b); }

ROWS_FN Vec add16(Vec a, Vec b) { return _mm512_add_epi16(a, b); }
ROWS_FN Vec add32(Vec a, Vec b) { return _mm512_add_epi32(a, b); }
ROWS_FN Vec sub16(Vec a, Vec b) { return _mm512_sub_epi16(a, b); }
ROWS_FN Vec sub32(Vec a, Vec b) { return _mm512_sub_epi32(a, b); }
ROWS_FN Vec mullo16(Vec a, Vec b) { return _mm512_mullo_epi16(a, b); }
ROWS_FN Vec mulhi16(Vec a, Vec b) { return _mm512_mulhi_epu16(a, b); }
ROWS_FN Vec madd16(Vec a, Vec b) { return _mm512_madd_epi16(a, b); }
ROWS_FN Vec maddubs(Vec a, Vec b) { return _mm512_maddubs_epi16(a, b); }
ROWS_FN Vec max16(Vec a, Vec b) { return _mm512_max_epi16(a, b); }
ROWS_FN Vec min16(Vec a, Vec b) { return _mm512_min_epi16(a, b); }
ROWS_FN Vec shuffle8(Vec a, Vec b) { return _mm512_shuffle_epi8(a, b); }
ROWS_FN Vec packus32(Vec a, Vec b) { return _mm512_packus_epi32(a, b); }
ROWS_FN Vec packus16(Vec a, Vec b) { return _mm512_packus_epi16(a, b); }
ROWS_FN Vec unpacklo16(Vec a, Vec b) { return _mm512_unpacklo_epi16(a, b); }
ROWS_FN Vec unpackhi16(Vec a, Vec b) { return _mm512_unpackhi_epi16(a, b); }
ROWS_FN Vec unpacklo64(Vec a, Vec b) { return _mm512_unpacklo_epi64(a, b); }
ROWS_FN Vec unpackhi64(Vec a, Vec b) { return _mm512_unpackhi_epi64(a, b); }

template <int N>
ROWS_FN Vec srl16(Vec v) {
  return _mm512_srli_epi16(v, N);
}
template <int N>
ROWS_FN Vec srl32(Vec v) {
  return _mm512_srli_epi32(v, N);
}
template <int N>
ROWS_FN Vec sll16(Vec v) {
  return _mm512_slli_epi16(v, N);
}
template <int N>
ROWS_FN Vec sll32(Vec v) {
  return _mm512_slli_epi32(v, N);
}

/// value where test is 0, else 0, by 16-bit words.
ROWS_FN Vec where_zero16(Vec test, Vec value) {
  return _mm512_maskz_mov_epi16(_mm512_testn_epi16_mask(test, test), value);
}
/// a == b ? x : y, by 32-bit words.
ROWS_FN Vec if_equal32(Vec a, Vec b, Vec x, Vec y) {
  return _mm512_mask_mov_epi32(y, _mm512_cmpeq_epi32_mask(a, b), x);
}
/// (v & bit) ? on : off, by bytes.
ROWS_FN Vec choose8(Vec v, Vec bit, Vec off, Vec on) {
  return _mm512_mask_mov_epi8(off, _mm512_test_epi8_mask(v, bit), on);
}

#  include "pdf/cs/rows_x86.inl"

// RGB needs no lanes here: one instruction moves bytes anywhere in the vector.

// R, G, B, and any byte, of 16 pixels from byte `First` of the vector on; swapped, B, G, R.
template <int First, bool Swapped>
constexpr Bytes64 rgb_words = Bytes64::of([](int i) {
  const int component = i % 4 == 3 ? 0 : Swapped ? 2 - i % 4 : i % 4;
  return First + i / 4 * 3 + component;
});

struct RgbaFromPackedRgb {
  static constexpr size_t count = 16, in = 3, out = 1;
  static auto scalar() { return scalar_rows.rgba_from_rgb[0]; }
  ROWS_FN static void block(_KXRGBA* dst, const unsigned char* src) {
    const Vec rgb = _mm512_maskz_loadu_epi8((uint64_t{1} << 48) - 1, src);
    store(dst, _mm512_mask_permutexvar_epi8(opaque(), 0x7777777777777777, rgb_words<0, true>.vec(),
                                            rgb));
  }
};

/// Lumas of 16 pixels R, G, B, any: 306 = 8 * 38 + 2, 601 = 8 * 75 + 1, 117 = 8 * 14 + 5, and
/// S >> 10 = (S of the eighths + (S of the rests >> 3)) >> 7.
ROWS_FN Vec luma_words(Vec rgb) {
  const Vec rests = _mm512_dpbusd_epi32(set32(0), rgb, set32(2 | 1 << 8 | 5 << 16));
  return srl32<7>(_mm512_dpbusd_epi32(srl32<3>(rests), rgb, set32(38 | 75 << 8 | 14 << 16)));
}

struct GrayFromPackedRgb {
  static constexpr size_t count = 32, in = 3, out = 2;
  static auto scalar() { return scalar_rows.gray_from_rgb; }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    // Pixels 0 to 15 are bytes 0 to 47 of the 96, pixels 16 to 31 the last 48.
    const Vec first = _mm512_permutexvar_epi8(rgb_words<0, false>.vec(), load(src));
    const Vec second = _mm512_permutexvar_epi8(rgb_words<16, false>.vec(), load(src + 32));
    // Packed by lanes, four pixels of each in turn: all of the first come before the second's.
    const Vec lumas = packus32(luma_words(first), luma_words(second));
    const Vec order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
    store(dst, or_(_mm512_permutexvar_epi64(order, lumas), set16(0xFF00)));
  }
};

}  // namespace

void overlay_avx512(CPDFRows& rows) {
  overlay(rows);
  rows.rgba_from_rgb[0] = run<RgbaFromPackedRgb, _KXRGBA>;
  rows.gray_from_rgb = run<GrayFromPackedRgb, unsigned char>;
}

#endif
