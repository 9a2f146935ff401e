// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>

#include "kx/alloc.h"
#include "kx/bmp.h"

/// A sanitizer's allocator, where it is in, is to fail as others do.
extern "C" const char* __asan_default_options();
extern "C" const char* __tsan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" const char* __tsan_default_options() { return __asan_default_options(); }

namespace {

TEST(Alloc, SizesAtTheEdges) {
  for (void* block : {KXAlloc(0), KXCalloc(0, 5), KXCalloc(5, 0), KXRealloc(nullptr, 0)}) {
    EXPECT_NE(block, nullptr);
    KXFree(block);
  }
  KXFree(nullptr);
  EXPECT_EQ(KXCalloc(SIZE_MAX / 2, 3), nullptr);
  EXPECT_EQ(KXAlloc(PTRDIFF_MAX), nullptr);

  auto* bytes = static_cast<unsigned char*>(KXCalloc(3, 7));
  for (int i = 0; i < 21; ++i) EXPECT_EQ(bytes[i], 0);
  std::memset(bytes, 9, 21);
  EXPECT_EQ(KXRealloc(bytes, PTRDIFF_MAX), nullptr);
  bytes = static_cast<unsigned char*>(KXRealloc(bytes, 5000));
  ASSERT_NE(bytes, nullptr);
  for (int i = 0; i < 21; ++i) EXPECT_EQ(bytes[i], 9);
  KXFree(bytes);
}

std::unique_ptr<CKXBmp> make(int bpp, int width, int height) {
  if (bpp == 32) return std::make_unique<CKXBmp32>(width, height);
  if (bpp == 8) return std::make_unique<CKXBmp8>(width, height);
  auto gray = std::make_unique<CKXBmpGray>();
  gray->create(width, height);
  return gray;
}

TEST(Bmp, SizesAndStrides) {
  const int most = INT_MAX;
  struct {
    int bpp, width, height, stride;  ///< Stride 0: it cannot be made.
  } const cases[] = {{32, 3, 2, 12},      {8, 3, 2, 3},        {16, 1, 1, 4},      {16, 2, 3, 4},  {16, 3, 2, 8},
                     {16, 9, 1, 20},      {32, 0, 5, 0},       {8, 5, 0, 0},       {16, -1, 5, 0}, {32, 5, INT_MIN, 0},
                     {32, 1 << 29, 1, 0}, {16, 1 << 30, 1, 0}, {32, most, most, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.bpp << ": " << c.width << " x " << c.height);
    const auto bmp = make(c.bpp, c.width, c.height);
    ASSERT_EQ(bmp->pixels != nullptr, c.stride != 0);
    if (c.stride == 0) continue;
    EXPECT_TRUE(bmp->width == c.width && bmp->height == c.height && bmp->stride == c.stride && bmp->bpp == c.bpp);
    for (int i = 0; i < c.height * c.stride; ++i) EXPECT_EQ(bmp->pixels[i], 0);
  }
}

}  // namespace
