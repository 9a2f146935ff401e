// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "pdf/filter/source.h"
#include "pdf/obj/stream.h"

namespace pdfbmp {

/// A stream over `length` bytes of a source from `offset` on, read in pieces of 64 KiB. It ends
/// early where the source does. Null where memory failed.
std::unique_ptr<CPDFStream> make_source_stream(std::shared_ptr<CPDFSource> source,
                                               std::int64_t offset, std::int64_t length);

}  // namespace pdfbmp
