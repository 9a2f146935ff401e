// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

/// `text` as it stands between tags and in quoted attributes of an HTML page in UTF-8. Bytes that
/// are no UTF-8, and control characters, become U+FFFD.
std::string html_text(std::string_view text);

/// RFC 4648, on one line.
std::string base64(std::string_view bytes);

/// A template with each {{name}} replaced by its value, which is HTML already. A name without a
/// value leaves nothing.
using HtmlValues = std::initializer_list<std::pair<std::string_view, std::string_view>>;
std::string fill_html(std::string_view html, HtmlValues values);
