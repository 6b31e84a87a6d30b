# SPDX-License-Identifier: MIT
# Read by cpack before it makes a package.

# the prefix that the build tree was configured with
if(NOT CPACK_INSTALL_PREFIX STREQUAL CPACK_PACKAGING_INSTALL_PREFIX)
  message(FATAL_ERROR "This build tree was configured for ${CPACK_INSTALL_PREFIX}; packages install to "
    "${CPACK_PACKAGING_INSTALL_PREFIX}. Make them by scripts/make-packages, or from a tree of the preset 'package'.")
endif()

if(CPACK_QUENDAR_CROSS_COMPILED)
  # CPack would take this machine's
  if(NOT CPACK_DEBIAN_PACKAGE_ARCHITECTURE)
    message(FATAL_ERROR "CPACK_DEBIAN_PACKAGE_ARCHITECTURE is not set; name the architecture that this tree is built for.")
  endif()
  # read by dpkg-shlibdeps: whose libraries it meets, and which packages they belong to
  set(ENV{DEB_HOST_ARCH} ${CPACK_DEBIAN_PACKAGE_ARCHITECTURE})
  set(ENV{DPKG_ADMINDIR} ${CPACK_QUENDAR_PACKAGE_DATABASE})
endif()
