# SPDX-License-Identifier: MIT
# Finds the registry client library of the platform itself: libtessaroclient and the libtessaro that it stands on.
# Hints: CMAKE_PREFIX_PATH, or the files themselves in TESSARO_CLIENT_LIBRARY and TESSARO_LIBRARY.
# TESSARO_INCLUDE_DIR names a folder whose tessaroclient.h is used in place of include/tessaroclient.h.
# Defines the target Tessaro::Client.

# a device without development files has the versioned names only
find_library(TESSARO_CLIENT_LIBRARY NAMES tessaroclient libtessaroclient.so.0)
find_library(TESSARO_LIBRARY NAMES tessaro libtessaro.so.0)
set(TESSARO_INCLUDE_DIR "" CACHE PATH "Folder of the platform's own tessaroclient.h (default: include)")
mark_as_advanced(TESSARO_CLIENT_LIBRARY TESSARO_LIBRARY TESSARO_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Tessaro REQUIRED_VARS TESSARO_CLIENT_LIBRARY TESSARO_LIBRARY)

if(TESSARO_FOUND AND NOT TARGET Tessaro::Client)
  if(TESSARO_INCLUDE_DIR)
    if(NOT EXISTS ${TESSARO_INCLUDE_DIR}/tessaroclient.h)
      message(FATAL_ERROR "TESSARO_INCLUDE_DIR: no tessaroclient.h in '${TESSARO_INCLUDE_DIR}'")
    endif()
    get_target_property(interface Tessaro::Interface ALIASED_TARGET)
    target_include_directories(${interface} BEFORE INTERFACE ${TESSARO_INCLUDE_DIR})
  endif()
  add_library(Tessaro::Base SHARED IMPORTED)
  set_target_properties(Tessaro::Base PROPERTIES IMPORTED_LOCATION ${TESSARO_LIBRARY})
  add_library(Tessaro::Client SHARED IMPORTED)
  set_target_properties(Tessaro::Client PROPERTIES IMPORTED_LOCATION ${TESSARO_CLIENT_LIBRARY})
  target_link_libraries(Tessaro::Client INTERFACE Tessaro::Base Tessaro::Interface)
endif()
