// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>
#include <memory>
#include <utility>

#include "pdf/cs/rows.h"
#include "tools/pdfbmp/command_help.h"

namespace {

constexpr const char* common_group = "Options of every command";

// The number that is all of the text, from 0.
template <class Number = int>
std::optional<Number> number_of(const std::string& text) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool good = error == std::errc() && end == text.data() + text.size() && number >= 0;
  return good ? std::optional<Number>(number) : std::nullopt;
}

// "100x50", or "100" for both.
void set_min_size(const std::string& text, Options& options) {
  const std::size_t x = text.find('x');
  const auto width = number_of(text.substr(0, x));
  const auto height = x == std::string::npos ? width : number_of(text.substr(x + 1));
  if (!width || !height) throw CLI::ValidationError("--min-size", text + " is no size");
  options.min_width = *width;
  options.min_height = *height;
}

void set_objects(const std::string& text, Options& options) {
  options.objects.clear();
  for (const std::string& item : CLI::detail::split(text, ',')) {
    const auto number = number_of(item);
    if (!number) throw CLI::ValidationError("--objects", item + " is no object number");
    options.objects.push_back(*number);
  }
}

struct LimitName {
  const char* name;
  std::int64_t CPDFFilterLimits::*wide;
  int CPDFFilterLimits::*narrow;
  std::int64_t Options::*own = nullptr;
};

constexpr LimitName limit_names[] = {
    {"filters", nullptr, &CPDFFilterLimits::max_filters},
    {"scans", nullptr, &CPDFFilterLimits::max_scans},
    {"scan-blocks", &CPDFFilterLimits::max_scan_blocks, nullptr},
    {"row-bytes", &CPDFFilterLimits::max_row_bytes, nullptr},
    {"codec-bytes", &CPDFFilterLimits::max_codec_bytes, nullptr},
    {"codec-seconds", nullptr, &CPDFFilterLimits::max_codec_seconds},
    {"stage-bytes", &CPDFFilterLimits::max_stage_bytes, nullptr},
    {"expansion", nullptr, &CPDFFilterLimits::max_expansion},
    {"content-bytes", &CPDFFilterLimits::max_content_bytes, nullptr},
    {"images", nullptr, &CPDFFilterLimits::max_images},
    {"nesting", nullptr, &CPDFFilterLimits::max_nesting},
    {"image-seconds", nullptr, &CPDFFilterLimits::max_image_seconds},
    {"search-seconds", nullptr, &CPDFFilterLimits::max_search_seconds},
    {"bitmap-bytes", nullptr, nullptr, &Options::max_bitmap_bytes},
    {"blank-pixels", nullptr, nullptr, &Options::max_blank_pixels},
};

std::string all_limit_names() {
  std::string text;
  for (const LimitName& limit : limit_names)
    text += (text.empty() ? "" : ", ") + std::string(limit.name);
  return text;
}

template <class Number>
bool set_number(const std::string& text, Number& out) {
  const auto number = number_of<Number>(text);
  if (number) out = *number;
  return number.has_value();
}

// "scans=200".
void set_limit(const std::string& text, Options& options) {
  const std::size_t equals = std::min(text.find('='), text.size());
  const std::string name = text.substr(0, equals);
  const std::string value = text.substr(std::min(equals + 1, text.size()));
  for (const LimitName& limit : limit_names) {
    if (name != limit.name) continue;
    const bool is_set = limit.wide != nullptr     ? set_number(value, options.limits.*limit.wide)
                        : limit.narrow != nullptr ? set_number(value, options.limits.*limit.narrow)
                                                  : set_number(value, options.*limit.own);
    if (is_set) return;
  }
  throw CLI::ValidationError("--limit", text + " sets no limit");
}

