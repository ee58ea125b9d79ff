# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Compares the dynamic symbols of the shared LIBRARY, as listed by NM, with the classes that the
# public HEADERS (separated by commas) export: nothing else may be visible, and none may be missing.

cmake_minimum_required(VERSION 3.16)
include("${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake")

set(failures "")

string(REPLACE "," ";" headers "${HEADERS}")
set(classes "")
foreach(header IN LISTS headers)
  file(STRINGS "${header}" lines REGEX "^(class|struct) ORVAUTILS_EXPORT ")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[a-z]+ ORVAUTILS_EXPORT ([A-Za-z0-9_]+).*" "\\1" class "${line}")
    list(APPEND classes ${class})
  endforeach()
endforeach()

# A pair of values, defined completely in its header.
set(inline_classes GoogleFontWeightDetail)

# The exported functions that are not members: stream operators of the classes.
set(functions
  "operator>>(QDataStream&, ExifIfdHeader&)"
  "operator<<(QDebug, CurrencyUtils::VatSplit const&)"
  "operator<<(QDebug, ErrorableCode const&)"
  "operator<<(QDebug, FileUtils::TreeProgress const&)"
  "operator<<(QDebug, ImageImportResult const&)"
  "operator<<(QDebug, ProjectFileLocker::LockHolder const&)"
  "operator<<(QDebug, QExifValue const&)")

capture(listing "${NM}" -D --defined-only -C "${LIBRARY}")
string(REPLACE ";" "," listing "${listing}")
string(REPLACE "[" "<" listing "${listing}")
string(REPLACE "]" ">" listing "${listing}")
string(REPLACE "\n" ";" listing "${listing}")
set(seen "")
foreach(line IN LISTS listing)
  # Address, kind, name. A lower-case letter is a local symbol, with these exceptions.
  if(NOT line MATCHES "^[0-9a-f]+ [A-Zuvwi] (.+)$")
    continue()
  endif()
  set(symbol "${CMAKE_MATCH_1}")
  string(REGEX REPLACE
    "^(vtable for|VTT for|typeinfo for|typeinfo name for|guard variable for|(non-)?virtual thunk to) "
    "" name "${symbol}")
  string(REGEX REPLACE "::.*" "" name "${name}")
  if(name IN_LIST classes)
    list(APPEND seen ${name})
  elseif(symbol IN_LIST functions)
    list(REMOVE_ITEM functions "${symbol}")
  else()
    string(APPEND failures "not of our classes: ${symbol}\n")
  endif()
endforeach()

foreach(class IN LISTS classes)
  if(NOT class IN_LIST seen AND NOT class IN_LIST inline_classes)
    string(APPEND failures "exports nothing: ${class}\n")
  endif()
endforeach()
foreach(function IN LISTS functions)
  string(APPEND failures "not exported: ${function}\n")
endforeach()
if(NOT classes)
  string(APPEND failures "the headers hold no class\n")
endif()

if(failures)
  message(FATAL_ERROR "symbols of ${LIBRARY}:\n${failures}")
endif()
list(REMOVE_DUPLICATES seen)
list(LENGTH seen count)
message(STATUS "${count} classes, nothing beside them")
