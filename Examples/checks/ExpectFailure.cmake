# Runs PROGRAM (a list) and fails unless it ends with CODE and prints TEXT.
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT code STREQUAL CODE)
  message(FATAL_ERROR "Expected exit code ${CODE}, found ${code}. Output:\n${output}")
endif()
string(FIND "${output}" "${TEXT}" at)
if(at EQUAL -1)
  message(FATAL_ERROR "Expected the text\n${TEXT}\nin the output:\n${output}")
endif()
