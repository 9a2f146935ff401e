// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/command_help.h"

namespace {

const HelpSection exit_status = {"Exit status",
                                 "",
                                 {{"0", "every image was written whole"},
                                  {"1",
                                   "some image could not be decoded, or only partly (each is named "
                                   "on standard error; what could "
                                   "be decoded is written)"},
                                  {"2", "the call is wrong"},
                                  {"3", "a file cannot be read as a PDF"},
                                  {"4", "a file needs a password, or another one"},
                                  {"5", "the output cannot be written"}},
                                 {}};

std::vector<HelpSection> program_sections() {
  return {
      {"Description",
       "Finds every image of a PDF file (image XObjects, inline images, their masks) wherever its "
       "pages use it, and writes it as a bitmap. Pages are not rendered: text, paths and how a "
       "page "
       "blends its images together are left alone.",
       {},
       {}},
      {"Examples",
       "",
       {},
       {"pdfbmp list report.pdf", "pdfbmp extract report.pdf -o pictures",
        "pdfbmp gallery report.pdf -o report.html", "pdfbmp extract --help"}},
      {"Environment",
       "",
       {{"NO_COLOR", "where it is set and not empty, messages on a terminal have no colour"},
        {"TMPDIR", "folder of temporary files (standard input, tar members); /tmp without it"}},
       {}},
      exit_status,
  };
}

std::vector<HelpSection> list_sections() {
  return {
      {"Columns",
       "A line an image, in the order of the pages:",
       {{"page", "first page that uses the image"},
        {"num", "running number of the image on that page, as in names of files"},
        {"type", "image, stencil, mask, smask (the two right below their image) or inline"},
        {"width, height", "samples"},
        {"color", "colour space; - for a stencil"},
        {"comp, bpc", "components, bits a component"},
        {"enc", "filters, the first to decode first; raw where there is none"},
        {"interp", "whether the image asks for interpolation"},
        {"object", "object number; - for an inline image"},
        {"x-ppi, y-ppi", "samples an inch where the image is first painted; - where it never is"},
        {"size", "encoded bytes"}},
       {}},
      {"Examples",
       "",
       {},
       {"pdfbmp list report.pdf", "pdfbmp list -f 2 -l 5 --min-size 100 report.pdf",
        "pdfbmp list --json *.pdf | jq 'select(.width > 1000)'"}},
      exit_status,
  };
}

std::vector<HelpSection> extract_sections() {
  return {
      {"Files",
       "Files are named PPPP-NNN-oOBJ.png by page, running number on it and object number "
       "(PPPP-NNN-inline.png for inline images). With several input files each has a folder of its "
       "own name. An image on many pages is written once.",
       {},
       {}},
      {"Kinds",
       "Of images that have no bitmap of the wanted kind no file is written.",
       {{"auto",
         "what a person would expect to see: masks become transparency, a stencil is black"},
        {"color", "the colours alone"},
        {"gray", "the same in gray"},
        {"mask", "the opacity of stencils, masks and soft masks"},
        {"mono", "pictures of one component as a palette"}},
       {}},
      {"Formats",
       "Native files hold the encoded data byte for byte, which is not decoded and so not checked. "
       "They know nothing of what the PDF says besides: colour space, Decode, masks, colour keys. "
       "With --kind mask native writes masks and stencils, else everything but masks.",
       {{"png", "PNG"},
        {"pam", "PAM"},
        {"pnm", "PBM, PGM or PPM, and PAM where there is transparency"},
        {"native",
         "JPEG as .jpg, JPEG 2000 as .jp2 (.j2k for a bare codestream), JBIG2 as .jb2, CCITT fax "
         "as "
         ".tif; all others as png"}},
       {}},
      {"Examples",
       "",
       {},
       {"pdfbmp extract report.pdf -o pictures",
        "pdfbmp extract --format pnm --kind gray scans/*.pdf -o pages",
        "pdfbmp extract --format native --min-size 200x200 report.pdf -o photos",
        "curl -s https://example.org/report.pdf | pdfbmp extract - -o - | tar xf -"}},
      exit_status,
  };
}

std::vector<HelpSection> gallery_sections() {
  return {
      {"The page",
       "Shows every image as a thumbnail with its facts and with what went wrong. It is one file "
       "that loads nothing else, and reads without scripts too; with them it can be filtered and "
       "put in order.",
       {},
       {}},
      {"Examples",
       "",
       {},
       {"pdfbmp gallery report.pdf -o report.html",
        "pdfbmp gallery -f 10 -l 20 --min-size 50 scans.pdf -o scans.html"}},
      exit_status,
  };
}

}  // namespace

std::vector<HelpSection> help_sections(const std::string& command) {
  if (command == "list") return list_sections();
  if (command == "extract") return extract_sections();
  if (command == "gallery") return gallery_sections();
  return program_sections();
}
