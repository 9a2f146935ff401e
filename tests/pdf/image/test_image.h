// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "gtest/gtest.h"

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
    image->width = width;
    image->height = height;
    image->bpc = bpc;
    if (components != 0) image->cs = new TestSpace(space, family, components);
  }
  void give(ReadScript script) { image->stream = new ScriptedStream(reads, std::move(script)); }
  void set_decode(int min, int max) {
    image->has_decode = 1;
    image->decode_min[0] = min;
    image->decode_max[0] = max;
  }

  StreamLog reads;
  SpaceLog space;
  std::unique_ptr<CPDFImage> image = std::make_unique<CPDFImage>();
};

enum Request { color, gray, mask, soft_mask, mono };

inline CKXBmp* request(CPDFImage& image, int which, _KXRGBA* palette = nullptr) {
  _KXRGBA unused[256];
  if (which == color) return image.get_bmp();
  if (which == gray) return image.get_bmp_gray();
  if (which == mask) return image.get_mask();
  if (which == soft_mask) return image.get_smask();
  return image.get_bmp_mono(palette != nullptr ? palette : unused);
}

/// All of a bitmap's memory; nothing for null.
inline Bytes memory_of(const CKXBmp* bmp) {
  if (bmp == nullptr || bmp->pixels == nullptr) return {};
  return {bmp->pixels, bmp->pixels + std::ptrdiff_t{bmp->height} * bmp->stride};
}

/// `decode(image)` must make the bitmap that `reference(image, stream)` makes, with the same reads.
template <class Decode, class Reference>
void compare(TestImage& t, const ReadScript& script, Decode decode, Reference reference) {
  StreamLog log;
  ScriptedStream stream(log, script);
  const Bytes expected = reference(*t.image, stream);
  t.space.colors = 0;
  t.give(script);
  ASSERT_TRUE(memory_of(decode(*t.image)) == expected);
  ASSERT_TRUE(t.reads.reads == log.reads);
}
