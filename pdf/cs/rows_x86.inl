// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// The row kernels for x86-64, written once for every vector width. Included by rows_sse41.cpp,
// rows_avx2.cpp and rows_avx512.cpp inside their unnamed namespaces, after each has defined
//
//   ROWS_TARGET   the target attribute; ROWS_FN the same with forced inlining
//   Vec           the vector: 1, 2 or 4 lanes of 16 bytes
//   and the operations used below, all of which keep to their lane as the instructions do
//
// Nothing here is compiled for, or shared with, any other part of the program: a function built
// for a newer CPU that the linker merged with another file's would fail on an older one.
//
// A kernel is a struct: `count` results at a time, from `in` source bytes each, into `out` units
// each; `block` reads no byte that its results do not span.

constexpr size_t lanes = sizeof(Vec) / 16;

/// A row of at least one block ends with a block that overlaps the one before, so the same results
/// are written twice. Shorter rows are left to the scalar form.
template <class K, class Out>
ROWS_TARGET void run(Out* dst, const unsigned char* src, size_t n) {
  if (n < K::count) return K::scalar()(dst, src, n);
  size_t i = 0;
  for (; i + K::count <= n; i += K::count) K::block(dst + i * K::out, src + i * K::in);
  if (i < n) K::block(dst + (n - K::count) * K::out, src + (n - K::count) * K::in);
}

/// 64 bytes of shuffle indices or bits, for 1, 2 or 4 vectors.
struct alignas(64) Bytes64 {
  unsigned char at[64];

  template <class F>
  static constexpr Bytes64 of(F byte) {
    Bytes64 all{};
    for (int i = 0; i < 64; ++i) all.at[i] = static_cast<unsigned char>(byte(i));
    return all;
  }
  ROWS_FN Vec vec(size_t j = 0) const { return load(at + j * sizeof(Vec)); }
  ROWS_FN Vec last() const { return load(at + 64 - sizeof(Vec)); }
};
constexpr int none = 0x80;  // a shuffle index that gives a zero byte

ROWS_FN Vec opaque() { return set32(static_cast<int>(0xFF000000)); }

/// One vector of 32-bit source pixels, the first of each Step.
template <size_t Step>
ROWS_FN Vec pixels32(const unsigned char* p) {
  if constexpr (Step == 1) {
    return load(p);
  } else {
    return quads_at(p, 4 * Step, 0);
  }
}

// ---- gray ----

/// 16 gray samples, the first of each Step, from the 15 * Step + 1 bytes that they span.
template <size_t Step>
ROWS_FN __m128i gray16(const unsigned char* p) {
  if constexpr (Step == 1) {
    return load128(p);
  } else if constexpr (Step == 2) {
    // The second load starts a byte early, so its kept samples are the odd bytes.
    const __m128i low = _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m128i high = _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, 1, 3, 5, 7, 9, 11, 13, 15);
    return _mm_or_si128(_mm_shuffle_epi8(load128(p), low), _mm_shuffle_epi8(load128(p + 15), high));
  } else {
    // Likewise: samples 0, 4, 8, 12 of three loads, 3, 7, 11, 15 of the last.
    const __m128i first = _mm_setr_epi8(0, 4, 8, 12, 0, 4, 8, 12, 0, 4, 8, 12, 0, 4, 8, 12);
    const __m128i third = _mm_setr_epi8(3, 7, 11, 15, 3, 7, 11, 15, 3, 7, 11, 15, 3, 7, 11, 15);
    const __m128i a = _mm_shuffle_epi8(load128(p), first);
    const __m128i b = _mm_shuffle_epi8(load128(p + 16), first);
    const __m128i c = _mm_shuffle_epi8(load128(p + 32), first);
    const __m128i d = _mm_shuffle_epi8(load128(p + 45), third);
    return _mm_unpacklo_epi64(_mm_unpacklo_epi32(a, b), _mm_unpacklo_epi32(c, d));
  }
}

