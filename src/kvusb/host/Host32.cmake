# kvusb-host32.exe beside a 64-bit build for Windows, where a compiler for 32 bits is at hand.
include(ExternalProject)

find_program(QUILLON_MINGW32 i686-w64-mingw32-g++-posix)
if(MSVC)
  set(how CMAKE_GENERATOR ${CMAKE_GENERATOR} CMAKE_GENERATOR_PLATFORM Win32)
elseif(QUILLON_MINGW32)
  set(how CMAKE_ARGS -DCMAKE_TOOLCHAIN_FILE=${PROJECT_SOURCE_DIR}/cmake/mingw32.cmake)
else()
  message(STATUS "No kvusb-host32.exe: it needs g++-mingw-w64-i686-posix")
  return()
endif()

ExternalProject_Add(kvusb-host32
  SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR}/x86
  BINARY_DIR ${CMAKE_CURRENT_BINARY_DIR}/x86
  ${how}
  CMAKE_CACHE_ARGS
    -DCMAKE_BUILD_TYPE:STRING=Release
    -DCMAKE_CXX_COMPILER_LAUNCHER:STRING=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_RUNTIME_OUTPUT_DIRECTORY:PATH=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
  INSTALL_COMMAND ""
  BUILD_ALWAYS ON)
add_dependencies(kvusb-host kvusb-host32)
