// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/json_writer.h"

#include <charconv>
#include <cmath>
#include <cstddef>

#include "tools/pdfbmp/utf8.h"

std::string JsonObject::text_of(std::string_view value) {
  std::string text = "\"";
  while (!value.empty()) {
    const std::size_t length = utf8_length(value);
    const char c = value.front();
    if (length == 0) {
      text += replacement_character;
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
