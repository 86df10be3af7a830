# Runs PROGRAM with the file INPUT as its standard input, and compares its exit status, its output
# and its errors with STATUS and with the files OUTPUT and ERRORS; no file means no text.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${PROGRAM} INPUT_FILE ${INPUT}
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)

if(NOT status STREQUAL STATUS)
  message(SEND_ERROR "exit status ${status}, not ${STATUS}")
endif()
foreach(stream OUTPUT ERRORS)
  string(TOLOWER ${stream} got)
  set(expected "")
  if(${stream})
    file(READ ${${stream}} expected)
  endif()
  if(NOT "${${got}}" STREQUAL "${expected}")
    message("${stream} is\n${${got}}\nand not\n${expected}")
    message(SEND_ERROR "${stream} differs")
  endif()
endforeach()