void add_common_options(CLI::App& app, Options& options) {
  // Without the ranges in the help text: nobody asks for them.
  const CLI::Validator page = CLI::Range(1, std::numeric_limits<int>::max()).description("");
  const CLI::Validator count =
      CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description("");
  app.add_option("-f,--first", options.first_page, "First page")->check(page)->type_name("PAGE");
  app.add_option("-l,--last", options.last_page, "Last page")->check(page)->type_name("PAGE");
  app.add_option_function<std::string>(
         "--objects", [&options](const std::string& text) { set_objects(text, options); },
         "Only images with these object numbers, between commas; 0 stands for all inline images")
      ->type_name("NUMBERS");
  app.add_option_function<std::string>(
         "--min-size", [&options](const std::string& text) { set_min_size(text, options); },
         "Leave out images that are narrower or lower than this; N is NxN")
      ->type_name("WxH");
  app.add_option("--password", options.password, "User or owner password of the files")
      ->type_name("TEXT");
  app.add_option("--max-pixels", options.limits.max_pixels,
                 "Refuse images of more pixels (" + std::to_string(options.limits.max_pixels) + ")")
      ->check(count)
      ->type_name("N");
  app.add_option("--max-memory", options.max_memory,
                 "Take no more bytes of memory (" + std::to_string(options.max_memory) + ")")
      ->check(count)
      ->type_name("N");
  app.add_option_function<std::vector<std::string>>(
         "--limit",
         [&options](const std::vector<std::string>& texts) {
           for (const std::string& text : texts) set_limit(text, options);
         },
         "Another limit, one of " + all_limit_names() + "; may be given several times")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->type_name("NAME=N");
  app.add_flag("-q,--quiet", options.quiet, "No progress and no warnings, errors only");
  for (CLI::Option* option : app.get_options()) option->group(common_group);
}

void add_files(CLI::App& app, Options& options) {
  app.add_option("FILE", options.files, "PDF files; - is standard input")->required();
}

void add_decoding_options(CLI::App& app, Options& options) {
  app.add_option("--cmyk-profile", options.cmyk_profile,
                 "ICC profile that DeviceCMYK is converted by; output-intent takes the one in "
                 "each document")
      ->type_name("FILE");
  app.add_option("-j,--jobs", options.jobs, "Images decoded at a time (one a processor)")
      ->check(CLI::Range(0, 1024).description(""))
      ->type_name("N");
}

// An option that takes one of a few words.
template <class Value>
void add_choice(CLI::App& app, const std::string& name, const std::string& description,
                std::vector<std::pair<std::string, Value>> choices, Value& value) {
  std::vector<std::string> words;
  std::string shown;
  for (const auto& choice : choices) {
    words.push_back(choice.first);
    shown += (shown.empty() ? "" : "|") + choice.first;
  }
  const auto set = [choices, &value](const std::string& text) {
    for (const auto& choice : choices) {
      if (choice.first == text) value = choice.second;
    }
  };
  app.add_option_function<std::string>(name, set, description)
      ->check(CLI::IsMember(words))
      ->type_name(shown);
}

void add_list(CLI::App& app, Options& options) {
  CLI::App* list = app.add_subcommand("list", "Shows the images of PDF files and their properties");
  add_files(*list, options);
  add_common_options(*list, options);
  list->add_flag("--json", options.json, "One JSON object a line instead of a table");
  list->callback([&options] { options.command = Command::list; });
}

void add_extract(CLI::App& app, Options& options) {
  CLI::App* extract = app.add_subcommand("extract", "Writes the images of PDF files as bitmaps");
  add_files(*extract, options);
  add_common_options(*extract, options);
  extract
      ->add_option("-o,--output", options.output,
                   "Folder for the files, made where it is missing; - writes a tar stream to "
                   "standard output, with the JSON lines as its last member, index.jsonl")
      ->required()
      ->type_name("DIR");
  add_choice<FileFormat>(*extract, "--format", "Format of the files, see below (png)",
                         {{"png", FileFormat::png},
                          {"pam", FileFormat::pam},
                          {"pnm", FileFormat::pnm},
                          {"native", FileFormat::native}},
                         options.format);
  add_choice<PictureKind>(*extract, "--kind", "Which bitmap of each image, see below (auto)",
                          {{"auto", PictureKind::automatic},
                           {"color", PictureKind::color},
                           {"gray", PictureKind::gray},
                           {"mask", PictureKind::mask},
                           {"mono", PictureKind::mono}},
                          options.kind);
  add_decoding_options(*extract, options);
  extract->add_flag("--json", options.json,
                    "One JSON object a line on standard output for every image");
  extract->callback([&options] {
    options.command = Command::extract;
    const bool as_it_is =
        options.kind == PictureKind::automatic || options.kind == PictureKind::mask;
    if (options.format == FileFormat::native && !as_it_is) {
      throw CLI::ValidationError("--format", "native is for --kind auto and mask");
    }
  });
}

