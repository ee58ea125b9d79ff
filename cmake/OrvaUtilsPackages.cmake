# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Two Debian packages, made by CPack: the library, and the files needed to build programs with it.
# scripts/package configures, builds and checks them.

if(NOT BUILD_SHARED_LIBS OR NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  message(FATAL_ERROR "the packages hold a shared library, installed under /usr "
    "(BUILD_SHARED_LIBS is ${BUILD_SHARED_LIBS}, CMAKE_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})")
endif()

set(ORVAUTILS_PACKAGE_MAINTAINER "The OrvaUtils authors <maintainers@orvautils.example>" CACHE STRING
  "Name and address of whoever answers for the packages")
# A package of the same version by Debian itself would begin with 1, and be newer.
set(ORVAUTILS_PACKAGE_REVISION 0orvautils1 CACHE STRING
  "Counts the packages that are made of one version of the library")
set(ORVAUTILS_LIBRARY_PACKAGE liborvautils${PROJECT_VERSION_MAJOR})
set(qt_development "qtbase5-dev (>= ${ORVAUTILS_QT_FLOOR})")
if(ORVAUTILS_QT_MAJOR EQUAL 6)
  # A name that ends in a digit needs a separator before a number.
  set(ORVAUTILS_LIBRARY_PACKAGE liborvautils-qt6-${PROJECT_VERSION_MAJOR})
  set(qt_development
    "qt6-base-dev (>= ${ORVAUTILS_QT_FLOOR}), qt6-5compat-dev (>= ${ORVAUTILS_QT_FLOOR})")
endif()
set(ORVAUTILS_DEVELOPMENT_PACKAGE liborvautils${ORVAUTILS_SUFFIX}-dev)

# Debian requires for every package: the author, the licence and the changes.

set(documents "${PROJECT_BINARY_DIR}/debian")
file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" licence)
list(FILTER licence INCLUDE REGEX "^Copyright")
string(REGEX REPLACE "^Copyright \\(c\\) " "" ORVAUTILS_COPYRIGHT "${licence}")
file(READ "${PROJECT_SOURCE_DIR}/LICENSE" licence)
string(REGEX REPLACE "^.*Copyright[^\n]*\n\n" "" licence "${licence}")
string(STRIP "${licence}" licence)
# In such a file text is indented by a blank, and an empty line is a dot.
string(REPLACE "\n" "\n " licence "${licence}")
string(REPLACE "\n \n" "\n .\n" licence "${licence}")
set(ORVAUTILS_LICENCE " ${licence}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/copyright.in" "${documents}/copyright" @ONLY)

string(TIMESTAMP ORVAUTILS_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in" "${documents}/changelog.Debian" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${documents}/changelog" COPYONLY)
find_program(ORVAUTILS_GZIP gzip REQUIRED)
execute_process(COMMAND "${ORVAUTILS_GZIP}" -9nf changelog changelog.Debian
  WORKING_DIRECTORY "${documents}" RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "the changelogs could not be packed")
endif()
foreach(component IN ITEMS Library Development)
  string(TOUPPER ORVAUTILS_${component}_PACKAGE name)
  install(FILES
    "${documents}/copyright" "${documents}/changelog.gz" "${documents}/changelog.Debian.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${${name}}"
    COMPONENT ${component})
endforeach()

configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/lintian-overrides.in"
  "${documents}/lintian-overrides" @ONLY)
install(FILES "${documents}/lintian-overrides"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
  COMPONENT Library
  RENAME ${ORVAUTILS_LIBRARY_PACKAGE})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvautils${ORVAUTILS_SUFFIX})
set(CPACK_PACKAGE_VENDOR "The OrvaUtils authors")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Library Development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${ORVAUTILS_PACKAGE_REVISION})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ORVAUTILS_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The linker's cache is updated, and programs that link to the library depend on this version of the
# package.
file(WRITE "${documents}/triggers" "activate-noawait ldconfig\n")
file(WRITE "${documents}/shlibs" "libOrvaUtils${ORVAUTILS_SUFFIX} ${PROJECT_VERSION_MAJOR} \
${ORVAUTILS_LIBRARY_PACKAGE} (>= ${PROJECT_VERSION})\n")

set(about "\
OrvaUtils is the library that a family of Qt desktop applications shares:
programs that import photographs, publish web pages and edit shop prices.
It gathers identity and folders, errors that travel through trees of
objects, worker threads, files, EXIF and image import, text, HTML and code
generation, a font catalogue, currencies and VAT rates, and helpers for
widgets.")
# Each package has its own summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${ORVAUTILS_LIBRARY_PACKAGE})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "what Qt desktop applications share (library)\n${about}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${documents}/shlibs" "${documents}/triggers")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${ORVAUTILS_DEVELOPMENT_PACKAGE})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "\
what Qt desktop applications share (development files)
${about}

This package holds the headers, the reference where it was built, and what
CMake and pkg-config need to find the library.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${ORVAUTILS_LIBRARY_PACKAGE} \
(= ${PROJECT_VERSION}-${ORVAUTILS_PACKAGE_REVISION}), ${qt_development}")

include(CPack)
