// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/cmyk_profile.h"

#include <cstdint>
#include <memory>

#include "pdf/doc/cmyk_table.h"
#include "pdf/filter/source.h"

namespace {

constexpr const char* output_intent = "output-intent";
constexpr std::int64_t most_profile_bytes = std::int64_t{64} << 20;

}  // namespace

bool use_cmyk_profile(const Options& options, std::string& error) {
  const std::string& file = options.cmyk_profile;
  if (file.empty() || file == output_intent) return true;
  const std::shared_ptr<CPDFSource> source = pdfbmp::open_file_source(file, error);
  if (source == nullptr) return false;
  if (source->size() > most_profile_bytes) {
    error = "it is no ICC profile";
    return false;
  }
  std::string profile(static_cast<std::size_t>(source->size()), '\0');
  const std::int64_t read = source->read_at(0, profile.data(), source->size());
  return pdfbmp::install_cmyk_table(profile.data(), static_cast<std::size_t>(read), error);
}

void use_output_intent(CPDFDocument& document, const std::string& file, const Options& options,
                       Messages& messages) {
  if (options.cmyk_profile != output_intent) return;
  pdfbmp::remove_cmyk_table();
  const std::string profile = document.output_intent_profile();
  std::string error;
  if (profile.empty()) {
    messages.warning(file, "it has no output profile for CMYK");
  } else if (!pdfbmp::install_cmyk_table(profile.data(), profile.size(), error)) {
    messages.warning(file, "its output profile: " + error);
  }
}
