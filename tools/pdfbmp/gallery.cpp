// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/gallery.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "pdf/doc/file_sink.h"
#include "tools/pdfbmp/chosen_images.h"
#include "tools/pdfbmp/cmyk_profile.h"
#include "tools/pdfbmp/gallery_card.h"
#include "tools/pdfbmp/gallery_parts.h"
#include "tools/pdfbmp/html.h"
#include "tools/pdfbmp/image_facts.h"
#include "tools/pdfbmp/input.h"
#include "tools/pdfbmp/ordered_jobs.h"

namespace {

// The page on its way to a file that appears when it is whole, or to standard output.
class PageOutput {
 public:
  explicit PageOutput(const std::string& path) : name_(path == "-" ? "standard output" : path) {
    if (path != "-") file_.emplace(path);
  }

  bool write(std::string_view text) {
    return file_ ? file_->write(text.data(), text.size()) : out_.write(text.data(), text.size());
  }
  bool commit() { return !file_ || file_->commit(); }
  std::string error() const { return name_ + ": " + (file_ ? file_->error() : out_.error()); }

 private:
  std::string name_;
  std::optional<CPDFFileSink> file_;
  CPDFDescriptorSink out_{STDOUT_FILENO};
};

std::string count_of(std::size_t n, const char* one) {
  return std::to_string(n) + " " + one + (n == 1 ? "" : "s");
}

class Gallery {
 public:
  Gallery(const Options& options, Messages& messages)
      : options_(options), messages_(messages), file_(options.files[0]), page_(options.output) {}

  Outcome run(CPDFDocument& document) {
    const ChosenImages chosen = choose_images(document, file_, options_, messages_);
    const std::size_t count = chosen.images.size();
    constexpr std::string_view html = gallery_parts::page_html;
    constexpr std::size_t cards = html.find("{{cards}}");
    static_assert(cards != html.npos);
    bool written = page_.write(filled(html.substr(0, cards), document, count));
    written = written && write_cards(document, chosen) &&
              page_.write(filled(html.substr(cards), document, count)) && page_.commit();
    if (!written) {
      messages_.error("", page_.error());
      return Outcome::no_output;
    }
    messages_.note(file_, count_of(count, "image") + " shown" +
                              (problems_ > 0 ? ", " + count_of(problems_, "problem") : ""));
    return worse(chosen.outcome, problems_ > 0 ? Outcome::incomplete : Outcome::ok);
  }

 private:
  // A piece of the page; what became of the images is known for the one behind them.
  std::string filled(std::string_view html, CPDFDocument& document, std::size_t images) const {
    const std::string name =
        file_ == "-" ? "standard input" : std::filesystem::path(file_).filename().string();
    const std::string outcome =
        problems_ == 0 ? "All images were decoded."
                       : count_of(problems_, "image") + " could not be decoded, or only partly.";
    const std::string summary = count_of(images, "image") + ", " +
                                count_of(static_cast<std::size_t>(document.page_count()), "page");
    return fill_html(html, {{"title", html_text(name)},
                            {"summary", summary},
                            {"outcome", images == 0 ? "There are no images." : outcome},
                            {"version", PDFBMP_VERSION},
                            {"style", gallery_parts::page_css},
                            {"script", gallery_parts::page_js}});
  }

  bool write_cards(CPDFDocument& document, const ChosenImages& chosen) {
    const std::size_t count = chosen.images.size();
    bool written = true;
    const auto work = [&](std::size_t i) {
      return make_gallery_card(document, chosen, i, options_);
    };
    const auto emit = [&](std::size_t i, const GalleryCard& card) {
      if (!card.problem.empty()) tell_problem(place_of(chosen.images[i], chosen.numbers[i]), card);
      written = page_.write(card.html);
      messages_.progress(i + 1, count);
      return written;
    };
    messages_.progress(0, count);
    OrderedJobs(count, thread_count(options_.jobs), work, emit).run();
    return written;
  }

  void tell_problem(const std::string& place, const GalleryCard& card) {
    ++problems_;
    const char* what = card.has_picture ? ": incomplete: " : ": ";
    messages_.error(file_, place + what + card.problem);
  }

  const Options& options_;
  Messages& messages_;
  const std::string& file_;
  PageOutput page_;
  std::size_t problems_ = 0;
};

}  // namespace

Outcome run_gallery(const Options& options, Messages& messages) {
  std::string error;
  if (!use_cmyk_profile(options, error)) {
    messages.error(options.cmyk_profile, error);
    return Outcome::usage;
  }
  const std::string& file = options.files[0];
  Outcome outcome = Outcome::ok;
  const std::unique_ptr<CPDFDocument> document = open_input(file, options, outcome, error);
  if (document == nullptr) {
    messages.error(file, error);
    return outcome;
  }
  use_output_intent(*document, file, options, messages);
  return Gallery(options, messages).run(*document);
}
