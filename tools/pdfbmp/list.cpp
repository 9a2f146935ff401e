// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/list.h"

#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "pdf/doc/file_sink.h"
#include "tools/pdfbmp/chosen_images.h"
#include "tools/pdfbmp/image_facts.h"
#include "tools/pdfbmp/input.h"
#include "tools/pdfbmp/table.h"
#include "tools/pdfbmp/terminal.h"

namespace {

std::string json_lines(const std::vector<CPDFFoundImage>& images, const std::string* pdf) {
  std::string text;
  for (const CPDFFoundImage& found : images) {
    JsonObject json;
    if (pdf != nullptr) json.add("pdf", *pdf);
    add_facts(json, found);
    text += json.text() + "\n";
  }
  return text;
}

}  // namespace

Outcome run_list(const Options& options, Messages& messages) {
  CPDFDescriptorSink out(STDOUT_FILENO);
  const auto columns = static_cast<std::size_t>(terminal_columns(STDOUT_FILENO));
  const bool several = options.files.size() > 1;
  Outcome worst = Outcome::ok;
  for (const std::string& file : options.files) {
    Outcome outcome = Outcome::ok;
    std::string error;
    const std::unique_ptr<CPDFDocument> document = open_input(file, options, outcome, error);
    worst = worse(worst, outcome);
    ChosenImages chosen;
    if (document != nullptr) {
      chosen = choose_images(*document, file, options, messages);
      worst = worse(worst, chosen.outcome);
    } else {
      messages.error(file, error);
    }

    std::string text;
    if (options.json) {
      text = json_lines(chosen.images, several ? &file : nullptr);
      if (several) text += summary_line(file, chosen.images.size(), 0, document ? nullptr : &error);
    } else if (document != nullptr) {
      if (several) text = "==> " + file + " <==\n";
      text += image_table(chosen, columns) + (several ? "\n" : "");
    }
    if (!out.write(text.data(), text.size())) {
      messages.error("standard output", out.error());
      return Outcome::no_output;
    }
  }
  return worst;
}
