// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/table_space.h"
#include "pdf/obj/access.h"

// [/Indexed base hival lookup], ISO 32000-1 8.6.6.3. The lookup table is converted once, when the
// space is made. An index beyond hival takes the last entry; an entry that the table does not hold
// whole is black.

namespace {

struct Entry {
  unsigned char gray;
  unsigned char cmyk[4];
};

class CPDFCSIndexed final : public CPDFCSTable {
 public:
  CPDFCSIndexed(const Colors& colors, const std::array<Entry, 256>& entries)
      : CPDFCSTable(PDF_CS_INDEXED, colors, {0, 255}), entries_(entries) {}

  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override {
    const Entry& entry = entries_[static_cast<std::size_t>(std::clamp(color.val[0], 0, 255))];
    std::copy(entry.cmyk, entry.cmyk + 4, cmyk.val);
  }

 protected:
  void convert_gray(unsigned char* dst, const unsigned char* src, int pixels) const override {
    for (int i = 0; i < pixels; ++i) {
      *dst++ = entries_[src[i]].gray;
      *dst++ = 255;
    }
  }

 private:
  std::array<Entry, 256> entries_;
};

std::vector<unsigned char> lookup_bytes(const CPDFObj* lookup, int limit,
                                        const CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  lookup = context.resolve(lookup, temporary);
  if (lookup == nullptr) return {};
  if (lookup->type == PDF_STREAM) return context.load_stream(lookup, limit);
  if (lookup->type != PDF_STRING || lookup->str_bytes == nullptr) return {};
  return {lookup->str_bytes, lookup->str_bytes + lookup->as_int()};
}

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_indexed(const CPDFArray& array,
                                                 CPDFCSParseContext& context) {
  const std::unique_ptr<CPDFCSBase> base = context.parse_space(item(array, 1));
  if (!base || base->family == PDF_CS_INDEXED) return nullptr;
  const auto hival =
      static_cast<std::size_t>(std::clamp(context.integer(item(array, 2), 0), 0, 255));
  const auto width = static_cast<std::size_t>(base->comp_count);
  const std::vector<unsigned char> bytes =
      lookup_bytes(item(array, 3), static_cast<int>((hival + 1) * width), context);

  CPDFCSTable::Colors colors;
  std::array<Entry, 256> entries;
  colors.fill({0, 0, 0, 255});
  entries.fill({0, {0, 0, 0, 255}});
  for (std::size_t i = 0; i <= hival && (i + 1) * width <= bytes.size(); ++i) {
    PDF_COLOR color{};
    std::copy_n(bytes.data() + i * width, width, color.val);
    base->get_rgb(color, colors[i]);
    base->get_gray(color, entries[i].gray);
    PDF_COLOR cmyk{};
    base->get_cmyk(color, cmyk);
    for (std::size_t k = 0; k < 4; ++k)
      entries[i].cmyk[k] = static_cast<unsigned char>(std::clamp(cmyk.val[k], 0, 255));
  }
  std::fill(colors.begin() + static_cast<std::ptrdiff_t>(hival), colors.end(), colors[hival]);
  std::fill(entries.begin() + static_cast<std::ptrdiff_t>(hival), entries.end(), entries[hival]);
  return std::make_unique<CPDFCSIndexed>(colors, entries);
}