// Sample i of 16 to bytes 4i, 4i + 1, 4i + 2.
constexpr Bytes64 spread_gray = Bytes64::of([](int i) { return i % 4 < 3 ? i / 4 : none; });

template <size_t Step>
struct RgbaFromGray {
  static constexpr size_t count = 16, in = Step, out = 1;
  static auto scalar() { return scalar_rows.rgba_from_gray[Step / 2]; }
  ROWS_FN static void block(_KXRGBA* dst, const unsigned char* src) {
    const Vec gray = all_lanes(gray16<Step>(src));
    for (size_t j = 0; j < 4 / lanes; ++j) {
      store(dst + 4 * lanes * j, or_(shuffle8(gray, spread_gray.vec(j)), opaque()));
    }
  }
};

struct GrayFromGray {
  static constexpr size_t count = 32 * lanes, in = 1, out = 2;
  static auto scalar() { return scalar_rows.gray_from_gray; }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    for (size_t i = 0; i < count; i += 8 * lanes) {
      store(dst + 2 * i, or_(widen8to16(src + i), set16(0xFF00)));
    }
  }
};

// ---- RGB ----

// R, G, B to B, G, R, 0 for four pixels a lane. The last lane of 16 pixels is loaded 4 bytes early,
// to end where the pixels end.
constexpr Bytes64 swap_rgb = Bytes64::of([](int i) {
  const int pixel = i / 4 % 4, early = i / 16 == 3 ? 4 : 0;
  return i % 4 < 3 ? 3 * pixel + 2 - i % 4 + early : none;
});

// The same for pixels in words of their own; the last is loaded a byte early.
constexpr Bytes64 swap_rgb_words = Bytes64::of([](int i) {
  const int early = i / 4 == 15 ? 1 : 0;
  return i % 4 < 3 ? i % 16 / 4 * 4 + 2 - i % 4 + early : none;
});

template <size_t Step>
struct RgbaFromRgb {
  static constexpr size_t count = Step == 1 ? 16 : 4 * lanes, in = 3 * Step, out = 1;
  static auto scalar() { return scalar_rows.rgba_from_rgb[Step / 2]; }
  ROWS_FN static void block(_KXRGBA* dst, const unsigned char* src) {
    if constexpr (Step == 1) {
      for (size_t j = 0; j < 4 / lanes; ++j) {
        const Vec rgb = lanes_at(src + 12 * lanes * j, 12, (j + 1) * lanes == 4 ? 4 : 0);
        store(dst + 4 * lanes * j, or_(shuffle8(rgb, swap_rgb.vec(j)), opaque()));
      }
    } else {
      const Vec rgb = quads_at(src, 3 * Step, 1);
      store(dst, or_(shuffle8(rgb, swap_rgb_words.last()), opaque()));
    }
  }
};

// Four RGB pixels of a lane to words R, G a pixel, and to B, 0. For the second half of a block the
// last lane is loaded 4 bytes early.
template <bool Early>
constexpr int early_lane(int i) {
  return Early && i / 16 == 3 ? 4 : 0;
}
template <bool Early>
constexpr Bytes64 words_rg = Bytes64::of([](int i) {
  return i % 2 == 0 ? i % 16 / 4 * 3 + i % 4 / 2 + early_lane<Early>(i) : none;
});
template <bool Early>
constexpr Bytes64 words_b = Bytes64::of([](int i) {
  return i % 4 == 0 ? i % 16 / 4 * 3 + 2 + early_lane<Early>(i) : none;
});

/// Lumas of four RGB pixels a lane, a 32-bit word each.
template <bool Early>
ROWS_FN Vec luma_rgb(Vec rgb) {
  const Vec rg = shuffle8(rgb, words_rg<Early>.last()), b = shuffle8(rgb, words_b<Early>.last());
  return srl32<10>(add32(madd16(rg, set32(306 | 601 << 16)), madd16(b, set32(117))));
}

