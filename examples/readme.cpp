// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The code of README.md, as a program: readme FILE.pdf
#include <cstdio>
#include <string>

#include "pdf/doc/document.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string path = argv[1];
  // snippet
  CPDFOpenStatus status;
  std::string error;
  auto document = CPDFDocument::open(pdfbmp::open_file_source(path, error), {}, status, error);
  if (document == nullptr) return 1;  // `status` and `error` say why
  for (const CPDFFoundImage& found : document->find_images(1, document->page_count())) {
    CPDFLoadedImage loaded = document->load_image(found);
    const CKXBmp32* bmp = loaded.image != nullptr ? loaded.image->get_bmp() : nullptr;
    if (bmp == nullptr) continue;  // a stencil or a mask; or `loaded.problem` says why
    std::printf("object %d: %d x %d\n", found.object, bmp->width, bmp->height);
  }
  // end of snippet
  return 0;
}
