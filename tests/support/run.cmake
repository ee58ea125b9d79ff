# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT

# run(<command> <argument>...): runs a command and fails the test if the command fails.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "failed (${result}): ${command}")
  endif()
endfunction()

# capture(<variable> <command> <argument>...): like run(), and stores the output including errors.
function(capture variable)
  execute_process(COMMAND ${ARGN}
    RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "failed (${result}): ${command}\n${said}")
  endif()
  set(${variable} "${said}" PARENT_SCOPE)
endfunction()
