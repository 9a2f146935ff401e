// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pdf/doc/found_image.h"
#include "pdf/filter/filter.h"
#include "pdf/filter/source.h"
#include "pdf/image/image.h"
#include "pdf/obj/xref.h"

enum class CPDFOpenStatus {
  ok,
  unreadable,      ///< No PDF, or one that is damaged beyond repair.
  needs_password,  ///< Encrypted, and the password given does not open it.
};

struct CPDFOpenOptions {
  std::string password;     ///< User or owner password.
  CPDFFilterLimits limits;  ///< For every stream of the document.
};

/// An image with what its streams report while it is decoded. The document must outlive it.
struct CPDFLoadedImage {
  /// Loaded, its sub-images too; null where memory failed.
  std::unique_ptr<CPDFImage> image;

  /// Of the image's own stream, of its mask's and its soft mask's. Null where there is no stream.
  std::shared_ptr<CPDFDecodeReport> report, mask_report, smask_report;

  /// Why the image has no stream or no colour space, in words; empty where it has what it needs.
  std::string problem;

  /// What the record borrows of an inline image's dictionary, bytes and named spaces. The image is
  /// destroyed before it.
  std::shared_ptr<const void> keep_alive;
};

/// An opened PDF. Opening and every member may be called from any thread; calls that read objects
/// take the document's lock, the streams they return do not. Nothing throws but std::bad_alloc.
class PDFBMP_API CPDFDocument {
 public:
  /// Null where the file cannot be opened; `status` and `message` (one line) then say why.
  static std::unique_ptr<CPDFDocument> open(std::shared_ptr<CPDFSource> source,
                                            const CPDFOpenOptions& options, CPDFOpenStatus& status,
                                            std::string& message);
  virtual ~CPDFDocument() = default;

  virtual int page_count() const = 0;

  /// What was repaired or odd while the file was opened and walked, a line each.
  virtual std::vector<std::string> warnings() const = 0;

  /// The images that pages `first` to `last` (1-based, inclusive, cut to the pages there are) use,
  /// in page order, each once, a mask or soft mask right after its image.
  virtual std::vector<CPDFFoundImage> find_images(int first, int last) = 0;

  /// A fresh record of a found image, loaded and ready for its requests.
  virtual CPDFLoadedImage load_image(const CPDFFoundImage& found) = 0;

  /// The image's data as it stands in the file, decrypted, before any filter. Null where it cannot
  /// be read.
  virtual std::unique_ptr<CPDFStream> raw_stream(const CPDFFoundImage& found) = 0;

  /// Objects and streams of the document.
  virtual CPDFXRefTable& xref() = 0;

  /// The document's own CMYK output profile (OutputIntents), empty where it has none.
  virtual std::string output_intent_profile() = 0;
};
