// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <vector>

/// Puts a PDF file together from the text of its objects.
class PdfFile {
 public:
  /// Returns the number of the new object.
  int add(const std::string& object) {
    objects_.push_back(object);
    return static_cast<int>(objects_.size());
  }

  /// `entries` are those of the dictionary but for Length.
  int add_stream(const std::string& entries, const std::string& data) {
    return add("<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream");
  }

  /// An unfiltered image XObject, or whatever `entries` make of it.
  int add_image(int width, int height, const std::string& entries, const std::string& data) {
    return add_stream(
        "/Type /XObject /Subtype /Image /Width " + std::to_string(width) + " /Height " + std::to_string(height) + " " + entries, data);
  }

  /// A page that paints the given images, each on 72 x 72 points, and then `content`.
  void add_page(const std::vector<int>& images, const std::string& content = "") {
    std::string painted, names;
    for (const int image : images) {
      const std::string name = "/Im" + std::to_string(image);
      names += name + " " + reference(image) + " ";
      painted += "q 72 0 0 72 0 0 cm " + name + " Do Q\n";
    }
    const int stream = add_stream("", painted + content);
    pages_.push_back(
        add("<< /Type /Page /Parent 1000000 0 R /MediaBox [0 0 200 200] /Resources << "
            "/XObject << " +
            names + ">> >> /Contents " + reference(stream) + " >>"));
  }

  /// The whole file.
  std::string text() {
    std::string kids;
    for (const int page : pages_) kids += reference(page) + " ";
    const int tree = add("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages_.size()) + " >>");
    const int root = add("<< /Type /Catalog /Pages " + reference(tree) + " >>");
    std::string file = "%PDF-1.7\n", table;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
      std::string object = objects_[i];
      const std::size_t parent = object.find("1000000 0 R");
      if (parent != std::string::npos) object.replace(parent, 11, reference(tree));
      char line[32];
      std::snprintf(line, sizeof(line), "%010zu 00000 n \n", file.size());
      table += line;
      file += std::to_string(i + 1) + " 0 obj\n" + object + "\nendobj\n";
    }
    const std::string size = std::to_string(objects_.size() + 1);
    return file + "xref\n0 " + size + "\n0000000000 65535 f \n" + table + "trailer << /Size " + size + " /Root " + reference(root) +
           " >>\nstartxref\n" + std::to_string(file.size()) + "\n%%EOF\n";
  }

 private:
  static std::string reference(int object) { return std::to_string(object) + " 0 R"; }

  std::vector<std::string> objects_;
  std::vector<int> pages_;
};
