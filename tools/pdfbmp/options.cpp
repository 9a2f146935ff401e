// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>

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
    R"(Files are named PPPP-NNN-oOBJ.png by page, running number on it and object number
(PPPP-NNN-inline.png for inline images). With several input files each has a
folder of its own name. An image that stands on many pages is written once.

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
  app.add_option("FILE", options.files, "PDF files; - is standard input")->required();
  app.add_option("-f,--first", options.first_page, "First page")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()))
      ->type_name("PAGE");
  app.add_option("-l,--last", options.last_page, "Last page")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()))
      ->type_name("PAGE");
  app.add_option("--password", options.password, "User or owner password of the files")
      ->type_name("TEXT");
  app.add_option(
         "--max-pixels", options.max_pixels,
         "Refuse images of more pixels (default " + std::to_string(options.max_pixels) + ")")
      ->check(CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N");
  app.add_flag("-q,--quiet", options.quiet, "No progress and no warnings, errors only");
}

CLI::App* add_list(CLI::App& app, Options& options) {
  CLI::App* list = app.add_subcommand("list", "Show the images of PDF files and their properties");
  add_common_options(*list, options);
  list->add_flag("--json", options.json, "One JSON object a line instead of a table");
  list->footer(std::string(list_examples) + exit_codes);
  return list;
}

CLI::App* add_extract(CLI::App& app, Options& options) {
  static const std::map<std::string, FileFormat> formats = {
      {"png", FileFormat::png}, {"pam", FileFormat::pam}, {"pnm", FileFormat::pnm}};
  static const std::map<std::string, PictureKind> kinds = {{"auto", PictureKind::automatic},
                                                           {"color", PictureKind::color},
                                                           {"gray", PictureKind::gray},
                                                           {"mask", PictureKind::mask},
                                                           {"mono", PictureKind::mono}};
  CLI::App* extract = app.add_subcommand("extract", "Write the images of PDF files as bitmaps");
  add_common_options(*extract, options);
  extract
      ->add_option("-o,--output", options.output,
                   "Folder for the files, made where it is missing; - writes a tar stream to "
                   "standard output, with the JSON lines as its last member")
      ->required()
      ->type_name("DIR");
  extract->add_option("--format", options.format, "png (default), pam or pnm")
      ->transform(CLI::Transformer(formats))
      ->type_name("FORMAT");
  extract->add_option("--kind", options.kind, "auto (default), color, gray, mask or mono")
      ->transform(CLI::Transformer(kinds))
      ->type_name("KIND");
  extract
      ->add_option("-j,--jobs", options.jobs,
                   "Images decoded at a time (default: the number of processors)")
      ->check(CLI::Range(0, 1024))
      ->type_name("N");
  extract->add_flag("--json", options.json,
                    "One JSON object a line on standard output for every image");
  extract->footer(std::string(extract_examples) + exit_codes);
  return extract;
}

std::string version_text() {
  return "pdfbmp " PDFBMP_VERSION "\nCPU path: " + std::string(cpu_name(rows().cpu));
}

}  // namespace

std::optional<Outcome> parse_options(int argc, const char* const* argv, Options& options) {
  CLI::App app("Turns the images of PDF files into bitmaps.", "pdfbmp");
  app.set_version_flag("--version", version_text, "Show the version and the CPU path in use");
  app.require_subcommand(1);
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
  } catch (const CLI::Error& error) {
    const char* command = list->parsed() ? "list " : extract->parsed() ? "extract " : "";
    std::cerr << "pdfbmp: " << error.what() << "\nTry 'pdfbmp " << command << "--help'.\n";
    return Outcome::usage;
  }
  options.command = list->parsed() ? Command::list : Command::extract;
  return std::nullopt;
}
