// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// untrusted FILE.pdf: decodes every image of a file that nobody vouches for, and says what became
// of each. The code of docs/untrusted-files.md.
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "pdf/doc/document.h"
#include "pdf/doc/picture.h"
#include "pdf/filter/jbig2_helper.h"

namespace {

// snippet
std::string decode(CPDFDocument& document, const CPDFFoundImage& found,
                   const CPDFFilterLimits& limits) {
  CPDFLoadedImage loaded = document.load_image(found);
  const std::shared_ptr<CPDFDecodeReport> report = loaded.report;
  std::string problem;
  auto picture = pdfbmp::open_picture(std::move(loaded), found, limits.max_pixels, problem);
  if (picture == nullptr) return problem;
  std::vector<unsigned char> row(static_cast<std::size_t>(picture->info().row_bytes()));
  for (int y = 0; y < picture->info().height; ++y) {
    if (!picture->read_row(row.data())) return "there is not enough memory";
    // Use the row. Between two of them is the place to stop for a deadline.
    if (report != nullptr && report->damaged) return "partly: " + report->problem;
  }
  if (report != nullptr && report->bytes < report->row_bytes * found.height) {
    return "partly: the data ends early";  // Which blank rows stand for.
  }
  return problem.empty() ? "whole" : problem;
}

int decode_all(std::shared_ptr<CPDFSource> source) {
  pdfbmp::switch_off_jbig2();  // or pdfbmp::set_jbig2_helper() with the program's full path
  CPDFOpenOptions options;
  options.limits.max_pixels = 100'000'000;
  options.limits.max_codec_bytes = 256 * 1024 * 1024;
  CPDFOpenStatus status;
  std::string error;
  auto document = CPDFDocument::open(std::move(source), options, status, error);
  if (document == nullptr) return std::fprintf(stderr, "%s\n", error.c_str()), 1;
  int left = 1000;
  for (const CPDFFoundImage& found : document->find_images(1, document->page_count())) {
    if (found.kind == CPDFImageKind::mask || found.kind == CPDFImageKind::smask) continue;
    if (--left < 0) return std::fprintf(stderr, "there are too many images\n"), 1;
    const std::string result = decode(*document, found, options.limits);
    std::printf("page %d, object %d: %s\n", found.page, found.object, result.c_str());
  }
  return 0;
}
// end of snippet

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::string error;
  std::shared_ptr<CPDFSource> source = pdfbmp::open_file_source(argv[1], error);
  if (source == nullptr) return std::fprintf(stderr, "%s\n", error.c_str()), 1;
  return decode_all(std::move(source));
}
