// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/json_writer.h"

#include <charconv>
#include <cmath>
#include <cstddef>

namespace {

// The length of the well-formed UTF-8 character at the start of `text` (Unicode, table 3-7), or 0.
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

}  // namespace

std::string JsonObject::text_of(std::string_view value) {
  std::string text = "\"";
  while (!value.empty()) {
    const std::size_t length = utf8_length(value);
    const char c = value.front();
    if (length == 0) {
      text += "\xEF\xBF\xBD";
    } else if (c == '"' || c == '\\') {
      text += '\\';
      text += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      constexpr char digits[] = "0123456789abcdef";
      text += "\\u00";
      text += digits[c >> 4];
      text += digits[c & 15];
    } else {
      text += value.substr(0, length);
    }
    value.remove_prefix(length == 0 ? 1 : length);
  }
  return text + "\"";
}

std::string JsonObject::text_of(double value) {
  if (!std::isfinite(value)) return "null";
  // Nine digits hide the rounding of sums and products without losing a thousandth of a point.
  char digits[32];
  const std::to_chars_result end =
      std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::general, 9);
  return std::string(digits, end.ptr);
}

JsonObject& JsonObject::add_raw(std::string_view key, std::string_view value) {
  if (!members_.empty()) members_ += ", ";
  members_ += text_of(key);
  members_ += ": ";
  members_ += value;
  return *this;
}

JsonObject& JsonObject::add(std::string_view key, std::string_view value) {
  return add_raw(key, text_of(value));
}

JsonObject& JsonObject::add(std::string_view key, double value) {
  return add_raw(key, text_of(value));
}
