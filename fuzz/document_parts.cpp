// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "fuzz/document_parts.h"

#include <cmath>
#include <memory>
#include <vector>

#include "fuzz/target.h"
#include "pdf/doc/document.h"
#include "pdf/doc/picture.h"
#include "pdf/filter/jbig2_helper.h"

namespace {

constexpr int max_pixels = 1 << 14;

void read_picture(CPDFDocument& document, const CPDFFoundImage& found, std::string& results) {
  std::string problem;
  const auto picture = pdfbmp::open_picture(document.load_image(found), found, max_pixels, problem);
  results += problem;
  if (picture == nullptr) {
    require(!problem.empty());
    return;
  }
  const CPDFRasterInfo& info = picture->info();
  require(info.width >= 1 && info.height >= 1 && info.width <= max_pixels / info.height);
  std::vector<unsigned char> row(static_cast<std::size_t>(info.row_bytes()));
  for (int y = 0; y < info.height && picture->read_row(row.data()); ++y) results.append(row.begin(), row.end());
}

void check_placements(const CPDFFoundImage& found) {
  for (const CPDFPlacement& placement : found.placements) {
    require(placement.page >= found.page && placement.page <= found.pages.back());
    require(!(placement.bbox[0] > placement.bbox[2] || placement.bbox[1] > placement.bbox[3]));
    require(!(placement.ppi[0] < 0 || placement.ppi[1] < 0));
  }
}

}  // namespace

std::string read_document(const std::string& file) {
  pdfbmp::switch_off_jbig2();
  CPDFOpenOptions options;
  options.limits = {max_pixels, 1 << 22, 16, 10};
  CPDFOpenStatus status = CPDFOpenStatus::ok;
  std::string results;
  const auto document = CPDFDocument::open(pdfbmp::make_memory_source(file), options, status, results);
  require((document != nullptr) == (status == CPDFOpenStatus::ok) && (document != nullptr) == results.empty());
  if (document == nullptr) return results;
  int left = 8;
  for (const CPDFFoundImage& found : document->find_images(1, 4)) {
    check_placements(found);
    results += found.colorspace + ' ' + std::to_string(found.object) + ' ' + std::to_string(found.placements.size());
    if (left-- == 0) break;
    read_picture(*document, found, results);
    if (found.width > 0 && found.height > 0 && found.width <= max_pixels / found.height) {
      const CPDFLoadedImage loaded = document->load_image(found);
      if (loaded.image != nullptr) add(results, loaded.image->get_bmp_gray());
    }
    char bytes[256];
    if (const auto raw = document->raw_stream(found)) results += std::to_string(raw->read_block(bytes, sizeof bytes));
  }
  return results + document->output_intent_profile();
}
