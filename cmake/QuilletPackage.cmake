# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# cpack: a Debian package (-G DEB), a portable tree that the install guard moves (-G TXZ), and the
# source (cpack --config CPackSourceConfig.cmake). The same source gives the same bits when
# SOURCE_DATE_EPOCH is set.
set(CPACK_PACKAGE_NAME quillet)
set(CPACK_PACKAGE_VENDOR "The Quillet authors")
set(CPACK_PACKAGE_CONTACT "The Quillet authors <${QUILLET_FEEDBACK_ADDRESS}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "writing assistant for the text inputs of the desktop")
set(CPACK_PACKAGE_DESCRIPTION
"Quillet puts a small button at the corner of the text input that has the focus,
in any program. A click opens a list of commands: correct the grammar, change
the tone, shorten, answer, translate. The result can be changed before it is
written into the program.

It works without a network, by rules and dictionaries, and better with a
language model of the user's choice.")
set(CPACK_PACKAGE_HOMEPAGE_URL "${QUILLET_PROJECT_PAGE}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the programs start or load by name; the libraries come from the binaries.
file(STRINGS "${PROJECT_SOURCE_DIR}/packaging/runtime-depends.txt" depends REGEX "^[^#]")
list(JOIN depends ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
file(STRINGS "${PROJECT_SOURCE_DIR}/packaging/runtime-recommends.txt" recommends REGEX "^[^#]")
list(JOIN recommends ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/DebianDocs.cmake")
set(CPACK_QUILLET_SOURCE_DIR "${PROJECT_SOURCE_DIR}")

set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "quillet-${PROJECT_VERSION}")
set(CPACK_SOURCE_IGNORE_FILES "/build/" "/\\\\.git/" "/\\\\.cache/" "__pycache__"
  "CMakeUserPresets\\\\.json$")

# The portable tree: its top folder is the bundle.
set(CPACK_ARCHIVE_FILE_NAME "quillet-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/QuilletPackageKinds.cmake")

include(CPack)
