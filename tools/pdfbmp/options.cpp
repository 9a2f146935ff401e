// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <utility>

#include "pdf/cs/rows.h"

namespace {

constexpr const char* exit_codes = R"(Exit codes:
  0  every image was written whole
  1  some image could not be decoded, or only partly (each is named on standard
     error; what could be decoded is written)
  2  the call is wrong
  3  a file cannot be read as a PDF
  4  a file needs a password, or another one
  5  the output cannot be written)";

constexpr const char* main_examples = R"(Examples:
  pdfbmp list report.pdf
  pdfbmp extract report.pdf -o pictures
See 'pdfbmp list --help' and 'pdfbmp extract --help' for more.

)";

constexpr const char* list_examples = R"(Examples:
  pdfbmp list report.pdf
  pdfbmp list -f 2 -l 5 report.pdf
  pdfbmp list --json *.pdf | jq 'select(.width > 1000)'

)";

constexpr const char* extract_examples =
    R"(Files are named PPPP-NNN-oOBJ.png by page, running number on it and object
number (PPPP-NNN-inline.png for inline images). With several input files each
has a folder of its own name. An image on many pages is written once.

Kinds:
  auto   what a person would expect to see: masks become transparency, a stencil
         is black
  color  the colours alone
  gray   the same in gray
  mask   the opacity of stencils, masks and soft masks
  mono   pictures of one component as a palette
Of images that have no bitmap of the wanted kind no file is written.

Examples:
  pdfbmp extract report.pdf -o pictures
  pdfbmp extract --format pnm --kind gray scans/*.pdf -o pages
  curl -s https://example.org/report.pdf | pdfbmp extract - -o - | tar xf -

)";

void add_common_options(CLI::App& app, Options& options) {
  // Without the ranges in the help text: nobody asks for them.
  const CLI::Validator page = CLI::Range(1, std::numeric_limits<int>::max()).description("");
  const CLI::Validator count =
      CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description("");
  app.add_option("FILE", options.files, "PDF files; - is standard input")
      ->required()
      ->type_name("");
  app.add_option("-f,--first", options.first_page, "First page")->check(page)->type_name("PAGE");
  app.add_option("-l,--last", options.last_page, "Last page")->check(page)->type_name("PAGE");
  app.add_option("--password", options.password, "User or owner password of the files")
      ->type_name("TEXT");
  app.add_option("--max-pixels", options.max_pixels,
                 "Refuse images of more pixels (" + std::to_string(options.max_pixels) + ")")
      ->check(count)
      ->type_name("N");
  app.add_flag("-q,--quiet", options.quiet, "No progress and no warnings, errors only");
}

// An option that takes one of a few names.
template <class Value>
void add_choice(CLI::App& app, const std::string& name, const std::string& description,
                std::vector<std::pair<std::string, Value>> choices, Value& value) {
  std::vector<std::string> names;
  for (const auto& choice : choices) names.push_back(choice.first);
  const auto set = [choices, &value](const std::string& text) {
    for (const auto& choice : choices) {
      if (choice.first == text) value = choice.second;
    }
  };
  app.add_option_function<std::string>(name, set, description)
      ->check(CLI::IsMember(names))
      ->type_name("NAME");
}

CLI::App* add_list(CLI::App& app, Options& options) {
  CLI::App* list = app.add_subcommand("list", "Show the images of PDF files and their properties");
  add_common_options(*list, options);
  list->add_flag("--json", options.json, "One JSON object a line instead of a table");
  list->footer(std::string(list_examples) + exit_codes);
  return list;
}

CLI::App* add_extract(CLI::App& app, Options& options) {
  CLI::App* extract = app.add_subcommand("extract", "Write the images of PDF files as bitmaps");
  add_common_options(*extract, options);
  extract
      ->add_option("-o,--output", options.output,
                   "Folder for the files, made where it is missing;\n"
                   "- writes a tar stream to standard output, with the\n"
                   "JSON lines as its last member, index.jsonl")
      ->required()
      ->type_name("DIR");
  add_choice<FileFormat>(
      *extract, "--format", "Format of the files (png)",
      {{"png", FileFormat::png}, {"pam", FileFormat::pam}, {"pnm", FileFormat::pnm}},
      options.format);
  add_choice<PictureKind>(*extract, "--kind", "Which bitmap of each image, see below (auto)",
                          {{"auto", PictureKind::automatic},
                           {"color", PictureKind::color},
                           {"gray", PictureKind::gray},
                           {"mask", PictureKind::mask},
                           {"mono", PictureKind::mono}},
                          options.kind);
  extract
      ->add_option("--cmyk-profile", options.cmyk_profile,
                   "ICC profile that DeviceCMYK is converted by;\n"
                   "output-intent takes the one in each document")
      ->type_name("FILE");
  extract->add_option("-j,--jobs", options.jobs, "Images decoded at a time (one a processor)")
      ->check(CLI::Range(0, 1024).description(""))
      ->type_name("N");
  extract->add_flag("--json", options.json,
                    "One JSON object a line on standard output for every\nimage");
  extract->footer(std::string(extract_examples) + exit_codes);
  return extract;
}

std::string version_text() {
  return "pdfbmp " PDFBMP_VERSION "\nCPU path: " + std::string(cpu_name(rows().cpu));
}

Outcome wrong_call(const char* reason, const CLI::App* list, const CLI::App* extract) {
  const char* command = list->parsed() ? "list " : extract->parsed() ? "extract " : "";
  std::cerr << "pdfbmp: " << reason << "\nTry 'pdfbmp " << command << "--help'.\n";
  return Outcome::usage;
}

}  // namespace

std::optional<Outcome> parse_options(int argc, const char* const* argv, Options& options) {
  CLI::App app("Turns the images of PDF files into bitmaps.", "pdfbmp");
  app.set_version_flag("--version", version_text, "Show the version and the CPU path in use");
  app.require_subcommand(1);
  app.get_formatter()->column_width(27);
  app.footer(std::string(main_examples) + exit_codes);
  const CLI::App* list = add_list(app, options);
  const CLI::App* extract = add_extract(app, options);
  try {
    app.parse(argc, argv);
    if (options.first_page > options.last_page) {
      throw CLI::ValidationError("-f", "the first page comes after the last one");
    }
  } catch (const CLI::Success& done) {
    app.exit(done);
    return Outcome::ok;
  } catch (const CLI::RequiredError& error) {
    const bool command_is_missing = app.get_subcommands().empty();
    return wrong_call(command_is_missing ? "the first word must be list or extract" : error.what(),
                      list, extract);
  } catch (const CLI::Error& error) {
    return wrong_call(error.what(), list, extract);
  }
  options.command = list->parsed() ? Command::list : Command::extract;
  return std::nullopt;
}
