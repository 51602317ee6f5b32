# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# What differs between the kinds of packages; read by cpack for each.
if(CPACK_GENERATOR STREQUAL "TXZ" AND NOT CPACK_SOURCE_INSTALLED_DIRECTORIES)
  set(CPACK_PACKAGING_INSTALL_PREFIX /)
endif()
