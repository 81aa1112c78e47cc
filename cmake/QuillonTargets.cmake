# One target per folder. Sources are listed, never globbed; headers belong to the list. src/, lab/ and
# tests/ each set QUILLON_ROOTS, the folders below which their targets look for headers.
#
#   quillon_library(<name> [QT] SOURCES <file>... [LINK <target>...])
#   quillon_test(<name> [QT] [KERNEL] SOURCES <file>... [LINK <target>...])

include_guard(GLOBAL)
include(GoogleTest)
include(QuillonHardening)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

add_library(quillon-options INTERFACE)
target_include_directories(quillon-options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(MSVC)
  target_compile_options(quillon-options INTERFACE
    /W4 /utf-8 /permissive- $<$<BOOL:${QUILLON_WERROR}>:/WX>)
  target_compile_definitions(quillon-options INTERFACE NOMINMAX)
else()
  target_compile_options(quillon-options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${QUILLON_WERROR}>:-Werror>)
endif()
quillon_harden(quillon-options)

# Half of the time of a build goes into the same headers of Qt and of the test library. Each kind of
# target shares one precompiled set.
option(QUILLON_PCH "Share precompiled headers" OFF)

function(quillon_precompile target kind)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  if(NOT QUILLON_PCH)
    return()
  endif()
  set(carrier quillon-pch-${kind})
  if(NOT TARGET ${carrier})
    file(WRITE ${PROJECT_BINARY_DIR}/${carrier}.cpp "int main() {}\n")
    # A program, because libraries and programs are compiled differently where Qt does not say how.
    add_executable(${carrier} ${PROJECT_BINARY_DIR}/${carrier}.cpp)
    target_link_libraries(${carrier} PRIVATE ${ARG_LINK} quillon-options)
    target_precompile_headers(${carrier} PRIVATE ${ARG_HEADERS})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${carrier})
endfunction()

function(quillon_library name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
  add_library(quillon-${name} STATIC ${ARG_SOURCES})
  target_link_libraries(quillon-${name} PUBLIC ${ARG_LINK} PRIVATE quillon-options)
  target_include_directories(quillon-${name} PUBLIC ${QUILLON_ROOTS})
  if(ARG_QT)
    set_target_properties(quillon-${name} PROPERTIES AUTOMOC ON AUTORCC ON)
    target_link_libraries(quillon-${name} PUBLIC Qt6::Widgets)
    quillon_precompile(quillon-${name} qt HEADERS <QtWidgets> LINK Qt6::Widgets)
  endif()
endfunction()

# Programs over an emulated kernel need umockdev's library before all others but a sanitizer's.
set(QUILLON_EMULATION umockdev-wrapper)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=address")
  execute_process(
    COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
    OUTPUT_VARIABLE asan OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(QUILLON_EMULATION env LD_PRELOAD=${asan}:libumockdev-preload.so.0)
endif()

# Every test case is a ctest entry and so a process of its own, with a time limit; under Wine every
# program is.
function(quillon_test name)
  cmake_parse_arguments(ARG "QT;KERNEL" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_KERNEL)
    target_link_libraries(${name} PRIVATE quillon-kernel)
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${QUILLON_EMULATION}")
  endif()
  target_include_directories(${name} PRIVATE ${QUILLON_ROOTS})
  target_link_libraries(${name} PRIVATE quillon-options ${ARG_LINK} GTest::gmock)
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE quillon-testing-qt)
    quillon_precompile(${name} qt-test HEADERS <QtWidgets> <gmock/gmock.h>
      LINK Qt6::Widgets GTest::gmock)
  else()
    target_link_libraries(${name} PRIVATE quillon-testing)
    quillon_precompile(${name} test HEADERS <gmock/gmock.h> LINK GTest::gmock)
  endif()
  if(CMAKE_CROSSCOMPILING)
    # Under Wine a process takes longer to start than most tests take.
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  else()
    gtest_discover_tests(${name}
      DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 60)
  endif()
endfunction()
