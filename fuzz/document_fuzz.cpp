// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// A whole file: opened, its images found, and their pictures, raw data and bitmaps read, all within
// small limits. With CONTENT the file is made around content: of a page with an image, a pattern
// and fonts, and of a form that the page and the form itself may run.
//
// Input: the file; or the page's content, a form feed, the form's content.
#include <algorithm>
#include <memory>
#include <vector>

#include "fuzz/small_limits.h"
#include "fuzz/target.h"
#include "pdf/doc/document.h"
#include "pdf/doc/picture.h"
#include "pdf/filter/jbig2_helper.h"
#include "tools/encoders/pdf_builder.h"

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

std::string read_document(const std::string& file) {
  pdfbmp::switch_off_jbig2();
  CPDFOpenOptions options;
  options.limits = small_limits();
  options.limits.max_pixels = max_pixels;
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

std::string file_around(const std::string& content) {
  const std::size_t middle = std::min(content.find('\f'), content.size());
  PdfBuilder file;
  const std::string image = PdfBuilder::ref(file.add_image(2, 2));
  const std::string glyph = PdfBuilder::ref(file.add_stream("", "d0 2 0 0 2 0 0 cm /I Do"));
  const std::string pattern = PdfBuilder::ref(file.add_stream("/PatternType 1 /Matrix [2 0 0 2 0 0] /BBox [0 0 9 9]", "/I Do"));
  const std::string resources = "/XObject << /I " + image + " /F 6 0 R >> /Pattern << /P " + pattern +
                                " >> /ColorSpace << /C /DeviceRGB >>" +
                                "/Font << /T << /Type /Font /Subtype /Type3 /FontMatrix [1 0 0 1 0 0] /CharProcs << /g " + glyph +
                                " >> /Encoding << /Differences [65 /g] >> /FirstChar 65 /Widths [9] >> >>";
  const int form = file.add_form("/Resources << " + resources + " >>", content.substr(std::min(middle + 1, content.size())));
  require(form == 6);
  file.add_page(resources, content.substr(0, middle));
  return file.finish();
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  const std::string input(in.text());
  return read_document(CONTENT ? file_around(input) : input);
}
