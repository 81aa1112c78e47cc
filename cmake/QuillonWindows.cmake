# What files for Windows need besides code.
#
#   quillon_windows_resource(<target> <description> [ICON <file>])
#     gives a program or library the one version number, a program the manifest, and its icon

include_guard(GLOBAL)

function(quillon_windows_resource target description)
  if(NOT WIN32)
    return()
  endif()
  cmake_parse_arguments(ARG "" "ICON" "" ${ARGN})
  get_target_property(kind ${target} TYPE)
  set(folder ${PROJECT_SOURCE_DIR}/packaging/windows)
  set(more "")
  if(kind STREQUAL EXECUTABLE)
    set(type VFT_APP)
    set(suffix ${CMAKE_EXECUTABLE_SUFFIX})
    set(manifest ${folder}/program.manifest)
    # With the numbers by which the system looks for it.
    string(APPEND more "1 24 \"${manifest}\"\n")
  else()
    set(type VFT_DLL)
    set(suffix ${CMAKE_SHARED_LIBRARY_SUFFIX})
  endif()
  if(ARG_ICON)
    string(APPEND more "1 ICON \"${ARG_ICON}\"\n")
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${folder}/version.rc.in ${resource} @ONLY)
  set_source_files_properties(${resource} PROPERTIES OBJECT_DEPENDS "${manifest};${ARG_ICON}")
  target_sources(${target} PRIVATE ${resource})
endfunction()

# quillon_beside_programs(<folder> <file>...): links the libraries there, relative to `folder`, into
# the same place relative to the programs.
function(quillon_beside_programs folder)
  foreach(file IN LISTS ARGN)
    get_filename_component(place ${PROJECT_BINARY_DIR}/bin/${file} DIRECTORY)
    file(MAKE_DIRECTORY ${place})
    file(CREATE_LINK ${folder}/${file} ${PROJECT_BINARY_DIR}/bin/${file} SYMBOLIC)
  endforeach()
endfunction()

# What a program cannot start without lies beside it, as at a user's.
if(CMAKE_CROSSCOMPILING)
  foreach(library IN ITEMS libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(
      COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
      OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${file}")
      message(FATAL_ERROR "The compiler has no ${library}")
    endif()
    get_filename_component(folder ${file} DIRECTORY)
    quillon_beside_programs(${folder} ${library})
  endforeach()
  if(QUILLON_QT)
    quillon_beside_programs(${QUILLON_QT_MINGW}/bin
      Qt6Core.dll Qt6Gui.dll Qt6Network.dll Qt6Test.dll Qt6Widgets.dll)
    quillon_beside_programs(${QUILLON_QT_MINGW}/plugins
      platforms/qoffscreen.dll platforms/qwindows.dll styles/qwindowsvistastyle.dll)
  endif()
endif()
