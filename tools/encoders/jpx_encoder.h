// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace encoders::jpx {

struct Component {
  int bits = 8;
  bool is_signed = false;
  int step = 1;  ///< Pixels from one sample to the next, both ways.
};

struct Picture {
  std::vector<Component> components;
  int width = 37, height = 29;
  int tile = 0;  ///< Side of a tile; 0 for one.
};

std::string big_endian(std::uint32_t v, int n);

/// A box of a JP2 file (ISO/IEC 15444-1, I.4).
std::string box(const char* name, const std::string& body);

/// The codestream in a file with these boxes in its header.
std::string file_of(const std::string& codestream, const std::string& boxes);

/// The box of an enumerated colour space.
std::string color_box(std::uint32_t space);

}  // namespace encoders::jpx

namespace encoders {

/// A lossless codestream: `sample` gives component c at a pixel that it has a sample for, from 0
/// up. Empty where OpenJPEG fails.
std::string encode_jpx(const jpx::Picture& picture,
                       const std::function<int(int c, int x, int y)>& sample);

}  // namespace encoders
