// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/extract.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tools/pdfbmp/chosen_images.h"
#include "tools/pdfbmp/cmyk_profile.h"
#include "tools/pdfbmp/extract_image.h"
#include "tools/pdfbmp/image_facts.h"
#include "tools/pdfbmp/input.h"
#include "tools/pdfbmp/names.h"
#include "tools/pdfbmp/ordered_jobs.h"
#include "tools/pdfbmp/output.h"

namespace {

class Extraction {
 public:
  Extraction(const Options& options, Messages& messages, Output& output)
      : options_(options), messages_(messages), output_(output) {}

  Outcome run() {
    for (const std::string& file : options_.files) {
      worst_ = worse(worst_, extract_file(file));
      messages_.end_file();
      if (worst_ == Outcome::no_output) return worst_;
    }
    // A stream of which nothing came stays empty.
    std::string error;
    if (prepared_ && !output_.finish(error)) return output_failed(error);
    return worst_;
  }

 private:
  struct Counts {
    std::size_t written = 0, failed = 0, passed_over = 0;
  };

  bool several() const { return options_.files.size() > 1; }
  bool wants_lines() const { return options_.json || options_.output == "-"; }

  Outcome output_failed(const std::string& error) {
    messages_.error("", error);
    return Outcome::no_output;
  }

  Outcome extract_file(const std::string& file) {
    const std::string folder = several() ? folders_.take(file) + "/" : "";
    Outcome outcome = Outcome::ok;
    std::string error;
    const std::unique_ptr<CPDFDocument> document = open_input(file, options_, outcome, error);
    Counts counts;
    if (document == nullptr) {
      messages_.error(file, error);
    } else {
      std::string output_error;
      if (!prepared_ && !output_.prepare(output_error)) return output_failed(output_error);
      prepared_ = true;
      use_output_intent(*document, file, options_, messages_);
      outcome = extract_images(*document, file, folder, counts);
      if (outcome == Outcome::no_output) return outcome;
    }
    if (several() && wants_lines()) {
      const std::string line = summary_line(file, counts.written + counts.failed, counts.failed,
                                            document == nullptr ? &error : nullptr);
      std::string output_error;
      if (!output_.add_line(line, output_error)) return output_failed(output_error);
    }
    if (document != nullptr) tell_counts(file, counts);
    return outcome;
  }

  Outcome extract_images(CPDFDocument& document, const std::string& file, const std::string& folder,
                         Counts& counts) {
    const ChosenImages chosen = choose_images(document, file, options_, messages_);
    const std::vector<CPDFFoundImage>& images = chosen.images;
    Outcome outcome = chosen.outcome;

    const auto work = [&](std::size_t i) {
      const std::string name = folder + image_file_name(images[i], chosen.numbers[i]);
      return extract_image(document, images[i], name, options_, output_);
    };
    const auto emit = [&](std::size_t i, ExtractedImage image) {
      outcome = worse(outcome, keep(file, images[i], chosen.numbers[i], image, counts));
      messages_.progress(i + 1, images.size());
      return outcome != Outcome::no_output;
    };
    messages_.progress(0, images.size());
    OrderedJobs(images.size(), thread_count(options_.jobs), work, emit).run();
    return outcome;
  }

  // Gives one image's file its place and says what became of it.
  Outcome keep(const std::string& file, const CPDFFoundImage& found, int number,
               ExtractedImage& image, Counts& counts) {
    if (image.passed_over) {
      ++counts.passed_over;
      return Outcome::ok;
    }
    std::string output_error = image.error;
    if (image.output_failed) return output_failed(output_error);
    if (image.file != nullptr) {
      if (!image.file->commit(output_error)) return output_failed(output_error);
      image.file.reset();
      ++counts.written;
    } else {
      image.name.clear();
      ++counts.failed;
    }
    if (!image.complete) {
      const char* what = image.name.empty() ? "" : "incomplete: ";
      messages_.error(file, place_of(found, number) + ": " + what + image.error);
    }
    if (wants_lines() && !output_.add_line(line_of(file, found, image), output_error)) {
      return output_failed(output_error);
    }
    return image.complete ? Outcome::ok : Outcome::incomplete;
  }

  std::string line_of(const std::string& file, const CPDFFoundImage& found,
                      const ExtractedImage& image) const {
    JsonObject json;
    if (several()) json.add("pdf", file);
    add_facts(json, found);
    json.add_or_null("file", image.name);
    if (image.width == 0) {
      json.add_null("bitmap");
    } else {
      json.add_array("bitmap", std::array{image.width, image.height});
    }
    json.add("complete", image.complete);
    if (image.passed_on) {
      json.add_null("rows");
    } else {
      json.add("rows", image.rows);
    }
    json.add_or_null("error", image.error);
    return json.text() + "\n";
  }

  void tell_counts(const std::string& file, const Counts& counts) {
    std::string text =
        std::to_string(counts.written) + (counts.written == 1 ? " image" : " images") + " written";
    if (counts.failed > 0) text += ", " + std::to_string(counts.failed) + " failed";
    if (counts.passed_over > 0) {
      text += ", " + std::to_string(counts.passed_over) + " passed over";
    }
    messages_.note(file, text);
  }

  const Options& options_;
  Messages& messages_;
  Output& output_;
  FolderNames folders_;
  bool prepared_ = false;
  Outcome worst_ = Outcome::ok;
};

}  // namespace

Outcome run_extract(const Options& options, Messages& messages) {
  std::string error;
  if (!use_cmyk_profile(options, error)) {
    messages.error(options.cmyk_profile, error);
    return Outcome::usage;
  }
  const std::unique_ptr<Output> output =
      options.output == "-" ? make_tar_output() : make_folder_output(options.output);
  return Extraction(options, messages, *output).run();
}
