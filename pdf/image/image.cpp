// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/image.h"

#include <utility>

namespace {

/// Deletes what the pointer owns and nulls it.
template <class T>
void release(T*& owned) {
  delete std::exchange(owned, nullptr);
}

}  // namespace

CPDFXObject::~CPDFXObject() { obj.free(); }

CPDFImage::CPDFImage() { xobj_type = 1; }

CPDFImage::~CPDFImage() {
  release(bmp);
  release(bmp_gray);
  release(bmp_mono);
  release(bmp_mask);
  release(stream);
  release(smask);
  release(mask);
  if (cs_borrowed == 0) release(cs);
}

void CPDFImage::unload() {
  release(bmp);
  release(bmp_gray);
  release(bmp_mono);
  release(bmp_mask);
  release(mask);
  release(smask);
  if (cs_borrowed == 0) release(cs);
  width = 0;
  height = 0;
  jpx_alpha = 0;
}

_KXRGBA CPDFImage::get_matte() const {
  _KXRGBA pixel = {0, 0, 0, 0};
  if (cs == nullptr) return pixel;
  // A soft mask's matte replaces a mask's. Both are colours of this image's own space.
  for (const CPDFImage* sub : {mask, smask}) {
    if (sub == nullptr || (sub->flags & has_matte) == 0) continue;
    cs->get_rgb(sub->matte, pixel);
    pixel.a = 255;
  }
  return pixel;
}