struct GrayFromRgb {
  static constexpr size_t count = 8 * lanes, in = 3, out = 2;
  static auto scalar() { return scalar_rows.gray_from_rgb; }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    // Lane l: pixels 8l to 8l + 3 in the first vector, 8l + 4 to 8l + 7 in the second.
    const Vec first = luma_rgb<false>(lanes_at(src, 24, 0));
    const Vec second = luma_rgb<true>(lanes_at(src + 12, 24, 4));
    store(dst, or_(packus32(first, second), set16(0xFF00)));
  }
};

// ---- CMYK by formula ----

// The formula of pdf/cs/cmyk_formula.h in 16-bit lanes:
//   - P >> 16 is one high-half multiplication of the pair products; w = P >> 24 is its upper byte.
//     Only (256 - c) * (256 - m) can need 17 bits: with c = m = 0 it is 2^16, wraps to 0, and
//     P >> 16 is the yellow-black product itself.
//   - a coefficient q is 8 * (q >> 3) + (q & 7), both of which fit multiply-add of bytes. With
//     weights that add up to 254 at most, sum(q >> 3) is at most 121 * 254 = 30734, and
//     S >> 10 = (sum(q >> 3) + (sum(q & 7) >> 3)) >> 7 stays in 15 bits.

/// P >> 16 of two corners to their weights, in the low and high byte of each word.
ROWS_FN Vec weights(Vec low, Vec high) { return or_(srl16<8>(low), and_(high, set16(0xFF00))); }

struct Sum {
  Vec high, low;
};

/// Adds two corners, by number, to a channel's sum.
template <uint32_t CPDFInk::*Channel, int Low, int High>
ROWS_FN void add_corners(Sum& sum, Vec pair) {
  constexpr uint32_t low = cmyk_corners[Low].*Channel, high = cmyk_corners[High].*Channel;
  if constexpr ((low >> 3 | high >> 3) != 0) {
    sum.high = add16(sum.high, maddubs(pair, set16(low >> 3 | high >> 3 << 8)));
  }
  if constexpr (((low | high) & 7) != 0) {
    sum.low = add16(sum.low, maddubs(pair, set16((low & 7) | (high & 7) << 8)));
  }
}

template <int Low, int High>
ROWS_FN void add_corners(Sum& r, Sum& g, Sum& b, Vec low, Vec high) {
  const Vec pair = weights(low, high);
  add_corners<&CPDFInk::r, Low, High>(r, pair);
  add_corners<&CPDFInk::g, Low, High>(g, pair);
  add_corners<&CPDFInk::b, Low, High>(b, pair);
}

ROWS_FN Vec total(const Sum& sum) { return srl16<7>(add16(sum.high, srl16<3>(sum.low))); }

// Four CMYK pixels of a lane to words: C of each, then M; and Y of each, then K.
constexpr Bytes64 words_c_m =
    Bytes64::of([](int i) { return i % 2 == 0 ? i % 8 / 2 * 4 + i % 16 / 8 : none; });
constexpr Bytes64 words_y_k =
    Bytes64::of([](int i) { return i % 2 == 0 ? i % 8 / 2 * 4 + i % 16 / 8 + 2 : none; });

