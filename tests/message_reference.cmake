# Compares the reference of the messages with what the catalogue says today.
execute_process(COMMAND ${PROGRAM} OUTPUT_FILE ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${REFERENCE} ${OUTPUT} RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "${REFERENCE} is out of date. Write it anew: ${PROGRAM} > ${REFERENCE}")
endif()
