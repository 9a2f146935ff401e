// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/bench_set/scenes.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

/// Shapes of about `cell` pixels that move a sample by up to `amplitude` levels.
struct Octave {
  int cell;
  float amplitude;
};

constexpr Octave octaves[] = {{512, 110}, {128, 30}, {32, 6}};

std::uint32_t mixed(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  std::uint32_t h = a * 2654435761U ^ b * 2246822519U ^ c * 3266489917U;
  h = (h ^ h >> 15) * 2246822519U;
  h = (h ^ h >> 13) * 3266489917U;
  return h ^ h >> 16;
}

/// -1..1.
float signed_unit(std::uint32_t hash) {
  return static_cast<float>(hash & 0xffff) / 32767.5F - 1.0F;
}

/// Adds a row of one octave: values at the corners of its cells, linear between.
void add_octave(std::vector<float>& row, const Octave& octave, int y, std::uint32_t key) {
  const auto corner = [&](int column, int line) {
    return signed_unit(
        mixed(static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(line), key));
  };
  const int line = y / octave.cell;
  const float down = static_cast<float>(y % octave.cell) / static_cast<float>(octave.cell);
  const auto edge = [&](int column) {
    return octave.amplitude * (corner(column, line) * (1 - down) + corner(column, line + 1) * down);
  };
  const int width = static_cast<int>(row.size());
  for (int column = 0; column * octave.cell < width; ++column) {
    const float left = edge(column), right = edge(column + 1);
    const int first = column * octave.cell, end = std::min(width, first + octave.cell);
    for (int x = first; x < end; ++x) {
      const float across = static_cast<float>(x - first) / static_cast<float>(octave.cell);
      row[static_cast<std::size_t>(x)] += left + (right - left) * across;
    }
  }
}

}  // namespace

std::string Scene::samples(int bytes_per_sample) const {
  const auto step = static_cast<std::size_t>(components * bytes_per_sample);
  const std::size_t row_bytes = static_cast<std::size_t>(width) * step;
  std::string all(row_bytes * static_cast<std::size_t>(height), '\0');
  std::vector<float> row(static_cast<std::size_t>(width));
  for (int y = 0; y < height; ++y) {
    for (int c = 0; c < components; ++c) {
      const std::uint32_t key = seed * 16 + static_cast<std::uint32_t>(c);
      std::fill(row.begin(), row.end(), 128.0F);
      for (const Octave& octave : octaves) {
        add_octave(row, octave, y, key * 4096 + static_cast<std::uint32_t>(octave.cell));
      }
      std::size_t at =
          static_cast<std::size_t>(y) * row_bytes + static_cast<std::size_t>(c * bytes_per_sample);
      for (int x = 0; x < width; ++x, at += step) {
        const std::uint32_t hash =
            mixed(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), ~key);
        const float noise = grain * (signed_unit(hash) + signed_unit(hash >> 16)) / 2;
        const float level = std::clamp(row[static_cast<std::size_t>(x)] + noise, 0.0F, 255.0F);
        all[at] = static_cast<char>(static_cast<unsigned char>(level));
        if (bytes_per_sample == 2) {
          const auto twelve = static_cast<unsigned>(level * 4095 / 255);
          all[at] = static_cast<char>(twelve >> 4);
          all[at + 1] = static_cast<char>(twelve << 4 | twelve >> 8);
        }
      }
    }
  }
  return all;
}
