// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Loads an image XObject from its dictionary and asks for one of its bitmaps.
//
// Input: which bitmap (a byte), then objects in text (fuzz/text_objects.h), the first of them a
// reference to the image.
#include "fuzz/target.h"
#include "fuzz/text_objects.h"
#include "pdf/image/image.h"

std::string run_target(FuzzInput in, bool) {
  const int request = in.byte() % 6;
  TextObjects objects(in.text());
  CPDFObjHolder entry;
  objects.get_entity(entry, {0, 0});
  CPDFImage image;
  image.xref = &objects;
  if (entry.type == PDF_REFERENCE) objects.get_entity(image.obj, entry.ref());
  image.load();
  constexpr int most = 1 << 14;
  std::string result;
  for (const CPDFImage* part : {static_cast<const CPDFImage*>(&image), static_cast<const CPDFImage*>(image.smask)}) {
    if (part != nullptr && part->width > 0 && part->height > 0 && part->height > most / part->width) return result;
  }
  _KXRGBA palette[256] = {};
  switch (request) {
    case 0: add(result, image.get_bmp()); break;
    case 1: add(result, image.get_bmp_gray()); break;
    case 2: add(result, image.get_mask()); break;
    case 3: add(result, image.get_bmp_mono(palette)); break;
    case 4: add(result, image.smask != nullptr ? image.smask->get_smask() : nullptr); break;
    default: add(result, image.mask != nullptr ? image.mask->get_mask() : nullptr); break;
  }
  palette[0].a = image.get_matte().g;
  result.append(reinterpret_cast<const char*>(palette), sizeof palette);
  image.unload();
  require(image.bmp == nullptr && image.bmp_gray == nullptr && image.smask == nullptr);
  return result;
}
