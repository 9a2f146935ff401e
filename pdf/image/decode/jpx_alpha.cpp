// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/layout.h"
#include "pdf/obj/jpx_stream.h"

using namespace image_decoding;

namespace {

/// The row walk once more, over the rows of the alpha channel; one that cannot be read leaves its
/// pixels alone.
template <int Step>
int merge_alpha(CPDFImage& image) {
  if (image.jpx_alpha == 0 || image.stream == nullptr || image.stream->kind != 9 ||
      image.bmp == nullptr) {
    return 0;
  }
  const RowBuffer alpha(image.width);
  if (alpha.data() == nullptr) return 0;
  auto& stream = static_cast<CPDFStreamJPX&>(*image.stream);
  const int pixels = std::min(kept_of<Step>(image.width), image.bmp->width);
  walk_kept_rows<Step, AfterLast::stop>(
      *image.bmp, image.height,
      [&](unsigned char*) { return stream.read_alpha(alpha.data(), alpha.size()); },
      [&](unsigned char* out) {
        auto* pixel = reinterpret_cast<_KXRGBA*>(out);
        for (int i = 0; i < pixels; ++i) {
          const int opacity = alpha.data()[std::ptrdiff_t{i} * Step];
          pixel[i].a = static_cast<unsigned char>(pixel[i].a * opacity / 255);
        }
      },
      [](unsigned char*) {});
  return 1;
}

}  // namespace

int CPDFImage::load_jpx_alpha() { return merge_alpha<1>(*this); }
int CPDFImage::load_jpx_alpha_half() { return merge_alpha<2>(*this); }
int CPDFImage::load_jpx_alpha_4in1() { return merge_alpha<4>(*this); }
