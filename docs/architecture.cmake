# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Fails unless the diagram of the architecture (architecture.dot and the picture made of it) shows
# what the sources say: every class under its subsystem, and an arrow from one subsystem to another
# exactly where a file of the one includes a header of the other.
# Usage: cmake -DROOT=<the project's folder> -P architecture.cmake

cmake_minimum_required(VERSION 3.16)

set(problems "")

# The map of the library: the lists of src/CMakeLists.txt that come before the one of all classes.
file(READ "${ROOT}/src/CMakeLists.txt" map)
string(FIND "${map}" "set(ORVAUTILS_CLASSES" end)
string(SUBSTRING "${map}" 0 ${end} map)
string(REGEX MATCHALL "set\\(ORVAUTILS_[A-Z_]+[^)]+\\)" lists "${map}")

file(READ "${ROOT}/docs/architecture.dot" dot)
file(READ "${ROOT}/docs/images/architecture.svg" picture)

set(classes "")
foreach(list IN LISTS lists)
  string(REGEX MATCHALL "[A-Za-z0-9_/]+" words "${list}")
  list(GET words 1 subsystem)
  list(REMOVE_AT words 0 1)
  string(REPLACE "ORVAUTILS_" "" subsystem ${subsystem})
  string(TOLOWER ${subsystem} subsystem)
  string(REGEX MATCH "\n    ${subsystem} \\[label=[^]]+\\]" node "${dot}")
  if(NOT node)
    list(APPEND problems "no subsystem ${subsystem}")
  endif()
  foreach(path IN LISTS words)
    get_filename_component(class ${path} NAME)
    list(APPEND classes ${class})
    set(subsystem_of_${class} ${subsystem})
    set(path_of_${class} ${path})
    if(NOT "${node}" MATCHES "[^A-Za-z]${class}[^A-Za-z0-9]")
      list(APPEND problems "${class} is missing in ${subsystem}")
    endif()
    if(NOT "${picture}" MATCHES "[^A-Za-z]${class}[^A-Za-z0-9]")
      list(APPEND problems "${class} is missing in the picture")
    endif()
  endforeach()
endforeach()

# Who includes whom.
set(used "")
foreach(class IN LISTS classes)
  foreach(suffix IN ITEMS h cpp)
    file(STRINGS "${ROOT}/src/${path_of_${class}}.${suffix}" includes REGEX "^#include \"")
    foreach(include IN LISTS includes)
      string(REGEX REPLACE "^#include \"(.*/)?([A-Za-z0-9_]+)\\.h\".*" "\\2" header "${include}")
      if(DEFINED subsystem_of_${header}
          AND NOT subsystem_of_${header} STREQUAL subsystem_of_${class})
        list(APPEND used "${subsystem_of_${class}} -> ${subsystem_of_${header}}")
      endif()
    endforeach()
  endforeach()
endforeach()
list(REMOVE_DUPLICATES used)

string(REGEX MATCHALL "[a-z_]+ -> [a-z_]+" drawn "${dot}")
foreach(arrow IN LISTS used)
  if(NOT arrow IN_LIST drawn)
    list(APPEND problems "the arrow ${arrow} is missing")
  endif()
endforeach()
foreach(arrow IN LISTS drawn)
  if(NOT arrow IN_LIST used)
    list(APPEND problems "nothing stands behind the arrow ${arrow}")
  endif()
  string(REPLACE " -> " "&#45;&gt;" title "${arrow}")
  string(FIND "${picture}" "<title>${title}</title>" position)
  if(position EQUAL -1)
    list(APPEND problems "the arrow ${arrow} is missing in the picture")
  endif()
endforeach()
string(REGEX MATCHALL "<title>[a-z_]+&#45" arrows_in_picture "${picture}")
list(LENGTH arrows_in_picture shown)
list(LENGTH drawn wanted)
if(NOT shown EQUAL wanted)
  list(APPEND problems "the picture shows ${shown} arrows, architecture.dot has ${wanted}")
endif()

list(LENGTH classes class_count)
if(problems)
  list(JOIN problems "\n  " problems)
  message(FATAL_ERROR "docs/architecture.dot or its picture is not true:\n  ${problems}")
endif()
message(STATUS "${class_count} classes and ${wanted} arrows are as the sources have them")
