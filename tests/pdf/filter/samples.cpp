// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/pdf/filter/samples.h"

#include <cstdlib>

#include "pdf/filter/filter_table.h"
#include "pdf/obj/jpx_stream.h"
#include "tests/support/pdf_text.h"

namespace filter_test {

std::string dict_of(std::initializer_list<std::pair<const char*, int>> entries) {
  std::string text = "<<";
  for (const auto& [key, value] : entries) text += "/" + std::string(key) + " " + std::to_string(value);
  return text + ">>";
}

std::unique_ptr<CPDFStream> stream_over(const std::string& bytes) {
  // A borrowing stream never writes to its bytes.
  auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
  return std::make_unique<CPDFStream>(data, static_cast<int>(bytes.size()), 1);
}

std::string read_all(CPDFStream& stream, int piece) {
  std::string all, buffer(static_cast<std::size_t>(piece), '\0');
  for (int n; (n = stream.read_block(buffer.data(), piece)) != 0;) {
    if (n < 0 || n > piece) std::abort();  // The contract of read_block is broken.
    all.append(buffer, 0, static_cast<std::size_t>(n));
  }
  return all;
}

Decoded decode(const char* filter, const std::string& encoded, const Setting& setting) {
  CPDFObjHolder parms, image;
  testing_support::parse_pdf(setting.parms, parms);
  testing_support::parse_pdf(setting.image, image);
  CPDFFilterSetup setup;
  setup.parms = parms.dict(), setup.image = image.dict();
  setup.xref = setting.xref, setup.limits = setting.limits;
  setup.report = std::make_shared<CPDFDecodeReport>();
  Decoded decoded;
  const auto stream = pdfbmp::find_filter(filter)->make(stream_over(encoded), setup);
  decoded.made = stream != nullptr;
  if (decoded.made) decoded.bytes = read_all(*stream, setting.piece);
  if (auto* const jpx = dynamic_cast<CPDFStreamJPX*>(stream.get())) {
    decoded.components = jpx->comp_count;
    decoded.alpha_channel = jpx->alpha_channel;
    char buffer[64];
    for (int n; (n = jpx->read_alpha(buffer, sizeof buffer)) > 0;) decoded.alpha.append(buffer, static_cast<std::size_t>(n));
  }
  decoded.report = *setup.report;
  return decoded;
}

std::string sample_bytes(std::size_t n, std::uint32_t seed) {
  std::string bytes(n, '\0');
  std::uint32_t state = seed * 2654435761U + 1;
  for (std::size_t i = 0; i < n; ++i) {
    state = state * 1664525U + 1013904223U;
    const std::uint32_t block = static_cast<std::uint32_t>(i / 97) + seed;
    const std::uint32_t value = block % 3 == 0 ? block : block % 3 == 1 ? static_cast<std::uint32_t>(i) * 3 : state >> 24;
    bytes[i] = static_cast<char>(value & 255);
  }
  return bytes;
}

}  // namespace filter_test
