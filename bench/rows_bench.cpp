// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>

#include "bench/cmyk_profile.h"
#include "bench/goals.h"
#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/cs/rows.h"

// The scalar row functions, compiled once more: -O2 and not vectorised.
extern const CPDFRows scalar_rows_o2;

namespace {

constexpr int width = 4000;  // pixels a row

struct Rows {
  std::vector<unsigned char> random, smooth, target;
  std::vector<_KXRGBA> pixels, palette;

  Rows() : random(16 * width), smooth(16 * width), target(4 * width), pixels(width), palette(256) {
    std::mt19937 draw(1);
    for (unsigned char& byte : random) byte = static_cast<unsigned char>(draw());
    // Four slow waves of different length: neighbours differ by a level or two, as in a photograph.
    for (int i = 0; i < 4 * width; ++i) {
      for (int ink = 0; ink < 4; ++ink) {
        const double wave = 127.5 + 127 * std::sin(i / (60.0 + 17 * ink) + ink);
        smooth[static_cast<size_t>(4 * i + ink)] = static_cast<unsigned char>(wave);
      }
    }
    for (_KXRGBA& entry : palette) {
      entry = {static_cast<unsigned char>(draw()), static_cast<unsigned char>(draw()), 0, 255};
    }
  }
};
Rows data;

/// Registers `row`, which makes `items` results an iteration.
void add(const std::string& name, int items, std::function<void()> row) {
  benchmark::RegisterBenchmark(name.c_str(), [items, row](benchmark::State& state) {
    for (auto _ : state) {
      row();
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * items);
  });
}

/// `row` of the table in use under `name`, and the same of the twin under "NAME scalar -O2".
template <class Row>
void add_with_twin(const std::string& name, int items, Row row) {
  add(name, items, [row] { row(rows()); });
  add(name + " scalar -O2", items, [row] { row(scalar_rows_o2); });
}

void add_memcpy(const char* name, size_t bytes) {
  add(name, width, [bytes] { std::memcpy(data.target.data(), data.random.data(), bytes); });
}

/// The batch operations of a device space. `twin` and `gray_twin` are what they are made of.
void add_device(const std::string& name, CPDFCSBase& cs, CPDFRows::Rgba const (&twin)[3],
                CPDFRows::Bytes gray_twin, std::vector<Goal>& goals) {
  const unsigned char* src = data.random.data();
  const int bytes = width * cs.comp_count;
  const auto pixels = data.pixels.data();
  const auto grays = data.target.data();
  add(name + " batch_rgb", width, [=, &cs] { cs.batch_rgb(pixels, src, bytes); });
  add(name + " batch_rgb2", width / 2, [=, &cs] { cs.batch_rgb2(pixels, src, bytes); });
  add(name + " batch_rgb4", width / 4, [=, &cs] { cs.batch_rgb4(pixels, src, bytes); });
  add(name + " batch_gray", width, [=, &cs] { cs.batch_gray(grays, src, bytes); });
  const char* const operations[] = {" batch_rgb", " batch_rgb2", " batch_rgb4"};
  for (size_t step = 0; step < 3; ++step) {
    const size_t n = width >> step;
    const auto row = twin[step];
    add(name + operations[step] + " scalar -O2", static_cast<int>(n), [=] { row(pixels, src, n); });
    goals.push_back({name + operations[step], name + operations[step],
                     name + operations[step] + " scalar -O2", 0});
  }
  add(name + " batch_gray scalar -O2", width, [=] { gray_twin(grays, src, width); });
  goals.push_back({name + " batch_gray", name + " batch_gray", name + " batch_gray scalar -O2", 0});
}

void add_device_rows(std::vector<Goal>& goals) {
  static CPDFCSDeviceGray gray;
  static CPDFCSDeviceRGB rgb;
  static CPDFCSDeviceCMYK cmyk;
  const CPDFRows& twin = scalar_rows_o2;
  add_device("gray", gray, twin.rgba_from_gray, twin.gray_from_gray, goals);
  add_device("RGB", rgb, twin.rgba_from_rgb, twin.gray_from_rgb, goals);
  add_device("CMYK formula", cmyk, twin.rgba_from_cmyk, twin.gray_from_cmyk, goals);
  const auto require = [&goals](const std::string& name, double times) {
    for (Goal& goal : goals) {
      if (goal.benchmark == name) goal.least = times;
    }
  };
  require("RGB batch_gray", 8);
  require("CMYK formula batch_rgb", 8);
  add_memcpy("memcpy 4 bytes/px", size_t{4} * width);
  add_memcpy("memcpy 2 bytes/px", size_t{2} * width);
  goals.insert(goals.end(), {{"gray batch_rgb", "gray batch_rgb", "memcpy 4 bytes/px", 0.5},
                             {"gray batch_gray", "gray batch_gray", "memcpy 2 bytes/px", 0.5},
                             {"RGB batch_rgb", "RGB batch_rgb", "memcpy 4 bytes/px", 0.5},
                             {"RGB batch_gray", "RGB batch_gray", "", 2e9},
                             {"CMYK formula batch_rgb", "CMYK formula batch_rgb", "", 500e6}});
}

/// CMYK by table, beside Little CMS with the profile that the table was built from.
void add_cmyk_table(std::vector<Goal>& goals) {
  static std::vector<unsigned short> table;
  static CPDFCSDeviceCMYKExt cs;
  cmsHPROFILE profile = make_cmyk_profile();
  cmsHTRANSFORM transform = profile ? make_cmyk_transform(profile) : nullptr;
  if (profile) table = make_cmyk_table(profile);
  if (!transform || table.empty()) {
    std::fprintf(stderr, "No CMYK profile: the table is not measured.\n");
    return;
  }
  CPDFCSDeviceCMYKExt::ms_icc = table.data();
  CPDFCSDeviceCMYKExt::ms_icc_end = table.data() + table.size();
  struct Kind {
    std::string name;
    const unsigned char* src;
    double least;
  } const kinds[] = {{"random", data.random.data(), 4}, {"smooth", data.smooth.data(), 1.5}};
  const auto pixels = data.pixels.data();
  for (const auto& [kind, src, least] : kinds) {
    const std::string name = "CMYK table batch_rgb, " + kind, lcms = "cmsDoTransform, " + kind;
    add(name, width, [=, src = src] { cs.batch_rgb(pixels, src, 4 * width); });
    add(name + " scalar -O2", width, [=, src = src] {
      scalar_rows_o2.rgba_from_cmyk_grid[0](pixels, src, width, table.data(), table.size());
    });
    add(lcms, width, [=, src = src] { cmsDoTransform(transform, src, pixels, width); });
    goals.push_back({name, name, lcms, least});
    goals.push_back({name, name, name + " scalar -O2", 0});
  }
}

/// What the palette and one-bit decoders are made of.
void add_table_rows(std::vector<Goal>& goals) {
  const unsigned char* src = data.random.data();
  const auto pixels = data.pixels.data();
  const auto bytes = data.target.data();
  const auto table = data.palette.data();
  const unsigned char* byte_table = &table[0].b;
  add_with_twin("8 bit to RGBA", width,
                [=](const CPDFRows& r) { r.rgba_from_8bit[0](pixels, src, width, table); });
  add_with_twin("8 bit to gray", width,
                [=](const CPDFRows& r) { r.gray_from_8bit(bytes, src, width, byte_table); });
  add_with_twin("8 bit to bytes", width,
                [=](const CPDFRows& r) { r.bytes_from_8bit(bytes, src, width, byte_table); });
  add_with_twin("1 bit to RGBA", width,
                [=](const CPDFRows& r) { r.rgba_from_1bit(pixels, src, width, table); });
  add_with_twin("1 bit to gray", width,
                [=](const CPDFRows& r) { r.gray_from_1bit(bytes, src, width, byte_table); });
  add_with_twin("1 bit to bytes", width,
                [=](const CPDFRows& r) { r.bytes_from_1bit(bytes, src, width, byte_table); });
  add_with_twin("average of 4 bytes", width,
                [=](const CPDFRows& r) { r.average4(bytes, src, width); });
  add_with_twin("complement", width, [=](const CPDFRows& r) { r.complement(bytes, src, width); });
  goals.insert(goals.end(), {{"8 bit to RGBA", "8 bit to RGBA", "", 1e9},
                             {"1 bit to RGBA", "1 bit to RGBA", "", 2e9}});
  for (const char* name : {"8 bit to RGBA", "8 bit to gray", "8 bit to bytes", "1 bit to RGBA",
                           "1 bit to gray", "1 bit to bytes", "average of 4 bytes", "complement"}) {
    goals.push_back({name, name, std::string(name) + " scalar -O2", 0});
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Goal> goals;
  add_device_rows(goals);
  add_cmyk_table(goals);
  add_table_rows(goals);
  std::printf("Rows of %d pixels, CPU path %s\n", width, cpu_name(rows().cpu));
  return run_with_goals(argc, argv, goals);
}
