// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

/// Builds one JSON object (RFC 8259) as a line of text.
class JsonObject {
 public:
  JsonObject& add(std::string_view key, std::string_view value);
  JsonObject& add(std::string_view key, const char* value) {
    return add(key, std::string_view(value));
  }
  JsonObject& add(std::string_view key, double value);  ///< Null where it is not finite.
  JsonObject& add_null(std::string_view key) { return add_raw(key, "null"); }
  /// Null where the text is empty.
  JsonObject& add_or_null(std::string_view key, std::string_view value) {
    return value.empty() ? add_null(key) : add(key, value);
  }

  template <class Value, std::enable_if_t<std::is_integral_v<Value>, int> = 0>
  JsonObject& add(std::string_view key, Value value) {
    if constexpr (std::is_same_v<Value, bool>) {
      return add_raw(key, value ? "true" : "false");
    } else {
      return add_raw(key, std::to_string(value));
    }
  }

  /// `value` is JSON already.
  JsonObject& add_raw(std::string_view key, std::string_view value);

  /// Any range of values that add() takes, or of JsonObject.
  template <class Range>
  JsonObject& add_array(std::string_view key, const Range& values) {
    std::string text = "[";
    for (const auto& value : values) {
      if (text.size() > 1) text += ", ";
      text += text_of(value);
    }
    return add_raw(key, text + "]");
  }

  /// The object, without a line feed.
  std::string text() const { return "{" + members_ + "}"; }

  /// A string in quotes. Bytes that are no UTF-8 become U+FFFD.
  static std::string text_of(std::string_view value);
  static std::string text_of(double value);
  static std::string text_of(int value) { return std::to_string(value); }
  static std::string text_of(const JsonObject& value) { return value.text(); }

 private:
  std::string members_;
};