template <size_t Step>
struct RgbaFromCmyk {
  static constexpr size_t count = 8 * lanes, in = 4 * Step, out = 1;
  static auto scalar() { return scalar_rows.rgba_from_cmyk[Step / 2]; }
  ROWS_FN static void block(_KXRGBA* dst, const unsigned char* src) {
    const Vec x0 = pixels32<Step>(src), x1 = pixels32<Step>(src + 16 * lanes * Step);
    const Vec cm0 = shuffle8(x0, words_c_m.vec()), cm1 = shuffle8(x1, words_c_m.vec());
    const Vec yk0 = shuffle8(x0, words_y_k.vec()), yk1 = shuffle8(x1, words_y_k.vec());
    // Lane l of each: four pixels of x0, then four of x1.
    const Vec c = unpacklo64(cm0, cm1), m = unpackhi64(cm0, cm1);
    const Vec y = unpacklo64(yk0, yk1), k = unpackhi64(yk0, yk1);

    const Vec no_c = sub16(set16(256), c), no_m = sub16(set16(256), m);
    const Vec no_y = sub16(set16(255), y), no_k = sub16(set16(255), k);
    const Vec cm00 = mullo16(no_c, no_m), cm01 = mullo16(no_c, m);
    const Vec cm10 = mullo16(c, no_m), cm11 = mullo16(c, m);
    const Vec yk00 = mullo16(no_y, no_k), yk01 = mullo16(no_y, k);
    const Vec yk10 = mullo16(y, no_k), yk11 = mullo16(y, k);

    const Vec inks = or_(c, m);
    const Vec paper = or_(mulhi16(cm00, yk00), where_zero16(inks, yk00));
    const Vec black = or_(mulhi16(cm00, yk01), where_zero16(inks, yk01));
    const Vec yellow = or_(mulhi16(cm00, yk10), where_zero16(inks, yk10));
    const Vec yellow_black = or_(mulhi16(cm00, yk11), where_zero16(inks, yk11));

    const Vec nothing = set16(0);
    Sum r = {nothing, nothing}, g = r, b = r;
    add_corners<2, 3>(r, g, b, yellow, yellow_black);
    add_corners<1, 5>(r, g, b, black, mulhi16(cm01, yk01));
    add_corners<4, 6>(r, g, b, mulhi16(cm01, yk00), mulhi16(cm01, yk10));
    add_corners<7, 15>(r, g, b, mulhi16(cm01, yk11), nothing);
    add_corners<8, 9>(r, g, b, mulhi16(cm10, yk00), mulhi16(cm10, yk01));
    add_corners<10, 11>(r, g, b, mulhi16(cm10, yk10), mulhi16(cm10, yk11));
    add_corners<12, 14>(r, g, b, mulhi16(cm11, yk00), mulhi16(cm11, yk10));

    const Vec white = srl16<8>(paper), gray = add16(white, srl16<11>(black));
    const Vec red = add16(add16(white, srl16<8>(yellow)), total(r));
    const Vec blue_green = or_(add16(gray, total(b)), sll16<8>(add16(gray, total(g))));
    const Vec red_alpha = or_(red, set16(0xFF00));
    store(dst, unpacklo16(blue_green, red_alpha));
    store(dst + 4 * lanes, unpackhi16(blue_green, red_alpha));
  }
};

// Words C, M of each pixel of a lane; words Y, K.
constexpr Bytes64 words_cm =
    Bytes64::of([](int i) { return i % 2 == 0 ? i % 16 / 4 * 4 + i % 4 / 2 : none; });
constexpr Bytes64 words_yk =
    Bytes64::of([](int i) { return i % 2 == 0 ? i % 16 / 4 * 4 + i % 4 / 2 + 2 : none; });

/// Black plus the luma of the inks of four pixels a lane, a 32-bit word each. Black enters with a
/// whole 1024 parts, which the truncation of the rest does not see.
ROWS_FN Vec ink_cmyk(Vec cmyk) {
  const Vec cm = shuffle8(cmyk, words_cm.vec()), yk = shuffle8(cmyk, words_yk.vec());
  return srl32<10>(add32(madd16(cm, set32(306 | 601 << 16)), madd16(yk, set32(117 | 1024 << 16))));
}

struct GrayFromCmyk {
  static constexpr size_t count = 8 * lanes, in = 4, out = 2;
  static auto scalar() { return scalar_rows.gray_from_cmyk; }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    const Vec ink = packus32(ink_cmyk(lanes_at(src, 32, 0)), ink_cmyk(lanes_at(src + 16, 32, 0)));
    const Vec gray = sub16(set16(255), min16(ink, set16(255)));
    store(dst, or_(gray, set16(0xFF00)));
  }
};

// ---- CMYK by lookup table ----

