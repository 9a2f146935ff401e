// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/html.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "tools/pdfbmp/utf8.h"

namespace {

// What stands for a character that HTML gives a meaning, or must not hold; null for any other.
const char* reference_for(unsigned char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return c < ' ' || c == 0x7F ? "&#xFFFD;" : nullptr;
  }
}

}  // namespace

std::string html_text(std::string_view text) {
  std::string html;
  while (!text.empty()) {
    const std::size_t length = utf8_length(text);
    const char* const reference = reference_for(static_cast<unsigned char>(text.front()));
    if (length == 0) {
      html += replacement_character;
    } else if (reference != nullptr) {
      html += reference;
    } else {
      html += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return html;
}

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t k) {
      return k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : std::uint32_t{0};
    };
    const std::uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    const std::size_t known = std::min<std::size_t>(bytes.size() - i, 3) + 1;
    for (std::size_t k = 0; k < 4; ++k) {
      text += k < known ? digits[group >> (18 - 6 * k) & 63] : '=';
    }
  }
  return text;
}

std::string fill_html(std::string_view html, HtmlValues values) {
  std::string filled;
  for (;;) {
    const std::size_t open = html.find("{{");
    const std::size_t close = html.find("}}", open);
    if (open == html.npos || close == html.npos) break;
    filled += html.substr(0, open);
    const std::string_view name = html.substr(open + 2, close - open - 2);
    for (const auto& [known, value] : values) {
      if (known == name) filled += value;
    }
    html.remove_prefix(close + 2);
  }
  filled += html;
  return filled;
}
