// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "pdf/doc/native_wraps.h"
#include "pdf/filter/jbig2.h"
#include "pdf/filter/jbig2_segments.h"

namespace {

// The head of a file in sequential order with one page (T.88, annex D.4).
constexpr char file_head[] = "\x97JB2\r\n\x1A\n\x01\0\0\0\1";

std::string big_endian(std::uint32_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text += static_cast<char>(value >> 8 * bytes & 0xFF);
  return text;
}

// A segment without data.
std::string end_segment(int type, std::uint32_t number, std::uint32_t page) {
  const bool wide = page > 0xFF;
  return big_endian(number, 4) +
         big_endian(static_cast<std::uint32_t>(type | (wide ? 0x40 : 0)), 1) + big_endian(0, 1) +
         big_endian(page, wide ? 4 : 1) + big_endian(0, 4);
}

// What is known of the segments one after the other.
struct Segments {
  bool whole = true;
  bool has_page = false, has_end_of_page = false, has_end_of_file = false;
  std::uint32_t last_number = 0, page = 1;

  void read(const unsigned char* bytes, std::int64_t length) {
    for (auto left = static_cast<std::size_t>(length); left > 0 && whole;) {
      const Jbig2Segment segment = read_segment(bytes, left);
      whole = segment.whole;
      last_number = std::max(last_number, segment.number);
      if (segment.is_page()) page = segment.page;
      has_page = has_page || segment.is_page();
      has_end_of_page = has_end_of_page || segment.is_end_of_page();
      has_end_of_file = has_end_of_file || segment.is_end_of_file();
      bytes += segment.bytes;
      left -= segment.bytes;
    }
  }
};

}  // namespace

bool pdfbmp::wrap_jbig2(const CPDFFilterSetup& setup, const CPDFFoundImage&, CPDFNativeFile& file) {
  file.suffix = "jb2";
  file.head.assign(file_head, sizeof(file_head) - 1);
  Segments segments;
  if (auto stream = open_jbig2_globals(setup)) {
    CPDFLoadedBytes globals(std::move(stream), setup.limits.max_codec_bytes);
    globals.load_all();
    segments.read(globals.data(), globals.size());
    file.head.append(globals.data(), globals.data() + globals.size());
  }
  segments.read(file.data->data(), file.data->size());
  if (!segments.whole || !segments.has_page) return false;
  if (!segments.has_end_of_page) {
    file.tail += end_segment(49, ++segments.last_number, segments.page);
  }
  if (!segments.has_end_of_file) file.tail += end_segment(51, ++segments.last_number, 0);
  return true;
}
