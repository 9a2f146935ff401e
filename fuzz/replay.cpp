// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The plain main of a fuzz target: runs it on every file named, and on the files of every folder
// named, each in a buffer of exactly its size. `--count N` fails where other than N files were run.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool run_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  bytes.shrink_to_fit();
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  long wanted = -1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--count") == 0 && i + 1 < argc) {
      wanted = std::strtol(argv[++i], nullptr, 10);
    } else if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i])) files.push_back(entry.path());
    } else {
      files.emplace_back(argv[i]);
    }
  }
  const auto count = static_cast<long>(files.size());
  std::printf("%ld inputs\n", count);
  if (wanted >= 0 && count != wanted) std::fprintf(stderr, "%ld inputs were wanted\n", wanted);
  const auto failed = std::count_if(files.begin(), files.end(), [](const auto& path) { return !run_file(path); });
  return failed == 0 && (wanted < 0 || count == wanted) ? EXIT_SUCCESS : EXIT_FAILURE;
}