// Where the pixels of one vector lie in the table (pdf/cs/cmyk_grid.h). The tetrahedral walk along
// falling fractions f1 >= f2 >= f3 of 16 is a weighted sum of its four nodes, with the weights
// 16 - f1, f1 - f2, f2 - f3, f3. A node that only steps of fraction 0 lead to gets the offset of
// the node before it: it has weight 0, and may lie past the table.
struct alignas(64) GridPlaces {
  static constexpr size_t count = 4 * lanes;
  int pixel[count];     // the source pixel
  int node[count];      // entry of the base node, less 1 where that is inside the table
  int at_start[count];  // -1 where it is not
  int step[3][count];   // entries from the base node to the other three
  int cyan[count];      // entries to the next cyan slab, 0 where cyan's fraction is 0
  int weight01[count], weight23[count];  // pairs of 16-bit words
  int cyan_fraction[count];

  ROWS_FN void find(Vec pixels) {
    const Vec nothing = set32(0), one = set16(1), part = set16(15), low = set32(0xFFFF);
    // A component v lies (v + 1) / 16 nodes along its axis.
    const Vec cm = add16(shuffle8(pixels, words_cm.vec()), one);
    const Vec yk = add16(shuffle8(pixels, words_yk.vec()), one);
    const Vec base = add32(madd16(srl16<4>(cm), set32(cmyk_grid::cyan | cmyk_grid::magenta << 16)),
                           madd16(srl16<4>(yk), set32(cmyk_grid::yellow | cmyk_grid::black << 16)));
    const Vec start = if_equal32(base, nothing, set32(-1), nothing);
    const Vec fcm = and_(cm, part), fyk = and_(yk, part);
    const Vec fc = and_(fcm, low), fm = srl32<16>(fcm), fy = and_(fyk, low), fk = srl32<16>(fyk);

    const Vec f1 = max16(max16(fm, fy), fk), f3 = min16(min16(fm, fy), fk);
    const Vec f2 = sub16(add16(add16(fm, fy), fk), add16(f1, f3));
    const Vec m = set32(cmyk_grid::magenta), y = set32(cmyk_grid::yellow),
              k = set32(cmyk_grid::black), myk = add32(add32(m, y), k);
    const Vec first = if_equal32(fm, f1, m, if_equal32(fy, f1, y, k));
    const Vec third = if_equal32(fk, f3, k, if_equal32(fy, f3, y, m));
    const Vec step1 = if_equal32(f1, nothing, nothing, first);
    const Vec step2 = if_equal32(f2, nothing, step1, sub32(myk, third));

    store(pixel, pixels);
    store(node, sub32(base, add32(set32(1), start)));
    store(at_start, start);
    store(step[0], step1);
    store(step[1], step2);
    store(step[2], if_equal32(f3, nothing, step2, myk));
    store(cyan, if_equal32(fc, nothing, nothing, set32(cmyk_grid::cyan)));
    store(weight01, or_(sub16(set32(16), f1), sll32<16>(sub16(f1, f2))));
    store(weight23, or_(sub16(f2, f3), sll32<16>(f3)));
    store(cyan_fraction, fc);
  }
};

/// The same node of two cyan slabs, 8 bytes each, less 32768 an entry: products are signed.
ROWS_FN __m128i two_nodes(const unsigned short* node, const unsigned short* next_slab) {
  const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(node));
  const __m128i high = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(next_slab));
  return _mm_xor_si128(_mm_unpacklo_epi64(low, high), _mm_set1_epi16(-32768));
}

