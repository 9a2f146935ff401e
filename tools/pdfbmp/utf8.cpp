// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/utf8.h"

std::size_t utf8_length(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const auto tail = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
  const unsigned a = byte(0), b = byte(1);
  if (a < 0x80) return 1;
  if (a >= 0xC2 && a <= 0xDF) return tail(1) ? 2 : 0;
  if ((a & 0xF0) == 0xE0) {
    const bool overlong = a == 0xE0 && b < 0xA0, surrogate = a == 0xED && b > 0x9F;
    return tail(1) && tail(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (a >= 0xF0 && a <= 0xF4) {
    const bool overlong = a == 0xF0 && b < 0x90, beyond = a == 0xF4 && b > 0x8F;
    return tail(1) && tail(2) && tail(3) && !overlong && !beyond ? 4 : 0;
  }
  return 0;
}
