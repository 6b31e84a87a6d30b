# SPDX-License-Identifier: MIT
# Read by cpack before it makes a package. CPACK_INSTALL_PREFIX is the prefix that the build tree was configured with.

if(NOT CPACK_INSTALL_PREFIX STREQUAL CPACK_PACKAGING_INSTALL_PREFIX)
  message(FATAL_ERROR "This build tree was configured for ${CPACK_INSTALL_PREFIX}; packages install to "
    "${CPACK_PACKAGING_INSTALL_PREFIX}. Make them by scripts/make-packages, or from a tree of the preset 'package'.")
endif()
