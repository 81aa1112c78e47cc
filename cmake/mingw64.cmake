# Cross-builds for 64-bit Windows with Debian's mingw-w64 compiler (posix threads).
#
# Qt for Windows stands in the folder that the environment's QT_MINGW names, or else beside the
# checkout; ./dev windows can build it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

set(qt "$ENV{QT_MINGW}")
if(NOT qt)
  get_filename_component(qt ${CMAKE_CURRENT_LIST_DIR}/../../shared/qt6-mingw ABSOLUTE)
endif()
set(QUILLON_QT_MINGW ${qt} CACHE PATH "Qt for Windows")

# Nothing of the machine that builds is found, but programs.
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${QUILLON_QT_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} /nonexistent)
list(APPEND CMAKE_PREFIX_PATH ${QUILLON_QT_MINGW})

# moc, rcc and uic are the machine's own and must be of the same version as that Qt.
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")

# What it built runs under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine.sh)
