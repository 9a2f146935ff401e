// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/object_values.h"

#include <algorithm>
#include <climits>
#include <limits>
#include <string>

#include "pdf/filter/filter_chain.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"

namespace {

constexpr int max_depth = 64;

/// Decimal digits of a fraction times 2^26, rounded: at most 2^26.
std::int64_t fixed_fraction(std::string digits) {
  // Doubling the fraction carries its next bit out of it: exact, however many digits there are.
  std::int64_t bits = 0;
  for (int i = 0; i <= fixed_fraction_bits; ++i) {
    int carry = 0;
    for (std::size_t k = digits.size(); k-- > 0;) {
      const int doubled = (digits[k] - '0') * 2 + carry;
      digits[k] = static_cast<char>('0' + doubled % 10);
      carry = doubled / 10;
    }
    bits = bits * 2 + carry;
  }
  return (bits + 1) >> 1;
}

/// Entries of a stream's dictionary that its codec knows better.
void settle_depth(QPDFObjectHandle dict, CPDFDictionary& out) {
  QPDFObjectHandle filter = dict.getKey("/Filter");
  if (filter.isArray() && filter.getArrayNItems() > 0) {
    filter = filter.getArrayItem(filter.getArrayNItems() - 1);
  }
  if (!filter.isName()) return;
  const std::string name = filter.getName();
  const bool jpx = name == "/JPXDecode";
  const bool bilevel = name == "/CCITTFaxDecode" || name == "/JBIG2Decode";
  const bool absent = find_key(&out, CPDFDictionary::sm_tag_bpc) == nullptr;
  if (!jpx && !(bilevel && absent)) return;
  if (CPDFObj* bpc = out.set(CPDFDictionary::sm_tag_bpc)) bpc->set_int(jpx ? 8 : 1);
}

/// One object on its way into the image unit's form.
class Conversion {
 public:
  void convert(QPDFObjectHandle object, CPDFObj& out, int depth) {
    out.free();
    switch (object.getTypeCode()) {
      case ot_boolean:
        out.set_bool(object.getBoolValue());
        break;
      case ot_integer:
        out.set_int(pdfbmp::int_from(object.getIntValue()));
        break;
      case ot_real:
        out.set_real(pdfbmp::fixed_from_text(object.getRealValue()));
        break;
      case ot_string: {
        const std::string bytes = object.getStringValue();
        if (bytes.size() <= INT_MAX) out.set_string(bytes.data(), static_cast<int>(bytes.size()));
        break;
      }
      case ot_name: {
        const std::string name = object.getName();
        out.set_name(pdfbmp::without_slash(name));
        break;
      }
      case ot_array:
        if (CPDFArray* array = out.set_array()) convert_array(object, *array, depth);
        break;
      case ot_dictionary:
        if (CPDFDictionary* dict = out.set_dict()) convert_dictionary(object, *dict, depth);
        break;
      case ot_stream: {
        CPDFStreamRec* rec = out.set_stream();
        if (rec == nullptr) break;
        convert_dictionary(object.getDict(), rec->dict, depth);
        settle_depth(object.getDict(), rec->dict);
        rec->location[1] = static_cast<std::uint32_t>(object.getObjectID()) |
                           std::uint64_t{static_cast<std::uint32_t>(object.getGeneration())} << 32;
        break;
      }
      default:
        break;
    }
  }

  void convert_entry(QPDFObjectHandle entry, CPDFObj& out, int depth) {
    if (entry.isIndirect()) {
      out.set_ref(pdfbmp::ref_of(entry));
    } else {
      convert(entry, out, depth);
    }
  }

 private:
  void convert_array(QPDFObjectHandle object, CPDFArray& out, int depth) {
    if (depth >= max_depth) return;
    for (const QPDFObjectHandle& item : object.aitems()) {
      CPDFObj* slot = entries_left_-- > 0 ? out.append() : nullptr;
      if (slot == nullptr) break;
      convert_entry(item, *slot, depth + 1);
    }
  }

  void convert_dictionary(QPDFObjectHandle dict, CPDFDictionary& out, int depth) {
    if (depth >= max_depth) return;
    for (const auto& entry : dict.ditems()) {
      if (entry.second.isDirectNull()) continue;  // As if it were absent (ISO 32000-1, 7.3.7).
      CPDFObj* item = entries_left_-- > 0 ? out.set(pdfbmp::without_slash(entry.first)) : nullptr;
      if (item == nullptr) break;
      convert_entry(entry.second, *item, depth + 1);
    }
  }

  int entries_left_ = 8'192;
};

}  // namespace

namespace pdfbmp {

std::int64_t fixed_from_text(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (!text.empty() && (negative || text.front() == '+')) text.remove_prefix(1);
  const std::size_t whole_end = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, whole_end);
  std::string_view fraction = text.substr(std::min(whole_end + 1, text.size()));
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  if (!std::all_of(whole.begin(), whole.end(), is_digit)) return 0;
  fraction = fraction.substr(
      0, static_cast<std::size_t>(std::find_if_not(fraction.begin(), fraction.end(), is_digit) -
                                  fraction.begin()));

  // One more than the largest whole part that fits: enough to know that a number is beyond.
  constexpr std::int64_t limit = std::int64_t{1} << (63 - fixed_fraction_bits);
  std::int64_t number = 0;
  for (const char digit : whole) number = std::min(limit, number * 10 + (digit - '0'));
  if (number >= limit) {
    return negative ? std::numeric_limits<std::int64_t>::min()
                    : std::numeric_limits<std::int64_t>::max();
  }
  const auto magnitude =
      static_cast<std::uint64_t>(number) * static_cast<std::uint64_t>(fixed_one) +
      static_cast<std::uint64_t>(fixed_fraction(std::string(fraction)));
  const std::uint64_t largest =
      static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const auto fixed = static_cast<std::int64_t>(std::min(magnitude, largest));
  return negative ? -fixed : fixed;
}

int int_from(long long value) {
  return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

void convert_object(QPDFObjectHandle object, CPDFObj& out) { Conversion().convert(object, out, 0); }

void convert_entry(QPDFObjectHandle entry, CPDFObj& out) {
  Conversion().convert_entry(entry, out, 0);
}

PDF_REF ref_of(const QPDFObjectHandle& object) {
  return {object.getObjectID(), object.getGeneration()};
}

}  // namespace pdfbmp
