// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/filter_chain.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "pdf/filter/bounded_stream.h"
#include "pdf/filter/filter_table.h"
#include "pdf/filter/measured_stream.h"
#include "pdf/obj/access.h"
#include "pdf/obj/object.h"

namespace {

constexpr int most_names = 64;

// The value of an entry that is one item or an array of items, either of which may be references.
class ItemList {
 public:
  /// The full key counts, and the abbreviation where that is absent. In a stream's dictionary, F is
  /// a file specification: no name, and no array of names.
  ItemList(const CPDFDictionary& dict, CPDFXRefTable* xref, const char* key, const char* shorter)
      : xref_(xref) {
    const CPDFObj* entry = find_key(&dict, key);
    if (entry == nullptr) entry = find_key(&dict, shorter);
    if (entry != nullptr) resolve_copy(entry, xref, value_);
  }

  bool is_array() const { return value_.array() != nullptr; }

  int count() const {
    if (is_array()) return value_.array()->count;
    return value_.type == PDF_NAME || value_.type == PDF_DICTIONARY ? 1 : 0;
  }

  void get(int i, CPDFObj& item) const {
    item.free();
    if (i >= count()) return;
    resolve_copy(is_array() ? &value_.array()->items[i] : &value_, xref_, item);
  }

 private:
  CPDFXRefTable* xref_;
  CPDFObjHolder value_;
};

// Blank paper takes no data to speak of in these, at an eighth of a byte a pixel, or they have a
// limit of their own.
bool bounds_itself(const pdfbmp::FilterEntry& filter) {
  const std::string_view name = filter.name;
  return name == "CCITTFaxDecode" || name == "JBIG2Decode" || name == "JPXDecode";
}

// The filters of a stream's dictionary, with their parameters.
class FilterList {
 public:
  FilterList(const CPDFDictionary& dict, CPDFXRefTable* xref)
      : dict_(dict),
        xref_(xref),
        filters_(dict, xref, CPDFDictionary::sm_tag_filter, "F"),
        parms_(dict, xref, "DecodeParms", "DP") {}

  int count() const { return filters_.count(); }

  /// One dictionary beside several filters is taken for that of each: a filter reads no other keys
  /// than its own.
  void get_parms(int i, CPDFObj& parms) const { parms_.get(parms_.is_array() ? i : 0, parms); }

  /// All filters but the last `left_out` in front of `stream`.
  std::unique_ptr<CPDFStream> make(std::unique_ptr<CPDFStream> stream,
                                   const CPDFFilterLimits& limits,
                                   std::shared_ptr<CPDFDecodeReport> report, int left_out) const {
    if (stream == nullptr || report == nullptr) return nullptr;
    if (count() > limits.max_filters) {
      report->note("there are more filters than the limits allow");
      return nullptr;
    }
    const int encoded_length = stream->length;
    for (int i = 0; i < count() - left_out; ++i) {
      CPDFObjHolder name;
      CPDFObjHolder parms;
      filters_.get(i, name);
      get_parms(i, parms);
      const pdfbmp::FilterEntry* const filter = pdfbmp::find_filter(name.name());
      if (filter == nullptr) {
        report->note("a filter is unknown");
        return nullptr;
      }
      CPDFFilterSetup setup;
      setup.parms = parms.dict();
      setup.image = &dict_;
      setup.xref = xref_;
      setup.limits = limits;
      setup.file_bytes = encoded_length;
      setup.report = report;
      stream = filter->make(std::move(stream), setup);
      if (stream == nullptr) {
        if (!report->damaged) report->note("a filter could not be made");
        return nullptr;
      }
      if (stream->length == 0) stream->length = encoded_length;  // A hint for who loads it whole.
      if (i + 1 == count() && bounds_itself(*filter)) break;
      const std::int64_t most =
          std::max(limits.max_stage_bytes, std::int64_t{encoded_length} * limits.max_expansion);
      stream = pdfbmp::make_bounded_stream(std::move(stream), most, report);
      if (stream == nullptr) return nullptr;
    }
    return pdfbmp::make_measured_stream(std::move(stream), std::move(report));
  }

 private:
  const CPDFDictionary& dict_;
  CPDFXRefTable* xref_;
  ItemList filters_;
  ItemList parms_;
};

}  // namespace

namespace pdfbmp {

std::string full_filter_name(const char* name) {
  const FilterEntry* const filter = find_filter(name);
  if (filter != nullptr) return filter->name;
  return name != nullptr ? name : "";
}

std::string kept_name(const std::string& name) { return name.substr(0, 127); }

std::vector<std::string> filter_names(const CPDFDictionary& dict, CPDFXRefTable* xref) {
  const ItemList filters(dict, xref, CPDFDictionary::sm_tag_filter, "F");
  std::vector<std::string> names;
  for (int i = 0; i < std::min(filters.count(), most_names); ++i) {
    CPDFObjHolder item;
    filters.get(i, item);
    if (item.name() != nullptr) names.push_back(kept_name(full_filter_name(item.name())));
  }
  return names;
}

std::unique_ptr<CPDFStream> make_filter_chain(std::unique_ptr<CPDFStream> encoded,
                                              const CPDFDictionary& dict, CPDFXRefTable* xref,
                                              const CPDFFilterLimits& limits,
                                              std::shared_ptr<CPDFDecodeReport> report) {
  return FilterList(dict, xref).make(std::move(encoded), limits, std::move(report), 0);
}

std::unique_ptr<CPDFStream> make_codec_input(std::unique_ptr<CPDFStream> encoded,
                                             const CPDFDictionary& dict, CPDFXRefTable* xref,
                                             const CPDFFilterLimits& limits,
                                             std::shared_ptr<CPDFDecodeReport> report,
                                             CPDFObj& parms) {
  const FilterList filters(dict, xref);
  if (filters.count() == 0) return nullptr;
  filters.get_parms(filters.count() - 1, parms);
  return filters.make(std::move(encoded), limits, std::move(report), 1);
}

std::shared_ptr<CPDFDecodeReport> report_of(const CPDFStream* stream) {
  const auto* const reported = dynamic_cast<const CPDFReportedStream*>(stream);
  return reported != nullptr ? reported->report() : nullptr;
}

}  // namespace pdfbmp
