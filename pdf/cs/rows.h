// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "kx/rgba.h"

// Conversions of whole rows, one function a conversion, chosen once for the CPU at hand.
//
// Contract of every row function:
//   - n counts results (pixels or bytes written), never source bytes; n = 0 writes nothing
//   - source and destination do not overlap, except that the scalar functions walk strictly in
//     order, one result after the other, and so take overlapping rows as that order allows
//   - any alignment; exactly n results are written; of the source nothing is read past the last
//     byte that a result needs
//   - every path gives the bytes of the scalar one (rows_scalar.cpp), which is the definition
//
// Arrays of three are indexed by step: [0] every source pixel, [1] the first of each two, [2] the
// first of each four.

/// The paths, in rising order of preference.
enum class CPDFCpu { scalar, sse41, avx2, avx512 };

struct CPDFRows {
  using Rgba = void (*)(_KXRGBA* dst, const unsigned char* src, size_t n);
  using Bytes = void (*)(unsigned char* dst, const unsigned char* src, size_t n);
  using RgbaGrid = void (*)(_KXRGBA* dst, const unsigned char* src, size_t n,
                            const unsigned short* grid, size_t entries);
  using RgbaTable = void (*)(_KXRGBA* dst, const unsigned char* src, size_t n,
                             const _KXRGBA* table);
  using BytesTable = void (*)(unsigned char* dst, const unsigned char* src, size_t n,
                              const unsigned char* table);
  using BytesAlpha = void (*)(unsigned char* dst, const unsigned char* src, size_t n,
                              const unsigned char* alpha);

  CPDFCpu cpu;

  // Device colours. Source: 1, 3 or 4 bytes a pixel.
  Rgba rgba_from_gray[3];
  Rgba rgba_from_rgb[3];
  Rgba rgba_from_cmyk[3];
  /// By lookup table (pdf/cs/device_cmyk_ext.h); a pixel that the grid cannot serve keeps its
  /// bytes.
  RgbaGrid rgba_from_cmyk_grid[3];

  // Gray and alpha 255, two bytes a pixel.
  Bytes gray_from_gray;
  Bytes gray_from_rgb;
  Bytes gray_from_cmyk;

  // Lookups of one-byte samples in 256 entries.
  RgbaTable rgba_from_8bit[3];
  BytesTable gray_from_8bit;   ///< Entries and results of two bytes: gray, alpha.
  BytesTable bytes_from_8bit;  ///< Entries and results of one byte.

  // Expansions of one-bit samples, most significant bit first, to one of two entries. Of the last
  // source byte the bits past n are ignored.
  RgbaTable rgba_from_1bit;
  BytesTable gray_from_1bit;   ///< Entries and results of two bytes: gray, alpha.
  BytesTable bytes_from_1bit;  ///< Entries and results of one byte.

  // Bytes to bytes.
  Bytes average4;    ///< The average of four source bytes each, truncated; reads 4 * n bytes.
  Bytes complement;  ///< 255 - byte; dst may be src itself.

  // Pixels as the writers of files take them.
  Bytes rgb_from_rgba;  ///< Three bytes from each four of _KXRGBA: r, g, b.
  /// One byte of `alpha` a pixel behind its three bytes of RGB, or its one of gray.
  BytesAlpha rgba_from_rgb_and_alpha, gray_alpha_from_gray_and_alpha;
};

/// The table in use: the best path that the CPU runs, chosen at the first call. In tests and
/// benchmarks, built with PDFBMP_FORCE_CPU, the environment variable PDFBMP_CPU (a name of
/// cpu_name) chooses it, where the CPU runs that path.
const CPDFRows& rows();

/// The scalar functions.
extern const CPDFRows scalar_rows;

/// rows(), or scalar_rows where the two byte ranges overlap.
const CPDFRows& rows_for(const void* dst, size_t dst_bytes, const void* src, size_t src_bytes);

/// Whether this CPU, and this build, have the path.
bool cpu_runs(CPDFCpu cpu);

/// The functions of one path, each conversion that it has no form of taken from the next lower
/// path. Only for a path that cpu_runs.
CPDFRows rows_of(CPDFCpu cpu);

/// "scalar", "sse41", "avx2" or "avx512".
const char* cpu_name(CPDFCpu cpu);
