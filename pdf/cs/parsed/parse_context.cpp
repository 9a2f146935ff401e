// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/parse_context.h"

#include <algorithm>

#include "kx/alloc.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"
#include "pdf/obj/stream.h"
#include "pdf/obj/xref.h"

const CPDFObj* CPDFCSParseContext::resolve(const CPDFObj* entry, CPDFObjHolder& temporary) const {
  if (entry == nullptr || entry->type != PDF_REFERENCE) return entry;
  resolve_copy(entry, xref_, temporary);
  return &temporary;
}

std::vector<unsigned char> CPDFCSParseContext::load_stream(const CPDFObj* stream, int limit) const {
  if (stream == nullptr || stream->stream() == nullptr || xref_ == nullptr) return {};
  const std::unique_ptr<CPDFStream> reader(xref_->make_stream(stream->stream()));
  if (!reader) return {};
  // The hint is ours: the length that a file claims may be anything.
  int length = std::clamp(limit, 1, 4096);
  struct Free {
    void operator()(unsigned char* bytes) const { KXFree(bytes); }
  };
  const std::unique_ptr<unsigned char, Free> bytes(reader->buffer_load(limit, length));
  if (!bytes) return {};
  return {bytes.get(), bytes.get() + length};
}

double CPDFCSParseContext::number(const CPDFObj* entry) const {
  if (entry == nullptr) return 0;
  return static_cast<double>(get_fixed_value(entry, xref_)) / static_cast<double>(fixed_one);
}

std::vector<double> CPDFCSParseContext::numbers(const CPDFObj* entry, int limit) const {
  CPDFObjHolder temporary;
  const CPDFObj* resolved = resolve(entry, temporary);
  const CPDFArray* array = resolved == nullptr ? nullptr : resolved->array();
  if (array == nullptr || array->count > limit) return {};
  std::vector<double> result;
  for (int i = 0; i < array->count; ++i) result.push_back(number(&array->items[i]));
  return result;
}

int CPDFCSParseContext::integer(const CPDFObj* entry, int fallback) const {
  return entry == nullptr ? fallback : get_int_value(entry, xref_);
}
