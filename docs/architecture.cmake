# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Draws the architecture from the sources: every class under its subsystem, as src/CMakeLists.txt
# lists them, the private rooms that only this subsystem uses beneath, the rooms that several use in
# a box of their own, and an arrow where a file of one box includes a public header of another.
#
# Without -DWRITE=ON it fails unless the drawing that is kept (architecture.dot and the picture that
# Graphviz made of it) is the one that it would draw now, or where the arrows go round in a circle.
# Usage: cmake [-DWRITE=ON] -DROOT=<the project's folder> -P architecture.cmake

cmake_minimum_required(VERSION 3.16)

get_filename_component(ROOT "${ROOT}" ABSOLUTE)
set(dot_file "${ROOT}/docs/architecture.dot")
set(picture_file "${ROOT}/docs/images/architecture.svg")

# The subsystems and their classes

# The lists of src/CMakeLists.txt that come before the one of all classes.
file(READ "${ROOT}/src/CMakeLists.txt" map)
string(FIND "${map}" "set(ORVAUTILS_CLASSES" end)
string(SUBSTRING "${map}" 0 ${end} map)
string(REGEX MATCHALL "set\\(ORVAUTILS_[A-Z_]+[^)]+\\)" lists "${map}")
set(boxes "")
set(units "")
foreach(list IN LISTS lists)
  string(REGEX MATCHALL "[A-Za-z0-9_/]+" words "${list}")
  list(POP_FRONT words command box)
  string(REGEX REPLACE "^ORVAUTILS_" "" box "${box}")
  string(TOLOWER "${box}" box)
  list(APPEND boxes ${box})
  foreach(path IN LISTS words)
    get_filename_component(class "${path}" NAME)
    list(APPEND units ${class})
    list(APPEND classes_of_${box} ${class})
    set(boxes_of_${class} ${box})
    set(files_of_${class} "src/${path}.h" "src/${path}.cpp")
  endforeach()
endforeach()

# The private rooms

# A room is a header with the sources of its name, and of its name with that of a system; any other
# source belongs to the header that it includes first.
set(rooms "")
file(GLOB headers RELATIVE "${ROOT}" "${ROOT}/src/private/*_p.h")
foreach(header IN LISTS headers)
  get_filename_component(room "${header}" NAME_WE)
  list(APPEND rooms ${room})
  list(APPEND units ${room})
  set(files_of_${room} "${header}")
  set(boxes_of_${room} "")
endforeach()
file(GLOB sources RELATIVE "${ROOT}" "${ROOT}/src/private/*.cpp")
foreach(source IN LISTS sources)
  get_filename_component(name "${source}" NAME_WE)
  string(REGEX REPLACE "_.*" "_p" room "${name}_p")
  if(NOT room IN_LIST rooms)
    file(STRINGS "${ROOT}/${source}" room REGEX "^#include \".*_p\\.h\"" LIMIT_COUNT 1)
    string(REGEX REPLACE "^#include \"(.*)\\.h\"" "\\1" room "${room}")
  endif()
  list(APPEND files_of_${room} "${source}")
endforeach()

# Who includes whom

foreach(unit IN LISTS units)
  set(used_by_${unit} "")
  foreach(file IN LISTS files_of_${unit})
    file(STRINGS "${ROOT}/${file}" includes REGEX "^#include \"")
    foreach(include IN LISTS includes)
      string(REGEX REPLACE "^#include \"(.*/)?([A-Za-z0-9_]+)\\.h\".*" "\\2" header "${include}")
      if(header IN_LIST units AND NOT header STREQUAL unit)
        list(APPEND used_by_${unit} ${header})
      endif()
    endforeach()
  endforeach()
endforeach()

# A room belongs to the subsystems that use it, be it by way of another room.
set(again TRUE)
while(again)
  set(again FALSE)
  foreach(unit IN LISTS units)
    foreach(room IN LISTS used_by_${unit})
      foreach(box IN LISTS boxes_of_${unit})
        if(room IN_LIST rooms AND NOT box IN_LIST boxes_of_${room})
          list(APPEND boxes_of_${room} ${box})
          set(again TRUE)
        endif()
      endforeach()
    endforeach()
  endforeach()
endwhile()
set(problems "")
foreach(room IN LISTS rooms)
  list(LENGTH boxes_of_${room} count)
  if(count EQUAL 0)
    list(APPEND problems "nothing uses ${room}.h")
  elseif(count GREATER 1)
    set(boxes_of_${room} shared_rooms)
  endif()
  list(APPEND rooms_of_${boxes_of_${room}} ${room})
endforeach()