/// One colour, less 32768, in three 32-bit words. Nodes have 6 bytes and are read as 8, so they are
/// read from the entry before: the words are the second to fourth, and those of the very first
/// node, which has none before it and lies far from the end, the first to third.
ROWS_FN __m128i grid_color(const unsigned short* grid, const GridPlaces& at, size_t i) {
  const unsigned short* p = grid + at.node[i];
  const unsigned short* q = p + at.cyan[i];
  const __m128i n0 = two_nodes(p, q), n1 = two_nodes(p + at.step[0][i], q + at.step[0][i]);
  const __m128i n2 = two_nodes(p + at.step[1][i], q + at.step[1][i]);
  const __m128i n3 = two_nodes(p + at.step[2][i], q + at.step[2][i]);
  const __m128i w01 = _mm_set1_epi32(at.weight01[i]), w23 = _mm_set1_epi32(at.weight23[i]);
  const __m128i below =
      _mm_srai_epi32(_mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(n0, n1), w01),
                                   _mm_madd_epi16(_mm_unpacklo_epi16(n2, n3), w23)),
                     4);
  const __m128i above =
      _mm_srai_epi32(_mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(n0, n1), w01),
                                   _mm_madd_epi16(_mm_unpackhi_epi16(n2, n3), w23)),
                     4);
  const __m128i way =
      _mm_mullo_epi32(_mm_sub_epi32(above, below), _mm_set1_epi32(at.cyan_fraction[i]));
  return _mm_add_epi32(below, _mm_srai_epi32(way, 4));
}

/// Four colours of grid_color, those of places i to i + 3, to pixels.
ROWS_FN __m128i grid_pixels(__m128i a, __m128i b, __m128i c, __m128i d, const GridPlaces& at,
                            size_t i) {
  const __m128i ab = _mm_srli_epi16(_mm_packs_epi32(a, b), 8);
  const __m128i cd = _mm_srli_epi16(_mm_packs_epi32(c, d), 8);
  const __m128i bytes = _mm_xor_si128(_mm_packus_epi16(ab, cd), _mm_set1_epi8(-128));
  const __m128i start = load128(at.at_start + i);
  const __m128i rgb = _mm_blendv_epi8(_mm_srli_epi32(bytes, 8), bytes, start);
  const __m128i swap = _mm_setr_epi8(2, 1, 0, -1, 6, 5, 4, -1, 10, 9, 8, -1, 14, 13, 12, -1);
  return _mm_or_si128(_mm_shuffle_epi8(rgb, swap), _mm_set1_epi32(static_cast<int>(0xFF000000)));
}

template <size_t Step>
ROWS_TARGET void rgba_from_cmyk_grid(_KXRGBA* dst, const unsigned char* src, size_t n,
                                     const unsigned short* grid, size_t entries) {
  constexpr size_t count = GridPlaces::count;
  if (n < count || entries < size_t{cmyk_grid::entries}) {
    return scalar_rows.rgba_from_cmyk_grid[Step / 2](dst, src, n, grid, entries);
  }
  GridPlaces at;
  // Runs of one colour are common: the last colour of a flat group is kept.
  bool known = false;
  __m128i last = _mm_setzero_si128(), last_result = last;
  for (size_t i = 0; i < n; i += count) {
    if (i + count > n) i = n - count;
    at.find(pixels32<Step>(src + 4 * Step * i));
    for (size_t j = 0; j < count; j += 4) {
      const __m128i four = load128(at.pixel + j);
      const __m128i one = _mm_shuffle_epi32(four, 0);
      __m128i result;
      if (_mm_movemask_epi8(_mm_cmpeq_epi32(four, one)) == 0xFFFF) {
        if (!known || _mm_movemask_epi8(_mm_cmpeq_epi32(one, last)) != 0xFFFF) {
          const __m128i color = grid_color(grid, at, j);
          last_result = grid_pixels(color, color, color, color, at, j);
          last = one;
          known = true;
        }
        result = last_result;
      } else {
        const __m128i a = grid_color(grid, at, j), b = grid_color(grid, at, j + 1);
        const __m128i c = grid_color(grid, at, j + 2), d = grid_color(grid, at, j + 3);
        result = grid_pixels(a, b, c, d, at, j);
      }
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i + j), result);
    }
  }
}

// ---- one-bit samples ----

/// `bytes` source bytes in the low end of a 64-bit word, which fills the vector.
ROWS_FN Vec fill64(const unsigned char* src, size_t bytes) {
  int64_t word = 0;
  std::memcpy(&word, src, bytes);
  return set64(word);
}

