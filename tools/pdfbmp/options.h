// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "pdf/filter/filter.h"
#include "tools/pdfbmp/exit_code.h"

enum class Command { list, extract, gallery };
enum class FileFormat { png, pam, pnm, native };

/// Which bitmap of an image is wanted.
enum class PictureKind { automatic, color, gray, mask, mono };

/// Those of the library, and one second for an image.
inline CPDFFilterLimits limits_of_the_tool() {
  CPDFFilterLimits limits;
  limits.max_image_seconds = 1;
  return limits;
}

struct Options {
  Command command = Command::list;
  std::vector<std::string> files;  ///< "-" is standard input.
  int first_page = 1;
  int last_page = std::numeric_limits<int>::max();
  std::vector<int> objects;           ///< Only images of these numbers; empty for all.
  int min_width = 0, min_height = 0;  ///< Images below either are left out.
  std::string password;
  CPDFFilterLimits limits = limits_of_the_tool();
  std::int64_t max_bitmap_bytes = std::int64_t{240} << 20;  ///< Of what is made whole in memory.
  std::int64_t max_blank_pixels = std::int64_t{1} << 26;    ///< Written below what arrived.
  std::int64_t max_memory = std::int64_t{2} << 30;  ///< Bytes of the process, threads' own aside.
  bool json = false;
  bool quiet = false;

  /// A folder, or for the gallery a file; "-" for standard output (a tar stream, or the page).
  std::string output;
  FileFormat format = FileFormat::png;
  PictureKind kind = PictureKind::automatic;
  std::string cmyk_profile;  ///< A file, or "output-intent"; empty for the plain formula.
  int jobs = 0;              ///< Threads; 0 for one a processor.
};

/// Reads the command line. Where there is nothing more to do (help, version, a wrong call; what is
/// to be said has been said) the outcome is returned, else nothing.
std::optional<Outcome> parse_options(int argc, const char* const* argv, Options& options);
