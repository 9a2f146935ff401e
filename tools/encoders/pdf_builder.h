// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// Writes a small PDF from the text of its objects. Objects 1 and 2 are the catalog and the page
/// tree; pages are added to it.
class PdfBuilder {
 public:
  PdfBuilder() : objects_(2) { objects_[0] = "<< /Type /Catalog /Pages 2 0 R >>"; }

  void set(int number, const std::string& body) {
    objects_[static_cast<std::size_t>(number) - 1] = body;
  }

  /// Returns the number of the new object.
  int add(const std::string& body) {
    objects_.push_back(body);
    return static_cast<int>(objects_.size());
  }

  /// `entries` are those of the stream's dictionary but for Length.
  int add_stream(const std::string& entries, const std::string& data) {
    return add("<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n" +
               data + "\nendstream");
  }

  /// An image of whatever `entries` make of it.
  int add_image(int width, int height, const std::string& entries, const std::string& data) {
    return add_stream("/Type /XObject /Subtype /Image /Width " + std::to_string(width) +
                          " /Height " + std::to_string(height) + " " + entries,
                      data);
  }

  /// A gray image at 8 bits, all of its samples 'x'.
  int add_image(int width, int height, const std::string& entries = "") {
    return add_image(width, height, "/ColorSpace /DeviceGray /BitsPerComponent 8 " + entries,
                     std::string(static_cast<std::size_t>(width * height), 'x'));
  }

  /// A form XObject of 100 x 100.
  int add_form(const std::string& entries, const std::string& content) {
    return add_stream("/Type /XObject /Subtype /Form /BBox [0 0 100 100] " + entries, content);
  }

  /// A page of 600 x 800 points.
  int add_page(const std::string& resources, const std::string& content,
               const std::string& entries = "") {
    return add_page_of(resources, add_stream("", content), entries);
  }
  int add_page_of(const std::string& resources, int contents, const std::string& entries = "") {
    pages_.push_back(add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 600 800] /Contents " +
                         ref(contents) + " /Resources << " + resources + " >> " + entries + " >>"));
    return pages_.back();
  }

  /// A page that paints the given images, each on 72 x 72 points, and then `content`.
  int add_page_with(const std::vector<int>& images, const std::string& content = "") {
    std::string painted, names;
    for (const int image : images) {
      const std::string name = "/Im" + std::to_string(image) + " ";
      names += name + ref(image) + " ";
      painted += "q 72 0 0 72 0 0 cm " + name + "Do Q\n";
    }
    return add_page("/XObject << " + names + ">>", painted + content);
  }

  static std::string ref(int number) { return std::to_string(number) + " 0 R"; }

  /// The file, with a cross-reference table and a trailer.
  std::string finish() {
    std::string kids;
    for (const int page : pages_) kids += ref(page) + " ";
    set(2, "<< /Type /Pages /Count " + std::to_string(pages_.size()) + " /Kids [" + kids + "] >>");
    std::string file = "%PDF-1.7\n", table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects_.size(); ++i) {
      char entry[32];
      std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", file.size());
      table += entry;
      file += std::to_string(i + 1) + " 0 obj\n" + objects_[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects_.size() + 1);
    return file + "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size +
           " /Root 1 0 R >>\nstartxref\n" + std::to_string(file.size()) + "\n%%EOF\n";
  }

 private:
  std::vector<std::string> objects_;
  std::vector<int> pages_;
};
