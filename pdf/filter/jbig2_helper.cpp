// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jbig2_helper.h"

#include <filesystem>
#include <mutex>
#include <system_error>
#include <unistd.h>

namespace {

struct Setting {
  std::mutex lock;
  bool is_set = false;
  std::string path;
};

Setting& setting() {
  static Setting one;
  return one;
}

std::string find_helper() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path own = fs::read_symlink("/proc/self/exe", error).parent_path();
  // Beside the program, as both lie in a build folder, as both are installed, and at last where
  // this library was meant to be installed.
  for (const char* folder : {".", "../pdfbmp-jbig2", "../libexec/pdfbmp", PDFBMP_LIBEXEC_FOLDER}) {
    const fs::path path = own / folder / "pdfbmp-jbig2";
    if (access(path.c_str(), X_OK) == 0 && !fs::is_directory(path, error)) return path;
  }
  return {};
}

}  // namespace

namespace pdfbmp {

void set_jbig2_helper(const std::string& path) {
  Setting& s = setting();
  const std::lock_guard<std::mutex> hold(s.lock);
  s.path = path;
  s.is_set = true;
}

void switch_off_jbig2() { set_jbig2_helper({}); }

std::string jbig2_helper() {
  Setting& s = setting();
  const std::lock_guard<std::mutex> hold(s.lock);
  if (!s.is_set) {
    s.path = find_helper();
    s.is_set = true;
  }
  return s.path;
}

}  // namespace pdfbmp
