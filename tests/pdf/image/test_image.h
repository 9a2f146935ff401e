// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "pdf/image/image.h"
#include "tests/support/spaces.h"
#include "tests/support/streams.h"

using Bytes = std::vector<unsigned char>;

/// A record as if it had been loaded, with a space and a stream that log.
struct TestImage {
  /// No space for 0 components.
  TestImage(int width, int height, int bpc, int family, int components) {
    image = std::make_unique<CPDFImage>();
    image->width = width;
    image->height = height;
    image->bpc = bpc;
    if (components != 0) image->cs = new TestSpace(space, family, components);
  }
  void give(ReadScript script) { image->stream = new ScriptedStream(reads, std::move(script)); }

  StreamLog reads;
  SpaceLog space;
  std::unique_ptr<CPDFImage> image;
};

/// A stream that delivers these bytes.
inline CPDFStream* stream_of(Bytes& bytes) { return new CPDFStream(bytes.data(), static_cast<int>(bytes.size()), 1); }

/// All of a bitmap's memory; nothing for null.
inline Bytes memory_of(const CKXBmp* bmp) {
  if (bmp == nullptr || bmp->pixels == nullptr) return {};
  return {bmp->pixels, bmp->pixels + std::ptrdiff_t{bmp->height} * bmp->stride};
}

/// The ways in which a stream under test answers.
inline const std::array<ReadScript, 6> read_scripts = {{
    {},
    {[](int call, int n) { return call < 3 ? n : 0; }, 2},
    {[](int call, int n) { return call % 3 == 2 ? -1 : n; }, 3},
    {[](int call, int n) { return call % 2 == 1 ? n / 2 : n; }, 4},
    {[](int, int) { return 1; }, 5},
    {[](int call, int n) { return call % 2 == 0 ? n + 7 : n; }, 6},
}};
