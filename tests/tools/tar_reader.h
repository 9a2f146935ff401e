// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

/// The members of a tar stream, name and content; pax records are applied. A stream that is no
/// tar gives one member named "?" with the reason.
inline std::vector<std::pair<std::string, std::string>> read_tar(const std::string& tar) {
  std::vector<std::pair<std::string, std::string>> members;
  std::string long_name;
  for (std::size_t at = 0;;) {
    if (tar.size() % 512 != 0 || at + 1024 > tar.size()) return {{"?", "no end"}};
    const std::string header = tar.substr(at, 512);
    if (header == std::string(512, '\0')) {
      const bool ends = tar.substr(at) == std::string(tar.size() - at, '\0');
      return ends ? members : decltype(members){{"?", "members after the end"}};
    }
    long sum = 0;
    for (std::size_t i = 0; i < 512; ++i) { sum += i >= 148 && i < 156 ? ' ' : static_cast<unsigned char>(header[i]); }
    if (std::strtol(header.substr(148, 8).c_str(), nullptr, 8) != sum) return {{"?", "checksum"}};
    if (header.compare(257, 8,
                       std::string("ustar\0"
                                   "00",
                                   8)) != 0)
      return {{"?", "magic"}};
    const auto size = std::strtoul(header.substr(124, 12).c_str(), nullptr, 8);
    const std::string content = tar.substr(at + 512, size);
    if (header[156] == 'x') {
      const std::size_t name_at = content.find(" path=");
      if (std::strtoul(content.c_str(), nullptr, 10) != content.size()) return {{"?", "record"}};
      long_name = content.substr(name_at + 6, content.size() - name_at - 7);
    } else {
      const std::string name = header.substr(0, 100);
      members.emplace_back(long_name.empty() ? name.substr(0, name.find('\0')) : long_name, content);
      long_name.clear();
    }
    at += 512 + (size + 511) / 512 * 512;
  }
}
