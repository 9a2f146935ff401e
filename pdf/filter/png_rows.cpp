// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/png_rows.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Each byte depends on the one a pixel before it, so a row cannot be done in wide vectors; but the
// bytes of a pixel can be done at once. Pixels of up to 8 bytes are held as eight 16-bit lanes, of
// which the first Step count; the compiler turns these into the vector unit's own.
using Lanes = std::int16_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(8)));

Lanes load(const unsigned char* p) {
  Bytes b;
  std::memcpy(&b, p, sizeof b);
  return __builtin_convertvector(b, Lanes);
}

template <int Step>
void store(unsigned char* p, Lanes v) {
  const Bytes b = __builtin_convertvector(v, Bytes);
  std::memcpy(p, &b, Step);
}

Lanes abs_of(Lanes v) {
  const Lanes negative = v >> 15;
  return (v ^ negative) - negative;
}

Lanes choose(Lanes condition, Lanes yes, Lanes no) { return (condition & yes) | (~condition & no); }

// PNG, 9.4: whichever of left, above and corner is nearest to left + above - corner, the earlier
// one where two are. Corner is compared with the nearer of the other two, which is the same thing
// with a shorter way from left to the result, on which every pixel waits for the one before it.
Lanes paeth(Lanes left, Lanes above, Lanes corner) {
  const Lanes to_left = above - corner;
  const Lanes to_above = left - corner;
  const Lanes a = abs_of(to_left);
  const Lanes b = abs_of(to_above);
  const Lanes c = abs_of(to_left + to_above);
  const Lanes take_above = b < a;
  return choose(choose(take_above, b, a) > c, corner, choose(take_above, above, left));
}

int paeth(int left, int above, int corner) {
  const int a = std::abs(above - corner);
  const int b = std::abs(left - corner);
  const int c = std::abs(left + above - 2 * corner);
  const int nearer = b < a ? above : left;
  return std::min(a, b) > c ? corner : nearer;
}

unsigned char byte(int v) { return static_cast<unsigned char>(v); }

void undo_up(unsigned char* row, const unsigned char* above, int n) {
  for (int i = 0; i < n; ++i) row[i] = byte(row[i] + above[i]);
}

// ---- Pixels of Step bytes in lanes. A load takes 8 bytes, which the slack allows for.

template <int Step>
void undo_sub_lanes(unsigned char* row, int n) {
  Lanes left = {};
  for (int i = 0; i + Step <= n; i += Step) {
    left = (left + load(row + i)) & 255;
    store<Step>(row + i, left);
  }
}

template <int Step>
void undo_average_lanes(unsigned char* row, const unsigned char* above, int n) {
  Lanes left = {};
  for (int i = 0; i + Step <= n; i += Step) {
    left = (load(row + i) + ((left + load(above + i)) >> 1)) & 255;
    store<Step>(row + i, left);
  }
}

// ---- Pixels of any size, from byte `i` on.

void undo_sub(unsigned char* row, int i, int n, int step) {
  for (i = i < step ? step : i; i < n; ++i) row[i] = byte(row[i] + row[i - step]);
}

void undo_average(unsigned char* row, const unsigned char* above, int i, int n, int step) {
  for (; i < n && i < step; ++i) row[i] = byte(row[i] + above[i] / 2);
  for (; i < n; ++i) row[i] = byte(row[i] + (row[i - step] + above[i]) / 2);
}

void undo_paeth(unsigned char* row, const unsigned char* above, int i, int n, int step) {
  for (; i < n && i < step; ++i) row[i] = byte(row[i] + above[i]);
  for (; i < n; ++i) {
    row[i] = byte(row[i] + paeth(row[i - step], above[i], above[i - step]));
  }
}

// Gray rows, where one lane would be slower than a byte.

void undo_sub_gray(unsigned char* row, int n) {
  unsigned char left = 0;
  for (int i = 0; i < n; ++i) row[i] = left = byte(left + row[i]);
}

void undo_average_gray(unsigned char* row, const unsigned char* above, int n) {
  int left = 0;
  for (int i = 0; i < n; ++i) row[i] = byte(left = (row[i] + (left + above[i]) / 2) & 255);
}

template <int Step>
int undo_whole_paeth(unsigned char* row, const unsigned char* above, int n) {
#ifdef __x86_64__
  if (__builtin_cpu_supports("sse4.1")) return pdfbmp::undo_paeth_sse41<Step>(row, above, n);
#endif
  return pdfbmp::undo_paeth_lanes<Step>(row, above, n);
}

template <int Step>
void undo_lanes(int type, unsigned char* row, const unsigned char* above, int n) {
  const int whole = n - n % Step;  // A row cut short may end inside a pixel.
  if (type == 1) {
    undo_sub_lanes<Step>(row, n);
    undo_sub(row, whole, n, Step);
  } else if (type == 3) {
    undo_average_lanes<Step>(row, above, n);
    undo_average(row, above, whole, n, Step);
  } else {
    undo_paeth(row, above, undo_whole_paeth<Step>(row, above, n), n, Step);
  }
}

void undo_gray(int type, unsigned char* row, const unsigned char* above, int n) {
  if (type == 1) {
    undo_sub_gray(row, n);
  } else if (type == 3) {
    undo_average_gray(row, above, n);
  } else {
    undo_whole_paeth<1>(row, above, n);
  }
}

void undo_any(int type, unsigned char* row, const unsigned char* above, int n, int step) {
  if (type == 1) {
    undo_sub(row, 0, n, step);
  } else if (type == 3) {
    undo_average(row, above, 0, n, step);
  } else {
    undo_paeth(row, above, 0, n, step);
  }
}

}  // namespace

namespace pdfbmp {

template <int Step>
int undo_paeth_lanes(unsigned char* row, const unsigned char* above, int n) {
  Lanes left = {};
  Lanes corner = {};
  int i = 0;
  for (; i + Step <= n; i += Step) {
    const Lanes up = load(above + i);
    left = (load(row + i) + paeth(left, up, corner)) & 255;
    corner = up;
    store<Step>(row + i, left);
  }
  return i;
}

template int undo_paeth_lanes<1>(unsigned char*, const unsigned char*, int);
template int undo_paeth_lanes<2>(unsigned char*, const unsigned char*, int);
template int undo_paeth_lanes<3>(unsigned char*, const unsigned char*, int);
template int undo_paeth_lanes<4>(unsigned char*, const unsigned char*, int);
template int undo_paeth_lanes<6>(unsigned char*, const unsigned char*, int);
template int undo_paeth_lanes<8>(unsigned char*, const unsigned char*, int);

void undo_png_row(int type, unsigned char* row, const unsigned char* above, int n, int step) {
  if (type < 1 || type > 4) return;
  if (type == 2) return undo_up(row, above, n);
  switch (step) {
    case 1:
      return undo_gray(type, row, above, n);
    case 2:
      return undo_lanes<2>(type, row, above, n);
    case 3:
      return undo_lanes<3>(type, row, above, n);
    case 4:
      return undo_lanes<4>(type, row, above, n);
    case 6:
      return undo_lanes<6>(type, row, above, n);
    case 8:
      return undo_lanes<8>(type, row, above, n);
    default:
      return undo_any(type, row, above, n, step);
  }
}

}  // namespace pdfbmp
