// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

using TarMembers = std::vector<std::pair<std::string, std::string>>;

/// The members of a tar stream, name and content; pax records are applied. A stream that is no
/// tar gives one member named "?" with the reason.
inline TarMembers read_tar(const std::string& tar) {
  TarMembers members;
  std::string long_name;
  std::size_t at = 0, size = 0;
  for (;; at += 512 + (size + 511) / 512 * 512) {
    if (tar.size() % 512 != 0 || at + 1024 > tar.size()) return {{"?", "no end"}};
    const std::string header = tar.substr(at, 512);
    if (header == std::string(512, '\0')) break;
    long sum = 8 * ' ';  // Of the bytes, with spaces where the sum itself stands.
    for (std::size_t i = 0; i < 512; ++i) sum += i >= 148 && i < 156 ? 0 : static_cast<unsigned char>(header[i]);
    if (std::strtol(header.substr(148, 8).c_str(), nullptr, 8) != sum) return {{"?", "checksum"}};
    if (std::memcmp(header.data() + 257, "ustar\00000", 8) != 0) return {{"?", "magic"}};
    size = std::strtoul(header.substr(124, 12).c_str(), nullptr, 8);
    const std::string content = tar.substr(at + 512, size);
    if (header[156] != 'x') {
      members.emplace_back(long_name.empty() ? header.substr(0, 100).c_str() : long_name, content);
      long_name.clear();
    } else {
      if (std::strtoul(content.c_str(), nullptr, 10) != size) return {{"?", "record"}};
      const std::size_t name_at = content.find(" path=") + 6;
      long_name = content.substr(name_at, size - name_at - 1);
    }
  }
  return tar.find_first_not_of('\0', at) == std::string::npos ? members : TarMembers{{"?", "members after the end"}};
}
