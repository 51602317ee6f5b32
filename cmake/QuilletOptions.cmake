# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# Compiler settings that every target of the project shares. Link the interface
# target `quillet_options` (PRIVATE) to get them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

set(QUILLET_SANITIZE "" CACHE STRING
    "Sanitizers to build with, as -fsanitize takes them: empty, address,undefined or thread")
option(QUILLET_WERROR "Treat warnings as errors" OFF)

add_library(quillet_options INTERFACE)
target_compile_options(quillet_options INTERFACE -Wall -Wextra -Wshadow)
if(QUILLET_WERROR)
  target_compile_options(quillet_options INTERFACE -Werror)
endif()
target_compile_definitions(quillet_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING)

if(QUILLET_SANITIZE)
  add_compile_options(-fsanitize=${QUILLET_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUILLET_SANITIZE})
endif()
