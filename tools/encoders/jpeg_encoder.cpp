// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/encoders/jpeg_encoder.h"

#include <cstdlib>

namespace encoders {
int components_of(const Jpeg& jpeg) {
  return jpeg.stored == JCS_GRAYSCALE                         ? 1
         : jpeg.stored == JCS_CMYK || jpeg.stored == JCS_YCCK ? 4
                                                              : 3;
}

std::string encode_jpeg(const Jpeg& jpeg, const std::function<int(int, int, int)>& sample) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors = {};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &bytes, &size);
  info.image_width = static_cast<JDIMENSION>(jpeg.width);
  info.image_height = static_cast<JDIMENSION>(jpeg.height);
  info.input_components = components_of(jpeg);
  info.in_color_space = jpeg.stored;
  jpeg_set_defaults(&info);
  jpeg_set_colorspace(&info, jpeg.stored);
  jpeg_set_quality(&info, jpeg.quality, TRUE);
  info.write_JFIF_header = info.write_Adobe_marker = FALSE;
  for (int c = 0; c < info.num_components; ++c) {
    const bool full = jpeg.subsampled && (c == 0 || c == 3);
    info.comp_info[c].h_samp_factor = info.comp_info[c].v_samp_factor = full ? 2 : 1;
  }
  info.restart_in_rows = static_cast<int>(jpeg.restart_rows);
  if (jpeg.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  if (jpeg.adobe >= 0) {
    const JOCTET marker[12] = {'A', 'd', 'o', 'b', 'e', 0,
                               100, 0,   0,   0,   0,   static_cast<JOCTET>(jpeg.adobe)};
    jpeg_write_marker(&info, JPEG_APP0 + 14, marker, sizeof marker);
  }
  std::string row;
  for (int y = 0; y < jpeg.height; ++y) {
    row.clear();
    for (int x = 0; x < jpeg.width; ++x) {
      for (int c = 0; c < info.input_components; ++c) {
        row += static_cast<char>(sample(x, y, c));
      }
    }
    JSAMPROW start = reinterpret_cast<JSAMPROW>(row.data());
    jpeg_write_scanlines(&info, &start, 1);
  }
  jpeg_finish_compress(&info);
  std::string encoded(reinterpret_cast<char*>(bytes), size);
  jpeg_destroy_compress(&info);
  std::free(bytes);
  return encoded;
}

}  // namespace encoders
