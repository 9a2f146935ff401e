// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pdf/filter/filter.h"

class CPDFObj;

namespace pdfbmp {

/// The full name of a filter (`FlateDecode`) given by either of its names (`Fl`); the name itself
/// where it is unknown.
std::string full_filter_name(const char* name);

/// A name of a file as records keep it: its first 127 bytes, the most that a name should have.
std::string kept_name(const std::string& name);

/// The full filter names of a stream dictionary, in the order of decoding: the first 64. Both the
/// full keys and the abbreviations of inline images are read.
std::vector<std::string> filter_names(const CPDFDictionary& dict, CPDFXRefTable* xref);

/// Puts the filters that `dict` (a stream's own dictionary) names in front of `encoded`, which
/// delivers the raw bytes. Parameters may be a dictionary, an array or null. Null, with the reason
/// in the report, for an unknown filter, a chain beyond the limits, or no memory. The result counts
/// what it delivers in the report and stays a CPDFStreamJPX where the last filter is one.
std::unique_ptr<CPDFStream> make_filter_chain(std::unique_ptr<CPDFStream> encoded,
                                              const CPDFDictionary& dict, CPDFXRefTable* xref,
                                              const CPDFFilterLimits& limits,
                                              std::shared_ptr<CPDFDecodeReport> report);

/// As above, but without the last filter: what it would read. `parms` becomes its parameters, empty
/// where it has none. Null also where there is no filter.
std::unique_ptr<CPDFStream> make_codec_input(std::unique_ptr<CPDFStream> encoded,
                                             const CPDFDictionary& dict, CPDFXRefTable* xref,
                                             const CPDFFilterLimits& limits,
                                             std::shared_ptr<CPDFDecodeReport> report,
                                             CPDFObj& parms);

/// The report of a stream that make_filter_chain made; null for any other stream.
std::shared_ptr<CPDFDecodeReport> report_of(const CPDFStream* stream);

}  // namespace pdfbmp
