# SPDX-License-Identifier: MIT
# What is installed beside the programs and libraries, and the Debian packages made of it.

find_program(GZIP_EXECUTABLE gzip REQUIRED)

# Installs a file compressed, as manual pages and changelogs are on Debian.
function(install_compressed file component destination)
  cmake_path(GET file FILENAME name)
  set(compressed ${PROJECT_BINARY_DIR}/${component}/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/${component}
    COMMAND ${GZIP_EXECUTABLE} -9nc ${file} > ${compressed}
    DEPENDS ${file} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY QUENDAR_COMPRESSED ${compressed})
  install(FILES ${compressed} DESTINATION ${destination} COMPONENT ${component})
endfunction()

configure_file(packaging/changelog.in changelog @ONLY)

# What Debian wants of every package.
function(install_package_documents component)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${component})
  install(FILES packaging/copyright DESTINATION ${documents} COMPONENT ${component})
  install_compressed(${PROJECT_BINARY_DIR}/changelog ${component} ${documents})
endfunction()

set(man ${PROJECT_SOURCE_DIR}/docs/man)
foreach(program quendarsettings quendar-change)
  install_package_documents(${program})
  install_compressed(${man}/${program}.1 ${program} ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES packaging/completion/${program}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME ${program} COMPONENT ${program})
endforeach()
install(FILES docs/change.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quendar-change COMPONENT quendar-change)
install(DIRECTORY examples/drift DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quendar-change/examples
  USE_SOURCE_PERMISSIONS COMPONENT quendar-change)

# Where systemd and the init scripts look, whatever the prefix: under another they would be found by nobody.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(units lib/systemd/system)
  foreach(unit quendar-change-resume.service quendar-change-guard.service)
    configure_file(packaging/systemd/${unit}.in systemd/${unit} @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/systemd/${unit} DESTINATION ${units} COMPONENT quendar-change)
  endforeach()
  install(FILES packaging/systemd/quendar-change-guard.path DESTINATION ${units} COMPONENT quendar-change)
  configure_file(packaging/quendar-change/init.in init.d/quendar-change @ONLY)
  install(PROGRAMS ${PROJECT_BINARY_DIR}/init.d/quendar-change DESTINATION /etc/init.d COMPONENT quendar-change)
  # by this name systemd leaves the init script alone
  file(CREATE_LINK quendar-change-resume.service ${PROJECT_BINARY_DIR}/systemd/quendar-change.service SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/systemd/quendar-change.service DESTINATION ${units} COMPONENT quendar-change)
endif()

if(TESSARO STREQUAL "standin")
  set(examples ${CMAKE_INSTALL_DATADIR}/doc/tessaro-standin/examples)
  install_package_documents(tessaro-standin)
  install_compressed(${man}/tessaro.1 tessaro-standin ${CMAKE_INSTALL_MANDIR}/man1)
  install_compressed(${man}/tessaro-apply.8 tessaro-standin ${CMAKE_INSTALL_MANDIR}/man8)
  install(FILES examples/device.json examples/new-configuration.xml examples/berlin.xml
    DESTINATION ${examples} COMPONENT tessaro-standin)
  install(DIRECTORY examples/apply.d DESTINATION ${examples} USE_SOURCE_PERMISSIONS COMPONENT tessaro-standin)
  install(FILES packaging/tessaro-standin/overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    RENAME tessaro-standin COMPONENT tessaro-standin)
  # where the service looks for hooks, whatever the prefix: no folder in another place could be taken for it
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    install(DIRECTORY DESTINATION /etc/tessaro/apply.d COMPONENT tessaro-standin)
  endif()
endif()

# Lets an installed target find the libraries from where it lies, under whatever prefix. The system's own places need none.
function(find_libraries_from target folder)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${folder} OUTPUT_VARIABLE libraries)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${libraries} INSTALL_RPATH_USE_LINK_PATH ON)
endfunction()

if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  find_libraries_from(quendarsettings ${CMAKE_INSTALL_FULL_BINDIR})
  find_libraries_from(quendar-change ${CMAKE_INSTALL_FULL_BINDIR})
  if(TESSARO STREQUAL "standin")
    find_libraries_from(tessaro ${CMAKE_INSTALL_FULL_LIBDIR})
    find_libraries_from(tessaroclient ${CMAKE_INSTALL_FULL_LIBDIR})
    find_libraries_from(tessaro-cli ${CMAKE_INSTALL_FULL_BINDIR})
    find_libraries_from(tessaro-apply ${CMAKE_INSTALL_FULL_LIBEXECDIR}/tessaro)
  endif()
