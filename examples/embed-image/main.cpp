// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// embed-image FILE.pdf: the images of a file as text (plain PPM), by the image library and a PDF
// parser that is not pdfbmp's.
#include "tiny_pdf.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "pdf/image/image.h"
#include "pdf/obj/access.h"

namespace {

void print(const CKXBmp32& bmp) {
  std::printf("P3\n%d %d\n255\n", bmp.width, bmp.height);
  for (int y = bmp.height - 1; y >= 0; --y) {  // the top row lies last in memory
    const unsigned char* p = bmp.pixels + std::ptrdiff_t{bmp.stride} * y;
    for (int x = 0; x < bmp.width; ++x, p += 4) std::printf("%d %d %d\n", p[2], p[1], p[0]);
  }
}

bool is_image(const CPDFObj& object, CPDFXRefTable& xref) {
  if (object.type != PDF_STREAM) return false;
  CPDFObjHolder subtype;
  resolve_copy(find_key(&object.stream()->dict, "Subtype"), &xref, subtype);
  return subtype.type == PDF_NAME && std::strcmp(subtype.name(), "Image") == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream file(argv[1], std::ios::binary);
  TinyPdf pdf({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
  bool any = false;
  for (const int number : pdf.objects()) {
    CPDFImage image;
    pdf.get_entity(image.obj, {number, 0});
    if (!is_image(image.obj, pdf)) continue;
    image.xref = &pdf;
    image.load();
    const CKXBmp32* bmp = image.get_bmp();
    if (bmp == nullptr) continue;
    print(*bmp);
    any = true;
  }
  return any ? 0 : 1;
}
