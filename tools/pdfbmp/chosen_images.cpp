// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/chosen_images.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

ChosenImages choose_images(CPDFDocument& document, const std::string& file, const Options& options,
                           Messages& messages) {
  ChosenImages chosen;
  std::map<int, int> on_page;
  std::set<int> missing(options.objects.begin(), options.objects.end());
  for (CPDFFoundImage& found : document.find_images(options.first_page, options.last_page)) {
    const int number = ++on_page[found.page];
    missing.erase(found.object);
    const bool is_asked_for =
        options.objects.empty() || std::find(options.objects.begin(), options.objects.end(),
                                             found.object) != options.objects.end();
    if (!is_asked_for || found.width < options.min_width || found.height < options.min_height) {
      continue;
    }
    chosen.images.push_back(std::move(found));
    chosen.numbers.push_back(number);
  }
  for (const int object : missing) {
    messages.warning(file, "object " + std::to_string(object) + " is no image of these pages");
  }
  return chosen;
}