// Which source byte a result comes from, and its bit there, for results of 4, 2 and 1 bytes.
template <int Size>
constexpr Bytes64 byte_of = Bytes64::of([](int i) { return i / Size / 8; });
template <int Size>
constexpr Bytes64 bit_of = Bytes64::of([](int i) { return 0x80 >> i / Size % 8; });

ROWS_TARGET void rgba_from_1bit(_KXRGBA* dst, const unsigned char* src, size_t n,
                                const _KXRGBA* table) {
  const Vec off = set32(load32(&table[0])), on = set32(load32(&table[1]));
  size_t i = 0;
  for (; i + 16 <= n; i += 16) {
    const Vec bits = fill64(src + i / 8, 2);
    for (size_t j = 0; j < 4 / lanes; ++j) {
      const Vec each = shuffle8(bits, byte_of<4>.vec(j));
      store(dst + i + 4 * lanes * j, choose8(each, bit_of<4>.vec(j), off, on));
    }
  }
  scalar_rows.rgba_from_1bit(dst + i, src + i / 8, n - i, table);
}

ROWS_FN unsigned pair_of(const unsigned char* entry) { return entry[0] + 256u * entry[1]; }

template <int Size>
ROWS_FN size_t blocks_from_1bit(unsigned char* dst, const unsigned char* src, size_t n, Vec off,
                                Vec on) {
  constexpr size_t count = sizeof(Vec) / Size;
  size_t i = 0;
  for (; i + count <= n; i += count) {
    const Vec each = shuffle8(fill64(src + i / 8, count / 8), byte_of<Size>.vec());
    store(dst + i * Size, choose8(each, bit_of<Size>.vec(), off, on));
  }
  return i;
}

ROWS_TARGET void gray_from_1bit(unsigned char* dst, const unsigned char* src, size_t n,
                                const unsigned char* table) {
  const size_t i =
      blocks_from_1bit<2>(dst, src, n, set16(pair_of(table)), set16(pair_of(table + 2)));
  scalar_rows.gray_from_1bit(dst + 2 * i, src + i / 8, n - i, table);
}

ROWS_TARGET void bytes_from_1bit(unsigned char* dst, const unsigned char* src, size_t n,
                                 const unsigned char* table) {
  const size_t i =
      blocks_from_1bit<1>(dst, src, n, set16(0x0101u * table[0]), set16(0x0101u * table[1]));
  scalar_rows.bytes_from_1bit(dst + i, src + i / 8, n - i, table);
}

// ---- bytes ----

struct Average4 {
  static constexpr size_t count = 16 * lanes, in = 4, out = 1;
  static auto scalar() { return scalar_rows.average4; }
  /// Four sums of four bytes a lane, divided.
  ROWS_FN static Vec four(const unsigned char* src) {
    const Vec pairs = maddubs(lanes_at(src, 64, 0), set16(0x0101));
    return srl32<2>(madd16(pairs, set16(1)));
  }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    // Lane l of the vectors: results 16l to 16l + 3, and so on to 16l + 15.
    const Vec low = packus32(four(src), four(src + 16));
    const Vec high = packus32(four(src + 32), four(src + 48));
    store(dst, packus16(low, high));
  }
};

// In place the overlapping last block of run() would complement twice: the end is scalar.
ROWS_TARGET void complement(unsigned char* dst, const unsigned char* src, size_t n) {
  size_t i = 0;
  for (; i + sizeof(Vec) <= n; i += sizeof(Vec)) store(dst + i, xor_(load(src + i), set16(0xFFFF)));
  scalar_rows.complement(dst + i, src + i, n - i);
}

// ---- pixels for writers ----
//
// In 128-bit registers on every path: the rows are bound by the compression that they feed.

