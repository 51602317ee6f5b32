# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# What the desktop knows Quillet by: the name of the desktop entry, the icon, the metainfo and the
# D-Bus name. The one place where it stands.
set(QUILLET_APP_ID "io.github.quillet.Quillet")

# The date of the version that project() names: in the man pages and the metainfo.
set(QUILLET_RELEASE_DATE "2026-11-24")
