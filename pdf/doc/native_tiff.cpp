// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cmath>
#include <vector>

#include "pdf/doc/native_wraps.h"
#include "pdf/filter/ccitt_parms.h"

namespace {

// Of TIFF 6.0, sections 10 and 11.
enum Compression : std::uint32_t { modified_huffman = 2, t4 = 3, t6 = 4 };

std::string little_endian(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i & 0xFF);
  return text;
}

// The entries of one image's directory; each is a single value.
class Directory {
 public:
  void add_short(int tag, std::uint32_t value) { add(tag, 3, little_endian(value, 4)); }
  void add_long(int tag, std::uint32_t value) { add(tag, 4, little_endian(value, 4)); }

  /// In thousandths.
  void add_rational(int tag, double value) {
    const std::size_t at = rationals_.size();
    rational_entries_.push_back({entries_.size() + 8, at});
    add(tag, 5, little_endian(0, 4));
    const double thousandths = std::min(std::max(value * 1000, 1.0), 4e9);
    rationals_ += little_endian(static_cast<std::uint32_t>(std::lround(thousandths)), 4);
    rationals_ += little_endian(1000, 4);
  }

  /// The strip follows the text at once.
  void add_strip_offset(int tag) {
    strip_entry_ = entries_.size() + 8;
    add_long(tag, 0);
  }

  /// The file up to the strip.
  std::string text() {
    constexpr std::size_t head_bytes = 8;
    const std::size_t rationals_at = head_bytes + 2 + entries_.size() + 4;
    for (const auto& [entry, at] : rational_entries_) set_offset(entry, rationals_at + at);
    set_offset(strip_entry_, rationals_at + rationals_.size());
    return "II*" + std::string(1, '\0') + little_endian(head_bytes, 4) +
           little_endian(static_cast<std::uint32_t>(entries_.size() / 12), 2) + entries_ +
           little_endian(0, 4) + rationals_;
  }

 private:
  struct Place {
    std::size_t entry, at;
  };

  void add(int tag, std::uint32_t type, const std::string& value) {
    entries_ += little_endian(static_cast<std::uint32_t>(tag), 2) + little_endian(type, 2) +
                little_endian(1, 4) + value;
  }
  void set_offset(std::size_t entry, std::size_t offset) {
    entries_.replace(entry, 4, little_endian(static_cast<std::uint32_t>(offset), 4));
  }

  std::string entries_, rationals_;
  std::vector<Place> rational_entries_;
  std::size_t strip_entry_ = 0;
};

// The bits in front of the first 1, as far as they matter; no row begins with eleven of them.
int leading_zeros(CPDFLoadedBytes& data) {
  int zeros = 0;
  for (std::int64_t at = 0; at < data.size(); ++at, zeros += 8) {
    for (int bit = 0; bit < 8; ++bit) {
      if ((data.data()[at] << bit & 0x80) != 0) return zeros + bit;
    }
  }
  return 0;
}

struct Coding {
  Compression compression = t6;
  std::uint32_t options = 0;
};

bool find_coding(const CCITTParms& parms, CPDFLoadedBytes& data, Coding& coding) {
  const int zeros = leading_zeros(data);
  const bool has_codes = zeros >= 11;
  if (parms.k < 0) return !parms.byte_align && !has_codes;
  if (has_codes) {
    constexpr std::uint32_t two_dimensional = 1, codes_end_on_a_byte = 4;
    coding.compression = t4;
    if (parms.k > 0) coding.options |= two_dimensional;
    if (parms.byte_align && (zeros + 1) % 8 == 0) coding.options |= codes_end_on_a_byte;
    return true;
  }
  coding.compression = modified_huffman;
  return parms.k == 0 && parms.byte_align;
}

}  // namespace

bool pdfbmp::wrap_ccitt(const CPDFFilterSetup& setup, const CPDFFoundImage& found,
                        CPDFNativeFile& file) {
  const CCITTParms parms(setup);
  Coding coding;
  if (parms.columns < 1 || parms.rows < 1 || !find_coding(parms, *file.data, coding)) return false;
  const auto rows = static_cast<std::uint32_t>(parms.rows);
  const bool has_ppi =
      !found.placements.empty() && found.placements[0].ppi[0] > 0 && found.placements[0].ppi[1] > 0;
  Directory tags;
  tags.add_long(256, static_cast<std::uint32_t>(parms.columns));  // ImageWidth
  tags.add_long(257, rows);                                       // ImageLength
  tags.add_short(258, 1);                                         // BitsPerSample
  tags.add_short(259, coding.compression);
  tags.add_short(262, parms.black_is_1 ? 1 : 0);  // PhotometricInterpretation: 1 is white, or black
  tags.add_short(266, 1);                         // FillOrder: the first pixel is the highest bit
  tags.add_strip_offset(273);
  tags.add_short(277, 1);                                             // SamplesPerPixel
  tags.add_long(278, rows);                                           // RowsPerStrip
  tags.add_long(279, static_cast<std::uint32_t>(file.data->size()));  // StripByteCounts
  tags.add_rational(282, has_ppi ? found.placements[0].ppi[0] : 1);   // XResolution
  tags.add_rational(283, has_ppi ? found.placements[0].ppi[1] : 1);   // YResolution
  if (coding.compression == t4) tags.add_long(292, coding.options);   // T4Options
  if (coding.compression == t6) tags.add_long(293, 0);                // T6Options
  tags.add_short(296, has_ppi ? 2 : 1);                               // ResolutionUnit: inch, none
  file.suffix = "tif";
  file.head = tags.text();
  return true;
}
