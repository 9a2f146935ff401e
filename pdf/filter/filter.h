// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "pdf/obj/stream.h"

class CPDFDictionary;
class CPDFWorkClock;
class CPDFXRefTable;

// A filter is a stream that decodes what another stream delivers, as it is asked for: none holds
// its whole output, but for those whose format leaves no choice. Each filter lies in a file of its
// own that declares one maker; the table in pdf/filter/filter_table.cpp knows their names.

/// Bounds on what a stream may cost. Each is a property of the whole chain of one image.
struct CPDFFilterLimits {
  std::int64_t max_pixels = std::int64_t{1} << 30;  ///< Of a codec's own header (DCT, JPX, JBIG2).
  std::int64_t max_codec_bytes = std::int64_t{1} << 30;  ///< Held by one codec (progressive, JPX).
  /// Of the processor, for a JBIG2 page and again for each 2^23 of its pixels.
  int max_codec_seconds = 1;
  int max_filters = 16;                                  ///< Filters in one chain.
  int max_scans = 100;                                   ///< Scans of a progressive JPEG.
  std::int64_t max_scan_blocks = std::int64_t{1} << 23;  ///< Blocks in its scans after the 16th.
  std::int64_t max_row_bytes = std::int64_t{1} << 24;    ///< Bytes of a row; columns of CCITT data.

  /// What a filter may deliver: so many bytes, or so many times the data in the file, whichever is
  /// more. Of the last filter only where its own format does not bound it.
  std::int64_t max_stage_bytes = std::int64_t{1} << 26;
  int max_expansion = 4096;

  /// Of the content of pages, forms and glyphs that one search for images reads: so many bytes, or
  /// 16 times the file's, whichever is more; and the images that it finds.
  std::int64_t max_content_bytes = std::int64_t{1} << 24;
  int max_images = 100'000;
  int max_search_seconds = 1;  ///< Of the processor, and again for each 2^20 bytes of the file.
  int max_nesting = 40;        ///< Forms, patterns and glyphs that run one another; 500 at most.

  /// Of the processor, for an image, and again for each 2^20 pixels that the size of the file makes
  /// plausible. What a caller does between two reads of its rows counts as well, so by default
  /// there is no such limit.
  int max_image_seconds = std::numeric_limits<int>::max();
};

/// What became of one stream, written while it is read. Whoever wants it shares it with the stream,
/// which the image unit deletes when it has read it.
struct CPDFDecodeReport {
  std::int64_t bytes = 0;      ///< Decoded bytes that were delivered.
  std::int64_t row_bytes = 0;  ///< Of a row of samples, where who reads them has told; else 0.
  bool damaged = false;        ///< The data is broken or ends early; what came before it is good.
  bool late = false;           ///< The image's time is over: nothing more is delivered.
  std::string problem;  ///< The first thing that went wrong, in words, no full stop; or empty.

  /// Counts what the image takes of the processor's time, its masks included; null where nobody
  /// wants to know.
  std::shared_ptr<CPDFWorkClock> clock;

  /// Notes a problem; the first one stays.
  void note(const char* what) noexcept {
    damaged = true;
    if (!problem.empty()) return;
    try {
      problem = what;
    } catch (...) {
      problem.clear();  // No memory for the words; the flag says enough.
    }
  }
};

/// What a filter is told when it is made. All pointers outlive the call, not the stream.
struct CPDFFilterSetup {
  const CPDFDictionary* parms = nullptr;  ///< This filter's DecodeParms, or null.
  const CPDFDictionary* image = nullptr;  ///< The stream's own dictionary; null for inline stages.
  CPDFXRefTable* xref = nullptr;          ///< Resolves references in both; may be null.
  CPDFFilterLimits limits;
  std::int64_t file_bytes = 0;               ///< Of the data before any filter; 0 if not known.
  std::shared_ptr<CPDFDecodeReport> report;  ///< Never null.
};

/// Makes a filter that reads `input`; null where it cannot be made (the reason is then in the
/// report). The filter owns its input.
using CPDFFilterMaker = std::unique_ptr<CPDFStream> (*)(std::unique_ptr<CPDFStream> input,
                                                        const CPDFFilterSetup& setup);
