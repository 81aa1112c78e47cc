# The libraries of a cross build. Those that are headers only, and the source of GoogleTest, are the
# same for every system and come from the machine that builds; they are looked at through a folder of
# links, because the rest of that machine's headers would confuse the compiler.

include_guard(GLOBAL)
set(QUILLON_HOST_HEADERS /usr/include CACHE PATH "Where CLI11, nlohmann-json and utfcpp are installed")
set(QUILLON_GOOGLETEST /usr/src/googletest CACHE PATH "GoogleTest's source")

set(headers ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${headers})
foreach(entry IN ITEMS CLI nlohmann utf8 utf8.h)
  if(NOT EXISTS ${QUILLON_HOST_HEADERS}/${entry})
    message(FATAL_ERROR "There is no ${entry} in ${QUILLON_HOST_HEADERS}")
  endif()
  file(CREATE_LINK ${QUILLON_HOST_HEADERS}/${entry} ${headers}/${entry} SYMBOLIC)
endforeach()

foreach(library IN ITEMS CLI11::CLI11 nlohmann_json::nlohmann_json utf8cpp::utf8cpp)
  add_library(${library} INTERFACE IMPORTED GLOBAL)
  set_target_properties(${library} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${headers})
endforeach()

if(NOT EXISTS ${QUILLON_GOOGLETEST}/CMakeLists.txt)
  message(FATAL_ERROR "There is no GoogleTest in ${QUILLON_GOOGLETEST}")
endif()
set(INSTALL_GTEST OFF)
add_subdirectory(${QUILLON_GOOGLETEST} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
