# Turns text files into string constants of a header, when configuring, so that tools which read the
# sources find it before anything is built. A file's first line is its copyright line and stays behind.

#   pdfbmp_embed_text(HEADER FILE...)
# makes HEADER with a constant for each FILE, "card.html" becoming gallery_parts::card_html.
function(pdfbmp_embed_text header)
  set(constants "")
  foreach(file IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    file(READ "${file}" text)
    string(FIND "${text}" "\n" end)
    math(EXPR begin "${end} + 1")
    string(SUBSTRING "${text}" ${begin} -1 text)
    get_filename_component(name "${file}" NAME)
    string(MAKE_C_IDENTIFIER "${name}" name)
    string(APPEND constants
      "inline constexpr std::string_view ${name} = R\"EMBEDDED(${text})EMBEDDED\";\n")
  endforeach()
  get_filename_component(namespace "${header}" NAME_WE)
  set(content "#pragma once\n#include <string_view>\nnamespace ${namespace} {\n${constants}}\n")
  if(EXISTS "${header}")
    file(READ "${header}" old)
  endif()
  if(NOT "${old}" STREQUAL "${content}")
    file(WRITE "${header}" "${content}")
  endif()
endfunction()
