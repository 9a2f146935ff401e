// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <new>

#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/image/loading.h"
#include "pdf/obj/jpx_stream.h"

namespace {

/// Components of the colour space that a codestream of `n` colour components is shown in.
int components_for(int n) { return n == 1 || n == 4 ? n : 3; }

CPDFCSBase* new_device_space(int components) {
  switch (components) {
    case 1:
      return new (std::nothrow) CPDFCSDeviceGray;
    case 4:
      if (CPDFCSDeviceCMYKExt::ms_icc != nullptr) return new (std::nothrow) CPDFCSDeviceCMYKExt;
      return new (std::nothrow) CPDFCSDeviceCMYK;
    default:
      return new (std::nothrow) CPDFCSDeviceRGB;
  }
}

}  // namespace

void image_loading::apply_jpx_rule(CPDFImage& image, const CPDFStreamJPX& stream) {
  image.jpx_alpha = stream.alpha_channel >= 0 ? 1 : 0;

  const int components = components_for(stream.comp_count);
  if (image.cs != nullptr && image.cs->comp_count == components) {
    if (components != 1 || image.bpc > 7) return;
    image.bpc = 8;  // The stream delivers bytes; a space for fewer bits would misread them.
  }
  own_color_space(image, new_device_space(components));
}
