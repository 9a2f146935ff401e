// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/inline_data.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "pdf/doc/describe.h"
#include "pdf/filter/filter_chain.h"

namespace {

constexpr std::size_t npos = std::string_view::npos;

/// Encoded bytes that a filter is given at a time, so that it reads no further than it must: single
/// ones, and more for data so long that it would take too much time.
constexpr std::size_t small_data = 256 * 1024;
constexpr std::size_t trickle = 16;

/// How far before and behind a filter's end EI is looked for. Decoders look a few bytes ahead.
constexpr std::size_t slack_before = trickle + 16;
constexpr std::size_t slack_behind = 256;

constexpr std::int64_t max_decoded = 64 * 1024 * 1024;

/// Of decoded bytes, and of places at which EI was looked for, so many are a step of work.
constexpr std::int64_t bytes_per_step = 256;

bool is_over(CPDFWorkClock* clock, std::int64_t bytes) {
  return clock != nullptr && clock->is_over(1 + bytes / bytes_per_step);
}

bool is_space(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

bool is_delimiter(char c) { return std::strchr("()<>[]{}/%", c) != nullptr; }

/// Whether EI stands at `at` as a word that ends there.
bool is_ei(std::string_view content, std::size_t at) {
  if (at + 2 > content.size() || content.substr(at, 2) != "EI") return false;
  return at + 2 == content.size() || is_space(content[at + 2]) || is_delimiter(content[at + 2]);
}

/// The EI behind data that ends at `end`, white space between them (and the second half of the mark
/// that ends base-85 data, which its filter need not read); npos where there is none.
std::size_t ei_behind(std::string_view content, std::size_t end) {
  for (std::size_t at = end; at <= content.size() && at <= end + 4; ++at) {
    if (is_ei(content, at)) return at;
    const bool passes = at < content.size() && (is_space(content[at]) || content[at] == '>');
    if (!passes) return npos;
  }
  return npos;
}

/// Whether what follows looks like content, not like picture data: text on the next few bytes.
bool looks_like_content(std::string_view content, std::size_t at) {
  for (const char c : content.substr(std::min(at, content.size()), 16)) {
    if (!is_space(c) && (c < ' ' || c > '~')) return false;
  }
  return true;
}

/// The first EI from `from` on, at most at `last`, that stands alone. `strict` asks for content
/// behind it.
std::size_t scan_for_ei(std::string_view content, std::size_t begin, std::size_t from,
                        std::size_t last, bool strict, CPDFWorkClock* clock) {
  for (std::size_t at = from; at < content.size(); ++at) {
    const std::size_t searched_from =
        std::exchange(at, std::min(content.find("EI", at), content.size()));
    if (is_over(clock, static_cast<std::int64_t>(at - searched_from)) || at > last) break;
    // Hexadecimal and base-85 data end with '>', and EI often follows directly.
    const bool alone = at == begin || is_space(content[at - 1]) || content[at - 1] == '>';
    if (alone && is_ei(content, at) && (!strict || looks_like_content(content, at + 2))) return at;
  }
  return npos;
}

/// Data from `begin` to the EI at `ei`, less the end of line between the two.
pdfbmp::InlineData data_before(std::string_view content, std::size_t begin, std::size_t ei) {
  std::size_t end = ei;
  if (end > begin && is_space(content[end - 1])) --end;
  if (end > begin && end < ei && content[end] == '\n' && content[end - 1] == '\r') --end;
  return {begin, end - begin, ei + 2};
}

/// Hands out bytes a few at a time and knows how far it has come.
class Trickle final : public CPDFStream {
 public:
  Trickle(std::string_view bytes, std::size_t& given) : bytes_(bytes), given_(given) {}

  int read_block(void* dst, int n) override {
    const std::size_t left = bytes_.size() - given_;
    const std::size_t some = given_ < small_data ? 1 : trickle;
    const std::size_t count = std::min({some, left, static_cast<std::size_t>(std::max(n, 0))});
    std::memcpy(dst, bytes_.data() + given_, count);
    given_ += count;
    return static_cast<int>(count);
  }

 private:
  std::string_view bytes_;
  std::size_t& given_;  ///< Outlives the stream, which the filters delete.
};

/// Bytes of the decoded picture, -1 where the dictionary does not tell.
std::int64_t picture_bytes(const CPDFDictionary& dict, const CPDFDictionary* named,
                           CPDFXRefTable* xref) {
  CPDFFoundImage image;
  image.kind = CPDFImageKind::inline_image;
  pdfbmp::describe_image(dict, xref, named, image);
  const bool known = image.width > 0 && image.height > 0 && image.components > 0 &&
                     image.components <= 32 && image.bpc > 0 && image.bpc <= 16;
  if (!known) return -1;
  const std::int64_t bits = std::int64_t{image.width} * image.components * image.bpc;
  const std::int64_t row = (bits + 7) / 8;
  return row > INT_MAX ? -1 : row * image.height;
}

/// How much of `bytes` the filters take, npos where they see no end of their own.
std::size_t filtered_length(std::string_view bytes, const CPDFDictionary& dict, CPDFXRefTable* xref,
                            const CPDFFilterLimits& limits, std::int64_t expected,
                            CPDFWorkClock* clock) {
  std::size_t given = 0;
  auto report = std::make_shared<CPDFDecodeReport>();
  std::unique_ptr<CPDFStream> input(new (std::nothrow) Trickle(bytes, given));
  const std::unique_ptr<CPDFStream> stream =
      pdfbmp::make_filter_chain(std::move(input), dict, xref, limits, report);
  if (stream == nullptr) return npos;
  std::vector<unsigned char> sink(64 * 1024);
  std::size_t at_whole_picture = npos;
  std::int64_t total = 0, counted = 0;
  while (total < max_decoded && !is_over(clock, total - counted)) {
    counted = total;
    std::int64_t want = static_cast<std::int64_t>(sink.size());
    if (total < expected) want = std::min(want, expected - total);
    const int got = stream->read_block(sink.data(), static_cast<int>(want));
    if (got <= 0) break;
    total += got;
    if (total == expected) at_whole_picture = given;
  }
  const bool saw_end = total < max_decoded && !report->damaged && given < bytes.size();
  return saw_end ? given : at_whole_picture;
}

/// A length that the dictionary gives itself.
std::int64_t stated_length(const CPDFDictionary& dict) {
  const CPDFObj* entry = pdfbmp::image_entry(dict, "L", "Length");
  return entry != nullptr && entry->type == PDF_INTEGER ? entry->as_int() : -1;
}

}  // namespace

namespace pdfbmp {

InlineData find_inline_data(std::string_view content, std::size_t at, const CPDFDictionary& dict,
                            const CPDFDictionary* named, CPDFXRefTable* xref,
                            const CPDFFilterLimits& limits, CPDFWorkClock* clock) {
  const std::size_t size = content.size();
  std::size_t begin = std::min(at, size);
  if (begin < size && is_space(content[begin])) ++begin;
  // One white-space character belongs to ID; where it was written as a line end of two, the second
  // may do so too.
  const bool two =
      begin > 0 && begin < size && content[begin - 1] == '\r' && content[begin] == '\n';

  const bool filtered = !filter_names(dict, xref).empty();
  const std::int64_t picture = picture_bytes(dict, named, xref);
  for (const std::int64_t length : {stated_length(dict), filtered ? -1 : picture}) {
    for (std::size_t start = begin; start <= begin + (two ? 1 : 0); ++start) {
      if (length < 0 || static_cast<std::uint64_t>(length) > size - start) continue;
      const std::size_t count = static_cast<std::size_t>(length);
      const std::size_t ei = ei_behind(content, start + count);
      if (ei != npos) return {start, count, ei + 2};
    }
  }
  if (filtered) {
    const std::size_t taken =
        filtered_length(content.substr(begin), dict, xref, limits, picture, clock);
    if (taken != npos) {
      const std::size_t end = begin + taken;
      const std::size_t from = end - std::min(taken, slack_before);
      std::size_t ei = ei_behind(content, end);
      if (ei == npos) ei = scan_for_ei(content, begin, from, end + slack_behind, false, clock);
      if (ei != npos) return data_before(content, begin, ei);
    }
  }
  for (const bool strict : {true, false}) {
    const std::size_t ei = scan_for_ei(content, begin, begin, size, strict, clock);
    if (ei != npos) return data_before(content, begin, ei);
  }
  return {begin, size - begin, size};
}

}  // namespace pdfbmp
