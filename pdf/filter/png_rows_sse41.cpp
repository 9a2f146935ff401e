// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/png_rows.h"

#ifdef __x86_64__

#  include <cstring>
#  include <immintrin.h>

#  define PNG_TARGET __attribute__((target("sse4.1")))
#  define PNG_FN __attribute__((target("sse4.1"), always_inline)) inline

namespace {

// A pixel's bytes, each in a lane of 16 bits.
PNG_FN __m128i load(const unsigned char* p) {
  return _mm_cvtepu8_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
}

template <int Step>
PNG_FN void store(unsigned char* p, __m128i pixel) {
  const long long bytes = _mm_cvtsi128_si64(_mm_packus_epi16(pixel, pixel));
  std::memcpy(p, &bytes, Step);
}

// Every pixel waits for the one before it, so what counts is the way from `left` to the result: a
// difference, an absolute value, a minimum, a comparison, a choice and the sum. The distances are
// those of PNG, 9.4; the earlier one of equals is taken.
template <int Step>
PNG_TARGET int undo(unsigned char* row, const unsigned char* above, int n) {
  __m128i left = _mm_setzero_si128(), corner = left;
  int i = 0;
  for (; i + Step <= n; i += Step) {
    const __m128i up = load(above + i);
    const __m128i to_left = _mm_sub_epi16(up, corner), to_up = _mm_sub_epi16(left, corner);
    const __m128i a = _mm_abs_epi16(to_left), b = _mm_abs_epi16(to_up);
    const __m128i c = _mm_abs_epi16(_mm_add_epi16(to_left, to_up));
    const __m128i other = _mm_blendv_epi8(up, corner, _mm_cmpgt_epi16(b, c));
    const __m128i take_other = _mm_cmpgt_epi16(a, _mm_min_epi16(b, c));
    // Sums of bytes: the high halves of the lanes stay zero.
    left = _mm_add_epi8(load(row + i), _mm_blendv_epi8(left, other, take_other));
    corner = up;
    store<Step>(row + i, left);
  }
  return i;
}

}  // namespace

namespace pdfbmp {

template <int Step>
int undo_paeth_sse41(unsigned char* row, const unsigned char* above, int n) {
  return undo<Step>(row, above, n);
}

template int undo_paeth_sse41<1>(unsigned char*, const unsigned char*, int);
template int undo_paeth_sse41<2>(unsigned char*, const unsigned char*, int);
template int undo_paeth_sse41<3>(unsigned char*, const unsigned char*, int);
template int undo_paeth_sse41<4>(unsigned char*, const unsigned char*, int);
template int undo_paeth_sse41<6>(unsigned char*, const unsigned char*, int);
template int undo_paeth_sse41<8>(unsigned char*, const unsigned char*, int);

}  // namespace pdfbmp

#endif