/// Four pixels to twelve bytes: three stores of 16 bytes hold sixteen pixels.
struct RgbFromRgba {
  static constexpr size_t count = 16, in = 4, out = 3;
  static auto scalar() { return scalar_rows.rgb_from_rgba; }
  ROWS_FN static void block(unsigned char* dst, const unsigned char* src) {
    const __m128i pack = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m128i a = _mm_shuffle_epi8(load128(src), pack);
    const __m128i b = _mm_shuffle_epi8(load128(src + 16), pack);
    const __m128i c = _mm_shuffle_epi8(load128(src + 32), pack);
    const __m128i d = _mm_shuffle_epi8(load128(src + 48), pack);
    store128(dst, _mm_or_si128(a, _mm_slli_si128(b, 12)));
    store128(dst + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
    store128(dst + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
  }
  ROWS_FN static void store128(unsigned char* dst, __m128i v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), v);
  }
};

ROWS_TARGET void rgba_from_rgb_and_alpha(unsigned char* dst, const unsigned char* src, size_t n,
                                         const unsigned char* alpha) {
  const __m128i spread = _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  size_t i = 0;
  // Each load takes 16 bytes, of which four belong to the two pixels behind.
  for (; i + 6 <= n; i += 4) {
    const __m128i rgb = _mm_shuffle_epi8(load128(src + 3 * i), spread);
    const __m128i opacity = _mm_cvtepu8_epi32(_mm_cvtsi32_si128(load32(alpha + i)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * i),
                     _mm_or_si128(rgb, _mm_slli_epi32(opacity, 24)));
  }
  scalar_rows.rgba_from_rgb_and_alpha(dst + 4 * i, src + 3 * i, n - i, alpha + i);
}

ROWS_TARGET void gray_alpha_from_gray_and_alpha(unsigned char* dst, const unsigned char* src,
                                                size_t n, const unsigned char* alpha) {
  size_t i = 0;
  for (; i + 8 * lanes <= n; i += 8 * lanes) {
    store(dst + 2 * i, or_(widen8to16(src + i), sll16<8>(widen8to16(alpha + i))));
  }
  scalar_rows.gray_alpha_from_gray_and_alpha(dst + 2 * i, src + i, n - i, alpha + i);
}

void overlay(CPDFRows& rows) {
  rows.rgba_from_gray[0] = run<RgbaFromGray<1>, _KXRGBA>;
  rows.rgba_from_gray[1] = run<RgbaFromGray<2>, _KXRGBA>;
  rows.rgba_from_gray[2] = run<RgbaFromGray<4>, _KXRGBA>;
  rows.rgba_from_rgb[0] = run<RgbaFromRgb<1>, _KXRGBA>;
  rows.rgba_from_rgb[1] = run<RgbaFromRgb<2>, _KXRGBA>;
  rows.rgba_from_rgb[2] = run<RgbaFromRgb<4>, _KXRGBA>;
  rows.rgba_from_cmyk[0] = run<RgbaFromCmyk<1>, _KXRGBA>;
  rows.rgba_from_cmyk[1] = run<RgbaFromCmyk<2>, _KXRGBA>;
  rows.rgba_from_cmyk[2] = run<RgbaFromCmyk<4>, _KXRGBA>;
  rows.rgba_from_cmyk_grid[0] = rgba_from_cmyk_grid<1>;
  rows.rgba_from_cmyk_grid[1] = rgba_from_cmyk_grid<2>;
  rows.rgba_from_cmyk_grid[2] = rgba_from_cmyk_grid<4>;
  rows.gray_from_gray = run<GrayFromGray, unsigned char>;
  rows.gray_from_rgb = run<GrayFromRgb, unsigned char>;
  rows.gray_from_cmyk = run<GrayFromCmyk, unsigned char>;
  rows.rgba_from_1bit = rgba_from_1bit;
  rows.gray_from_1bit = gray_from_1bit;
  rows.bytes_from_1bit = bytes_from_1bit;
  rows.average4 = run<Average4, unsigned char>;
  rows.complement = complement;
  rows.rgb_from_rgba = run<RgbFromRgba, unsigned char>;
  rows.rgba_from_rgb_and_alpha = rgba_from_rgb_and_alpha;
  rows.gray_alpha_from_gray_and_alpha = gray_alpha_from_gray_and_alpha;
}