void add_gallery(CLI::App& app, Options& options) {
  CLI::App* gallery =
      app.add_subcommand("gallery", "Shows the images of a PDF file on one HTML page");
  const auto set_file = [&options](const std::string& file) { options.files = {file}; };
  gallery->add_option_function<std::string>("FILE", set_file, "PDF file; - is standard input")
      ->required();
  add_common_options(*gallery, options);
  gallery->add_option("-o,--output", options.output, "The page; - is standard output")
      ->required()
      ->type_name("FILE");
  add_decoding_options(*gallery, options);
  gallery->callback([&options] { options.command = Command::gallery; });
}

OptionHelp help_of(const CLI::Option& option) {
  OptionHelp help;
  help.positional = option.get_positional();
  help.several = help.positional && option.get_expected_max() > 1;
  if (help.positional) help.names.push_back(option.get_name(true));
  for (const std::string& name : option.get_snames()) help.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) help.names.push_back("--" + name);
  // The type of a choice comes with its words once more.
  if (option.get_items_expected() > 0) help.value = option.get_type_name();
  help.value = help.value.substr(0, help.value.find(":{"));
  help.text = option.get_description();
  help.required = option.get_required();
  help.common = option.get_group() == common_group;
  return help;
}

CommandHelp help_of(const CLI::App& app) {
  CommandHelp help;
  if (app.get_parent() != nullptr) help.name = app.get_name();
  help.text = app.get_description();
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_group().empty()) help.options.push_back(help_of(*option));
  }
  // What every call needs stands first, what few need last.
  const auto rank = [](const OptionHelp& option) {
    return option.positional ? 0 : option.names[0] == "-h" ? 2 : 1;
  };
  std::stable_sort(help.options.begin(), help.options.end(),
                   [&](const OptionHelp& a, const OptionHelp& b) { return rank(a) < rank(b); });
  help.sections = help_sections(help.name);
  return help;
}

std::vector<CommandHelp> subcommands_of(const CLI::App& app) {
  std::vector<CommandHelp> help;
  for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) {
    help.push_back(help_of(*sub));
  }
  return help;
}

class HelpFormatter final : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
    return help_page(help_of(*app), subcommands_of(*app));
  }
};

// A file that installing the program needs.
std::string generated(const CLI::App& app, const std::string& what) {
  std::vector<CommandHelp> commands = subcommands_of(app);
  commands.insert(commands.begin(), help_of(app));
  if (what == "man") return manual_page(commands, PDFBMP_VERSION);
  return what == "bash" ? bash_completion(commands) : zsh_completion(commands);
}

void add_generate(CLI::App& app) {
  const auto generate = [&app](const std::string& what) {
    std::cout << generated(app, what) << std::flush;
    throw CLI::Success();
  };
  app.add_option_function<std::string>("--generate", generate)
      ->check(CLI::IsMember({"man", "bash", "zsh"}))
      ->group("");
}

std::string version_text() {
  return "pdfbmp " PDFBMP_VERSION "\nCPU path: " + std::string(cpu_name(rows().cpu));
}

Outcome wrong_call(const CLI::App& app, const CLI::Error& error) {
  const std::vector<CLI::App*> subs = app.get_subcommands();
  std::string reason = error.what(), command;
  if (!subs.empty()) {
    command = subs[0]->get_name() + " ";
  } else if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    reason.clear();
    for (const CommandHelp& sub : subcommands_of(app)) {
      reason += (reason.empty() ? "the first word must be " : " or ") + sub.name;
    }
  }
  std::cerr << "pdfbmp: " << reason << "\nTry 'pdfbmp " << command << "--help'.\n";
  return Outcome::usage;
}

}  // namespace

std::optional<Outcome> parse_options(int argc, const char* const* argv, Options& options) {
  CLI::App app("Turns the images of PDF files into bitmaps", "pdfbmp");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("-h,--help", "Show this text");
  app.set_version_flag("--version", version_text, "Show the version and the CPU path in use");
  app.require_subcommand(1);
  add_list(app, options);
  add_extract(app, options);
  add_gallery(app, options);
  add_generate(app);
  try {
    app.parse(argc, argv);
    if (options.first_page > options.last_page) {
      throw CLI::ValidationError("-f", "the first page comes after the last one");
    }
  } catch (const CLI::Success& done) {
    app.exit(done);
    return Outcome::ok;
  } catch (const CLI::Error& error) {
    return wrong_call(app, error);
  }
  return std::nullopt;
}
