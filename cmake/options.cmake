option(PDFBMP_BUILD_DOCUMENT "Build the document library and the tool" ON)
option(PDFBMP_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(PDFBMP_BUILD_BENCH "Build the benchmarks" OFF)
option(PDFBMP_WERROR "Treat warnings as errors" OFF)
set(PDFBMP_SANITIZE "" CACHE STRING "Sanitizers, comma-separated (address,undefined or thread)")
option(PDFBMP_COVERAGE "Count which lines run (g++)" OFF)
option(PDFBMP_LIBFUZZER "Link the fuzz targets with libFuzzer instead of a program that replays files" OFF)
option(PDFBMP_INSTALL "Make install rules and packages" ${PROJECT_IS_TOP_LEVEL})
option(BUILD_SHARED_LIBS "Make the document library shared, the image library inside" OFF)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# Flags that every target of the project is compiled with, and that are not handed on to users.
add_library(pdfbmp_build_flags INTERFACE)
target_compile_features(pdfbmp_build_flags INTERFACE cxx_std_20)
target_compile_options(pdfbmp_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Wcast-qual $<$<BOOL:${PDFBMP_WERROR}>:-Werror>)
# g++ 12 reports overlaps inside std::string's own functions that cannot happen (its bug 105651).
target_compile_options(pdfbmp_build_flags INTERFACE
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
if(PDFBMP_SANITIZE)
  target_compile_options(pdfbmp_build_flags INTERFACE
    -fsanitize=${PDFBMP_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(pdfbmp_build_flags INTERFACE -fsanitize=${PDFBMP_SANITIZE})
endif()
if(PDFBMP_COVERAGE)
  target_compile_options(pdfbmp_build_flags INTERFACE --coverage)
  target_link_options(pdfbmp_build_flags INTERFACE --coverage)
endif()
if(PDFBMP_LIBFUZZER)
  target_compile_options(pdfbmp_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Callers write include paths from the root of this tree, and the same below the installed folder.
set(PDFBMP_INCLUDES
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/pdfbmp>)
set(PDFBMP_LIBRARY_PROPERTIES
  POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
