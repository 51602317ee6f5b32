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

# Debian's hardening, in every build of ours. A build without a type takes its flags from outside, as
# those of distribution packages do, which bring their own.
if(NOT CMAKE_BUILD_TYPE STREQUAL "None")
  include(CheckCXXCompilerFlag)
  include(CheckPIESupported)
  check_pie_supported()
  add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
  foreach(flag -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "has${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      add_compile_options(${flag})
    endif()
  endforeach()
  # Fortified functions need an optimising compiler, and the sanitizers replace them.
  if(NOT QUILLET_SANITIZE)
    add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  endif()
  add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()

if(QUILLET_SANITIZE)
  add_compile_options(-fsanitize=${QUILLET_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUILLET_SANITIZE})
endif()