set(arrows "")
foreach(unit IN LISTS units)
  foreach(header IN LISTS used_by_${unit})
    if(NOT header IN_LIST rooms AND NOT boxes_of_${unit} STREQUAL boxes_of_${header})
      list(APPEND arrows "${boxes_of_${unit}} -> ${boxes_of_${header}}")
    endif()
  endforeach()
endforeach()
list(REMOVE_DUPLICATES arrows)
list(SORT arrows)

# Box after box goes that uses none of the rest; what is left goes round in a circle.
set(rest ${boxes})
set(again TRUE)
while(again)
  set(again FALSE)
  foreach(box IN LISTS rest)
    set(uses "${arrows}")
    list(FILTER uses INCLUDE REGEX "^${box} -> ")
    list(TRANSFORM uses REPLACE ".* -> " "")
    set(inside FALSE)
    foreach(used IN LISTS uses)
      if(used IN_LIST rest)
        set(inside TRUE)
      endif()
    endforeach()
    if(NOT inside)
      list(REMOVE_ITEM rest ${box})
      set(again TRUE)
    endif()
  endforeach()
endwhile()
if(rest)
  list(APPEND problems "the arrows go round in a circle: ${rest}")
endif()

# The drawing

# rows(<variable> <name>...): the names, two a row, as lines of a label.
function(rows variable)
  set(text "")
  set(row "")
  foreach(name IN LISTS ARGN)
    if(row STREQUAL "")
      set(row "${name}")
    else()
      string(APPEND text "${row} · ${name}<br/>")
      set(row "")
    endif()
  endforeach()
  string(APPEND text "${row}")
  string(REGEX REPLACE "<br/>$" "" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

set(dot "// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT
//
// Made by docs/architecture.cmake from the sources; see there.

digraph architecture {
    graph [bgcolor=white, rankdir=TB, nodesep=0.35, ranksep=0.6, pad=0.2,
           fontname=\"DejaVu Sans\", tooltip=\"The subsystems of OrvaUtils\"]
    node [shape=box, style=\"rounded,filled\", fillcolor=\"#eef4fb\", color=\"#3b6ea5\", fontsize=11,
          fontname=\"DejaVu Sans\", fontcolor=\"#1b2733\", margin=\"0.16,0.10\"]
    edge [color=\"#3b6ea5\", arrowsize=0.7]

")
foreach(box IN LISTS boxes ITEMS shared_rooms)
  string(REGEX REPLACE "_" " " title "${box}")
  string(SUBSTRING "${title}" 0 1 first)
  string(TOUPPER "${first}" first)
  string(SUBSTRING "${title}" 1 -1 title)
  string(PREPEND title "${first}")
  string(REPLACE "exif" "EXIF" title "${title}")
  string(REPLACE "Text web" "Text, web" title "${title}")
  rows(classes ${classes_of_${box}})
  list(TRANSFORM rooms_of_${box} REPLACE "_p$" "")
  rows(private ${rooms_of_${box}})
  set(label "<b>${title}</b>")
  if(classes)
    string(APPEND label "<br/><font point-size=\"9.5\">${classes}</font>")
  endif()
  if(private)
    string(APPEND label
      "<br/><font point-size=\"8.5\" color=\"#5c6b7a\"><i>private:</i><br/>${private}</font>")
  endif()
  string(APPEND dot "    ${box} [label=<${label}>]\n")
endforeach()
string(APPEND dot "    shared_rooms [fillcolor=\"#f4f4f0\", color=\"#8a8a80\"]\n\n")
foreach(arrow IN LISTS arrows)
  string(APPEND dot "    ${arrow}\n")
endforeach()
string(APPEND dot "}\n")
string(SHA1 digest "${dot}")
set(mark "<!-- drawn from architecture.dot ${digest} -->")

if(WRITE)
  find_program(DOT dot REQUIRED)
  file(WRITE "${dot_file}" "${dot}")
  execute_process(COMMAND "${DOT}" -Tsvg "${dot_file}" OUTPUT_VARIABLE picture RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "Graphviz could not draw ${dot_file}")
  endif()
  file(WRITE "${picture_file}" "${picture}${mark}\n")
else()
  file(READ "${dot_file}" kept)
  file(READ "${picture_file}" picture)
  string(FIND "${picture}" "${mark}" position)
  if(NOT kept STREQUAL dot OR position EQUAL -1)
    list(APPEND problems "the drawing is not that of the sources: run\n  \
cmake -DWRITE=ON -DROOT=. -P docs/architecture.cmake")
  endif()
endif()
if(problems)
  list(JOIN problems "\n  " problems)
  message(FATAL_ERROR "the architecture:\n  ${problems}")
endif()
list(LENGTH units unit_count)
list(LENGTH arrows arrow_count)
message(STATUS "${unit_count} classes and rooms, ${arrow_count} arrows")
