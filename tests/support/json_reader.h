// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

/// A JSON value; what is malformed sets `valid` of the JsonReader to false.
struct JsonValue {
  char type = '?';    ///< n null, b boolean, d number, s string, a array, o object.
  double number = 0;  ///< Of a boolean 0 or 1.
  std::string string;
  std::vector<JsonValue> items;
  std::vector<std::string> keys;  ///< Of an object, in their order.
  std::map<std::string, JsonValue> members;

  const JsonValue& operator[](const std::string& key) const {
    static const JsonValue missing;
    const auto found = members.find(key);
    return found == members.end() ? missing : found->second;
  }
};

/// Reads one text strictly (RFC 8259), but for \u escapes above 00ff.
class JsonReader {
 public:
  explicit JsonReader(const std::string& text) : text_(text) {
    value = read();
    skip_space();
    valid = valid && at_ == text_.size();
  }

  JsonValue value;
  bool valid = true;

 private:
  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void skip_space() {
    while (peek() == ' ' || peek() == '\n' || peek() == '\t' || peek() == '\r') ++at_;
  }
  bool take(char c) {
    skip_space();
    if (peek() != c) return false;
    ++at_;
    return true;
  }
  void want(bool condition) { valid = valid && condition; }

  JsonValue read() {
    skip_space();
    if (peek() == '{') return read_object();
    if (peek() == '[') return read_array();
    if (peek() == '"') return read_string();
    for (const auto& [word, type] : {std::pair("null", 'n'), {"true", 'b'}, {"false", 'b'}}) {
      const std::string literal = word;
      if (text_.compare(at_, literal.size(), literal) != 0) continue;
      at_ += literal.size();
      JsonValue result;
      result.type = type;
      result.number = literal == "true";
      return result;
    }
    return read_number();
  }

  JsonValue read_number() {
    JsonValue result;
    result.type = 'd';
    const std::size_t start = at_;
    while (peek() != '\0' && std::string("+-.eE0123456789").find(peek()) != std::string::npos) ++at_;
    const std::string digits = text_.substr(start, at_ - start);
    char* end = nullptr;
    result.number = std::strtod(digits.c_str(), &end);
    want(!digits.empty() && *end == '\0' && digits[0] != '+' && digits[0] != '.');
    return result;
  }

  JsonValue read_string() {
    JsonValue result;
    result.type = 's';
    want(take('"'));
    while (valid && peek() != '"') {
      char c = peek();
      want(at_ < text_.size() && static_cast<unsigned char>(c) >= 0x20);
      ++at_;
      if (c == '\\') {
        c = peek();
        ++at_;
        if (c == 'u') {
          c = static_cast<char>(std::strtol(text_.substr(at_, 4).c_str(), nullptr, 16));
          at_ += 4;
        } else {
          want(c == '"' || c == '\\' || c == '/');
        }
      }
      result.string += c;
    }
    want(take('"'));
    return result;
  }

  JsonValue read_array() {
    JsonValue result;
    result.type = 'a';
    want(take('['));
    if (take(']')) return result;
    do result.items.push_back(read());
    while (valid && take(','));
    want(take(']'));
    return result;
  }

  JsonValue read_object() {
    JsonValue result;
    result.type = 'o';
    want(take('{'));
    if (take('}')) return result;
    do {
      skip_space();
      const std::string key = read_string().string;
      want(take(':'));
      result.keys.push_back(key);
      want(result.members.emplace(key, read()).second);
    } while (valid && take(','));
    want(take('}'));
    return result;
  }

  std::string text_;
  std::size_t at_ = 0;
};

/// One value a line; a line that is no JSON comes as type '?'.
inline std::vector<JsonValue> json_lines(const std::string& text) {
  std::vector<JsonValue> values;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    const JsonReader reader(text.substr(at, end - at));
    values.push_back(reader.valid ? reader.value : JsonValue());
    if (end == std::string::npos) break;
    at = end + 1;
  }
  return values;
}
