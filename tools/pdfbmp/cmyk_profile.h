// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"

/// Has DeviceCMYK go by the profile file that the options name. False, with the reason, where it
/// cannot be used. Nothing where they name none, or the documents' own.
bool use_cmyk_profile(const Options& options, std::string& error);

/// Has DeviceCMYK go by the document's own output profile where the options ask for that, and by
/// its formula where the document has none. Before an image of the document is loaded, with those
/// of the last one gone.
void use_output_intent(CPDFDocument& document, const std::string& file, const Options& options,
                       Messages& messages);
