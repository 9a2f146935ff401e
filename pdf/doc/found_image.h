// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CPDFDictionary;

enum class CPDFImageKind { image, stencil, mask, smask, inline_image };

/// Where a page paints an image, in points (1/72 inch) from the lower left corner of its crop box,
/// the page not turned. A tiling pattern's image has the placement of one cell.
struct CPDFPlacement {
  int page = 0;                       ///< 1-based.
  std::array<double, 6> matrix = {};  ///< From the unit square to points.
  std::array<double, 4> bbox = {};    ///< x0, y0, x1, y1 in points from the page's lower left.
  std::array<double, 2> ppi = {};     ///< Samples per inch along the picture's x and y.
};

/// An inline image as it stands in a content stream.
struct CPDFInlineImage {
  std::unique_ptr<CPDFDictionary> dict;                ///< Keys as written, abbreviated or full.
  std::string data;                                    ///< Encoded bytes.
  std::shared_ptr<const CPDFDictionary> color_spaces;  ///< ColorSpace resources, or null.
};

/// One image of a document, as the walk over the pages finds it. A record: it does not refer to
/// the document.
struct CPDFFoundImage {
  CPDFImageKind kind = CPDFImageKind::image;
  int page = 0;            ///< 1-based: the first page that uses it.
  std::vector<int> pages;  ///< All pages that use it, ascending.
  int object = 0;          ///< Object number, 0 for an inline image.
  int generation = 0;
  int mask_of = 0;  ///< For a mask or soft mask, the object number of its image.

  bool image_mask = false;  ///< A stencil, inline too.
  int width = 0;
  int height = 0;
  int bpc = 0;
  std::string colorspace;  ///< The family's full PDF name ("DeviceRGB"); empty where there is none.
  std::string base;        ///< For Indexed, the family of its base.
  int components = 0;
  std::vector<std::string> filters;  ///< Full names in the order of decoding.
  bool interpolate = false;
  std::int64_t bytes = 0;                 ///< Encoded bytes.
  std::vector<CPDFPlacement> placements;  ///< Up to half a million, of all images together.

  std::shared_ptr<const CPDFInlineImage> inline_image;  ///< Set for an inline image only.
};
