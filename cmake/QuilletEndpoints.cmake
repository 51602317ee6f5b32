# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

# Where Quillet sends what it is given; fixed when it is built.

set(QUILLET_BACKEND_ENDPOINT "" CACHE STRING
    "URL of the writing backend's /generate; empty for the local backend that Quillet starts itself")
set(QUILLET_ANALYTICS_ENDPOINT "" CACHE STRING
    "Base URL of the analytics service; empty for the local backend, which keeps nothing")

# The user's whole text travels in the request, so it leaves the machine encrypted or not at all.
foreach(endpoint QUILLET_BACKEND_ENDPOINT QUILLET_ANALYTICS_ENDPOINT)
  set(url "${${endpoint}}")
  if(url STREQUAL "" OR url MATCHES "^https://[^/@]+"
     OR url MATCHES "^http://(localhost|127\\.[0-9]+\\.[0-9]+\\.[0-9]+|\\[::1\\])(:[0-9]+)?(/|$)")
    continue()
  endif()
  message(FATAL_ERROR
    "${endpoint} is \"${url}\". It must be an https:// address: what Quillet sends there is the "
    "user's text or the user's doings, and plain http lets everybody on the way read it. Plain "
    "http:// is accepted for this machine only (localhost, 127.x.x.x or [::1]).")
endforeach()
