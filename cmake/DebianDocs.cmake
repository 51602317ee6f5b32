# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# Run by cpack on the tree that it packs: the files that Debian's policy asks of a package.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(doc "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/quillet")
set(debian "${CPACK_QUILLET_SOURCE_DIR}/debian")
file(MAKE_DIRECTORY "${doc}")
configure_file("${debian}/copyright" "${doc}/copyright" COPYONLY)
configure_file("${debian}/changelog" "${doc}/changelog.Debian" COPYONLY)
configure_file("${debian}/quillet.lintian-overrides"
  "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/lintian/overrides/quillet" COPYONLY)
file(GLOB pages "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man1/*.1")
execute_process(COMMAND gzip -9n "${doc}/changelog.Debian" ${pages} COMMAND_ERROR_IS_FATAL ANY)
