// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

/// A JSON value whose keys keep their order.
using Json = nlohmann::ordered_json;

/// One value a line; a line that is no JSON comes as a discarded value.
inline std::vector<Json> json_lines(const std::string& text) {
  std::vector<Json> values;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) values.push_back(Json::parse(line, nullptr, false));
  return values;
}

inline std::vector<std::string> keys_of(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}
