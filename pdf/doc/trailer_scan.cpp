// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/trailer_scan.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t npos = std::string_view::npos;

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_space(char c) {
  return c == ' ' || c == '\r' || c == '\n' || c == '\t' || c == '\f' || c == 0;
}

/// The head of an indirect object, "12 0 obj".
struct Head {
  std::string number, generation;
  std::int64_t offset = -1;  ///< Of its first digit; negative where there is none.
};

/// Reads digits that end at `end`, moving it to their start.
std::string digits_before(std::string_view text, std::size_t& end) {
  const std::size_t last = end;
  while (end > 0 && is_digit(text[end - 1]) && last - end < 10) --end;
  return std::string(text.substr(end, last - end));
}

bool skip_spaces_back(std::string_view text, std::size_t& end) {
  const std::size_t last = end;
  while (end > 0 && is_space(text[end - 1])) --end;
  return end != last;
}

/// The last head before `at` with no "endobj" between the two.
Head head_before(std::string_view text, std::size_t at) {
  const std::size_t obj = text.rfind("obj", at);
  Head head;
  if (obj == npos || (obj >= 3 && text.substr(obj - 3, 3) == "end")) return head;
  std::size_t end = obj;
  skip_spaces_back(text, end);
  head.generation = digits_before(text, end);
  if (head.generation.empty() || !skip_spaces_back(text, end)) return head;
  head.number = digits_before(text, end);
  if (!head.number.empty()) head.offset = static_cast<std::int64_t>(end);
  return head;
}

/// The head of the last object whose dictionary has `/Type` and the name `type`, its offset counted
/// in the whole source.
Head last_object_of_type(const CPDFSource& source, std::string_view type) {
  constexpr std::int64_t piece = 1024 * 1024;
  constexpr std::int64_t overlap = 16 * 1024;  // How far a head may stand from its /Type.
  Head found;
  std::string buffer(static_cast<std::size_t>(std::min(piece, source.size())), '\0');
  for (std::int64_t start = 0; start < source.size(); start += piece - overlap) {
    const auto room = static_cast<std::int64_t>(buffer.size());
    const std::int64_t got = source.read_at(start, buffer.data(), room);
    if (got <= 0) break;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(got));
    for (std::size_t at = text.find(type); at != npos; at = text.find(type, at + 1)) {
      std::size_t end = at;
      skip_spaces_back(text, end);
      if (end < 5 || text.substr(end - 5, 5) != "/Type") continue;
      Head head = head_before(text, at);
      if (head.offset < 0) continue;
      head.offset += start;
      if (head.offset >= found.offset) found = head;
    }
  }
  return found;
}

}  // namespace

namespace pdfbmp {

std::int64_t find_header(const CPDFSource& source) {
  char buffer[1024 + 16] = {};
  const std::int64_t got = source.read_at(0, buffer, sizeof buffer);
  const std::string_view text(buffer, static_cast<std::size_t>(std::max<std::int64_t>(0, got)));
  for (std::size_t at = text.find("%PDF-"); at < 1024; at = text.find("%PDF-", at + 1)) {
    const std::string_view version = text.substr(at + 5, 3);
    if (version.size() == 3 && is_digit(version[0]) && version[1] == '.' && is_digit(version[2])) {
      return static_cast<std::int64_t>(at);
    }
  }
  return 0;
}

std::string suffix_from_xref_stream(const CPDFSource& source, std::int64_t base) {
  const Head head = last_object_of_type(source, "/XRef");
  if (head.offset < base) return {};
  return "\nstartxref\n" + std::to_string(head.offset - base) + "\n%%EOF\n";
}

std::string suffix_from_catalog(const CPDFSource& source, std::int64_t base) {
  const Head head = last_object_of_type(source, "/Catalog");
  if (head.offset < base) return {};
  return "\ntrailer\n<< /Root " + head.number + " " + head.generation +
         " R >>\nstartxref\n0\n%%EOF\n";
}

}  // namespace pdfbmp
