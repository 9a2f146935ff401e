// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Reads content from BI on: the dictionary of an inline image, where its data ends, and its bitmap.
//
// Input: the content.
#include <exception>

#include "fuzz/small_limits.h"
#include "fuzz/target.h"
#include "pdf/doc/content_reader.h"
#include "pdf/doc/inline_data.h"
#include "pdf/image/image.h"

namespace {

std::string run(std::string content) {
  std::string results;
  CPDFContentReader reader(content);
  for (int images = 0; images < 4; ++images) {
    CPDFObjHolder dict;
    if (dict.set_dict() == nullptr || !reader.read_inline_dictionary(*dict.dict())) break;
    const std::size_t at = reader.position();
    const pdfbmp::InlineData data = pdfbmp::find_inline_data(content, at, *dict.dict(), nullptr, nullptr, small_limits());
    require(data.begin >= at && data.begin <= content.size() && data.length <= content.size() - data.begin);
    require(data.next >= data.begin + data.length && data.next <= content.size());
    results += std::to_string(data.begin) + ' ' + std::to_string(data.length) + ' ' + std::to_string(data.next) + '\n';

    CPDFImage image;
    auto* bytes = reinterpret_cast<unsigned char*>(content.data()) + data.begin;
    image.load_inline(dict.dict(), bytes, static_cast<int>(data.length), nullptr);
    if (image.width > 0 && image.width <= 256 && image.height <= 256) {
      add(results, (image.flags & CPDFImage::image_mask) != 0 ? static_cast<CKXBmp*>(image.get_mask()) : image.get_bmp());
    }
    reader.seek(data.next);
    while (reader.next() && reader.operation() != "BI") results += reader.operation();
  }
  return results;
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  try {
    return run(std::string(in.text()));
  } catch (const std::exception& error) {  // The parser's, which the walk takes.
    return error.what();
  }
}
