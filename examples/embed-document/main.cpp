// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// embed-document FILE.pdf: says the size and the first pixel of every colour bitmap in a file.
#include <cstddef>
#include <cstdio>
#include <string>

#include "pdf/doc/document.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  CPDFOpenStatus status;
  std::string error;
  auto document = CPDFDocument::open(pdfbmp::open_file_source(argv[1], error), {}, status, error);
  if (document == nullptr) return std::fprintf(stderr, "%s\n", error.c_str()), 1;
  for (const CPDFFoundImage& found : document->find_images(1, document->page_count())) {
    CPDFLoadedImage loaded = document->load_image(found);
    const CKXBmp32* bmp = loaded.image != nullptr ? loaded.image->get_bmp() : nullptr;
    if (bmp == nullptr) continue;  // a stencil or a mask, or `loaded.problem` says why
    const unsigned char* top = bmp->pixels + std::ptrdiff_t{bmp->stride} * (bmp->height - 1);
    std::printf("page %d: %d x %d, rgb(%d, %d, %d) at the top left\n", found.page, bmp->width,
                bmp->height, top[2], top[1], top[0]);
  }
  return 0;
}