endif()

get_property(compressed GLOBAL PROPERTY QUENDAR_COMPRESSED)
add_custom_target(documents ALL DEPENDS ${compressed})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "quendarsettings developers <developers@quendarsettings.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/cpackconfig.cmake)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
if(TESSARO STREQUAL "standin")
  set(CPACK_COMPONENTS_ALL quendarsettings quendar-change tessaro-standin)
  set(library_folders ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
else()
  set(CPACK_COMPONENTS_ALL quendarsettings quendar-change)
  cmake_path(GET TESSARO_CLIENT_LIBRARY PARENT_PATH client_folder)
  cmake_path(GET TESSARO_LIBRARY PARENT_PATH base_folder)
  set(library_folders ${client_folder} ${base_folder})
endif()
set(CPACK_QUENDAR_CROSS_COMPILED ${CMAKE_CROSSCOMPILING})
if(CMAKE_SYSROOT)
  list(APPEND library_folders
    ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE} ${CMAKE_SYSROOT}/lib/${CMAKE_LIBRARY_ARCHITECTURE})
  set(CPACK_QUENDAR_PACKAGE_DATABASE ${CMAKE_SYSROOT}/var/lib/dpkg)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${library_folders})

set(CPACK_DEBIAN_QUENDARSETTINGS_PACKAGE_NAME quendarsettings)
# The platform's own library comes first, so that a device that has it gets no stand-in. The stand-in's shlibs say the same
# to dpkg-shlibdeps, where a program is built on a machine that has it.
set(CPACK_DEBIAN_QUENDARSETTINGS_PACKAGE_DEPENDS "libtessaroclient | tessaro-standin")
set(CPACK_DEBIAN_QUENDARSETTINGS_DESCRIPTION "export and import the settings of a thin client
quendarsettings writes the settings of a thin client into one XML document,
and brings such a document back onto the same or another device: it stores
what differs, has the changed sections applied, and starts the action that
they ask for.")

# A package of its own, so that a device which only exports and imports stays as small as it is.
set(CPACK_DEBIAN_QUENDAR-CHANGE_PACKAGE_NAME quendar-change)
set(CPACK_DEBIAN_QUENDAR-CHANGE_PACKAGE_DEPENDS "${CPACK_DEBIAN_QUENDARSETTINGS_PACKAGE_DEPENDS}")
# what it foretells is what this version would do
set(CPACK_DEBIAN_QUENDAR-CHANGE_PACKAGE_RECOMMENDS "quendarsettings (= ${PROJECT_VERSION})")
set(control ${CMAKE_CURRENT_LIST_DIR}/quendar-change)
set(CPACK_DEBIAN_QUENDAR-CHANGE_PACKAGE_CONTROL_EXTRA
  ${control}/conffiles ${control}/postinst ${control}/prerm ${control}/postrm)
set(CPACK_DEBIAN_QUENDAR-CHANGE_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_QUENDAR-CHANGE_DESCRIPTION "change the settings of a thin client without losing it
quendar-change tells what quendarsettings would change on this device by a
document, before it does it; imports a document all or nothing, and puts it
back unless a check passes or somebody confirms it in time, also after a
power cut; tells whether an exported document would bring all settings back;
and makes copies of documents without passphrases.")

set(CPACK_DEBIAN_TESSARO-STANDIN_PACKAGE_NAME tessaro-standin)
set(CPACK_DEBIAN_TESSARO-STANDIN_PACKAGE_PROVIDES libtessaroclient)
set(control ${CMAKE_CURRENT_LIST_DIR}/tessaro-standin)
set(CPACK_DEBIAN_TESSARO-STANDIN_PACKAGE_CONTROL_EXTRA
  ${control}/postrm ${control}/shlibs ${control}/triggers)
set(CPACK_DEBIAN_TESSARO-STANDIN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_TESSARO-STANDIN_DESCRIPTION "settings registry of a thin client for ordinary machines
The libraries that quendarsettings reaches the registry through, here over one
SQLite file; the command tessaro, which loads, prints and edits this registry;
and the service that applies changed sections by running hooks.")

include(CPack)
