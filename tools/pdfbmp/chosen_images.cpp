// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/chosen_images.h"

#include <algorithm>
#include <map>
#include <new>
#include <set>
#include <utility>
#include <vector>

#include "tools/pdfbmp/memory.h"

namespace {

void tell_warnings(const CPDFDocument& document, const std::string& file, Messages& messages) {
  constexpr std::size_t most = 10;
  const std::vector<std::string> warnings = document.warnings();
  for (std::size_t i = 0; i < warnings.size() && i < most; ++i) {
    messages.warning(file, warnings[i]);
  }
  if (warnings.size() > most) {
    messages.warning(file, "and " + std::to_string(warnings.size() - most) + " more");
  }
}

// The images of the pages; where memory ran out on the way, those found before.
std::vector<CPDFFoundImage> find_images(CPDFDocument& document, const std::string& file,
                                        const Options& options, Messages& messages,
                                        Outcome& outcome) {
  std::vector<CPDFFoundImage> found;
  bool failed = false;
  try {
    found = document.find_images(options.first_page, options.last_page);
  } catch (const std::bad_alloc&) {
    failed = true;
  }
  if (memory_ran_out() || failed) {
    messages.error(file, memory_problem(options));
    outcome = Outcome::unreadable;
  }
  return found;
}

}  // namespace

ChosenImages choose_images(CPDFDocument& document, const std::string& file, const Options& options,
                           Messages& messages) {
  ChosenImages chosen;
  std::map<int, int> on_page;
  std::set<int> missing(options.objects.begin(), options.objects.end());
  for (CPDFFoundImage& found : find_images(document, file, options, messages, chosen.outcome)) {
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
  tell_warnings(document, file, messages);
  const int pages = document.page_count();
  if (options.first_page > pages) {
    messages.warning(file, pages == 0 ? "has no pages"
                                      : "has no page " + std::to_string(options.first_page) +
                                            ", only " + std::to_string(pages));
  }
  for (const int object : missing) {
    messages.warning(file, "object " + std::to_string(object) + " is no image of these pages");
  }
  return chosen;
}
