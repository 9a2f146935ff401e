// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "pdf/doc/document.h"
#include "pdf/filter/loaded_bytes.h"

/// An image's data as its codec's own file: the encoded bytes between what such a file has around
/// them.
struct CPDFNativeFile {
  const char* suffix = "";  ///< "jpg", "jp2", "j2k" (no boxes), "jb2" or "tif".
  std::string head;
  std::unique_ptr<CPDFLoadedBytes> data;
  std::string tail;
  std::string problem;  ///< What a filter in front of the codec complained of; or empty.
};

namespace pdfbmp {

/// The data of an image whose last filter is DCT, JPX, JBIG2 or CCITTFax, and no other one of them:
/// the filters in front of it are decoded, its own bytes passed on.
///
///   - JPEG and JPEG 2000 data is a file already;
///   - JBIG2 segments get a file header, the globals and the segments that end a page and a file;
///   - CCITT data becomes the strip of a TIFF file.
///
/// False where there is no such file: another last filter, data that is not what it should be, or
/// parameters that the file has no words for (a ColorTransform against the JPEG's own marking,
/// Group 4 data with aligned rows, Group 3 data with neither end-of-line codes nor aligned rows).
/// The file knows nothing of the image's colour space, Decode, masks and colour keys. All of the
/// data is held in memory, at most `limits.max_codec_bytes`.
bool open_native_file(CPDFDocument& document, const CPDFFoundImage& found,
                      const CPDFFilterLimits& limits, CPDFNativeFile& file);

}  // namespace pdfbmp
