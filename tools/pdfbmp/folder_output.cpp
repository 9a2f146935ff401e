// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "pdf/doc/file_sink.h"
#include "tools/pdfbmp/output.h"

namespace {

class FolderFile final : public OutputFile {
 public:
  explicit FolderFile(const std::string& path) : path_(path), sink_(path) {}

  CPDFByteSink& sink() override { return sink_; }
  bool commit(std::string& error) override {
    if (sink_.commit()) return true;
    error = failure();
    return false;
  }
  std::string failure() const override {
    return sink_.error().empty() ? "" : path_ + ": " + sink_.error();
  }

 private:
  std::string path_;
  CPDFFileSink sink_;
};

class FolderOutput final : public Output {
 public:
  explicit FolderOutput(const std::string& folder) : folder_(folder) {}

  bool prepare(std::string& error) override { return make_folder(folder_, error); }

  std::unique_ptr<OutputFile> create(const std::string& name, std::string& error) override {
    const std::filesystem::path path = folder_ / name;
    auto file = std::make_unique<FolderFile>(path.string());
    if (!file->failure().empty()) {
      // The first file of its folder.
      if (!make_folder(path.parent_path(), error)) return nullptr;
      file = std::make_unique<FolderFile>(path.string());
    }
    error = file->failure();
    if (error.empty()) return file;
    return nullptr;
  }

  bool add_line(const std::string& line, std::string& error) override {
    if (out_.write(line.data(), line.size())) return true;
    error = "standard output: " + out_.error();
    return false;
  }

  bool finish(std::string&) override { return true; }

 private:
  static bool make_folder(const std::filesystem::path& folder, std::string& error) {
    std::error_code code;
    std::filesystem::create_directories(folder, code);
    if (!code && !std::filesystem::is_directory(folder, code) && !code) {
      code = std::make_error_code(std::errc::not_a_directory);
    }
    if (code) error = folder.string() + ": " + code.message();
    return !code;
  }

  std::filesystem::path folder_;
  CPDFDescriptorSink out_{STDOUT_FILENO};
};

}  // namespace

std::unique_ptr<Output> make_folder_output(const std::string& folder) {
  return std::make_unique<FolderOutput>(folder);
}
