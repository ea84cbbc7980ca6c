# What `cmake --install` puts under the prefix: the shared library with its
# SONAME links, the public headers, the `varnice` command and its manual page,
# a pkg-config file and a CMake package (find_package(Varnice) -> Varnice::varnice).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# varnice/version.h is what consumers test at compile time; it must agree with
# the version the library is built and packaged as.
file(STRINGS ${PROJECT_SOURCE_DIR}/varnice/version.h _varnice_version_lines
     REGEX "^#define VARNICE_VERSION_(MAJOR|MINOR|PATCH) ")
string(REGEX REPLACE ".*MAJOR ([0-9]+).*MINOR ([0-9]+).*PATCH ([0-9]+).*" "\\1.\\2.\\3"
       _varnice_header_version "${_varnice_version_lines}")
if(NOT _varnice_header_version STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "varnice/version.h says ${_varnice_header_version}, "
                      "the project is ${PROJECT_VERSION}")
endif()

# The public headers are varnice.h, version.h and everything they include:
# whatever a consumer of varnice.h needs. Every other header is the
# implementation's and stays in the source tree.
set(_varnice_todo varnice/varnice.h varnice/version.h)
set(VARNICE_PUBLIC_HEADERS "")
while(_varnice_todo)
  list(POP_FRONT _varnice_todo _h)
  if(_h IN_LIST VARNICE_PUBLIC_HEADERS)
    continue()
  endif()
  if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${_h})
    message(FATAL_ERROR "public header ${_h} is missing")
  endif()
  list(APPEND VARNICE_PUBLIC_HEADERS ${_h})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${_h})
  file(STRINGS ${PROJECT_SOURCE_DIR}/${_h} _includes REGEX "^[ \t]*#[ \t]*include[ \t]+\"varnice/")
  foreach(_line IN LISTS _includes)
    string(REGEX REPLACE ".*\"(varnice/[^\"]+)\".*" "\\1" _inc "${_line}")
    list(APPEND _varnice_todo ${_inc})
  endforeach()
endwhile()
foreach(_h IN LISTS VARNICE_PUBLIC_HEADERS)
  get_filename_component(_dir ${_h} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${_h} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${_dir}
          COMPONENT Development)
endforeach()

install(TARGETS varnice EXPORT VarniceTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# The command finds the library relative to itself, so the prefix can move.
set_target_properties(varnice_cli PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS varnice_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
install(FILES ${PROJECT_SOURCE_DIR}/docs/varnice.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT Runtime)

# pkg-config: paths relative to the .pc file, so --prefix at install time holds.
file(RELATIVE_PATH VARNICE_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" VARNICE_PC_TO_PREFIX "${VARNICE_PC_TO_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/varnice.pc.in ${PROJECT_BINARY_DIR}/varnice.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/varnice.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT Development)

set(VARNICE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Varnice)
install(EXPORT VarniceTargets NAMESPACE Varnice:: DESTINATION ${VARNICE_CMAKE_DIR}
        COMPONENT Development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VarniceConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VarniceConfig.cmake INSTALL_DESTINATION ${VARNICE_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VarniceConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VarniceConfig.cmake ${PROJECT_BINARY_DIR}/VarniceConfigVersion.cmake
        DESTINATION ${VARNICE_CMAKE_DIR} COMPONENT Development)
