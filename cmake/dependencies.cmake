include(${CMAKE_CURRENT_LIST_DIR}/find_dependencies.cmake)
if(pdfbmp_missing)
  message(FATAL_ERROR "Not found by pkg-config: ${pdfbmp_missing}")
endif()

add_library(pdfbmp_dependencies INTERFACE)
target_link_libraries(pdfbmp_dependencies INTERFACE
  PkgConfig::QPDF PkgConfig::ISAL PkgConfig::JPEG PkgConfig::OPENJP2 PkgConfig::LCMS2
  Threads::Threads)
# qpdf asks how far its users have come from its old smart pointer: all the way.
target_compile_definitions(pdfbmp_dependencies INTERFACE POINTERHOLDER_TRANSITION=4)

# pdfbmp_over_qpdf(TARGET source...): names the sources of a target that include qpdf's headers. One
# of qpdf 11.3's classes holds a vector of a type that is not complete yet. In C++20, where vectors
# are constexpr, clang will not have that, so these few sources keep to C++17 there.
function(pdfbmp_over_qpdf target)
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES
    COMPILE_OPTIONS $<$<CXX_COMPILER_ID:Clang>:-std=c++17>)
endfunction()
