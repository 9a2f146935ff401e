// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The plain main of a fuzz target, `NAME FILE` or `NAME FOLDER COUNT`: runs it on the file, or on
// the files of the folder, which must be that many; each in a buffer of exactly its size.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files(argv + (argc == 2 ? 1 : argc), argv + argc);
  if (argc == 3) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) files.push_back(entry.path());
  }
  bool good = argc == 2 || (argc == 3 && files.size() == std::strtoul(argv[2], nullptr, 10));
  for (const std::filesystem::path& path : files) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    good = good && file;
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  std::printf("%zu inputs%s\n", files.size(), good ? "" : ", not what was asked for");
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
