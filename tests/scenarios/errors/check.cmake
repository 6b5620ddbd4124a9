# Plays a scenario that must fail and checks how it fails: the exit code and
# the whole of standard error, given by the scenario's "# exit: " and
# "# stderr: " lines, and standard output against NAME.out beside it, or empty
# when there is none. The runner is started in the scenario's folder so that
# the messages carry the bare file name.
get_filename_component(dir ${SCENARIO} DIRECTORY)
get_filename_component(file ${SCENARIO} NAME)
file(STRINGS ${SCENARIO} want_rc REGEX "^# exit: " ENCODING UTF-8)
file(STRINGS ${SCENARIO} want_err REGEX "^# stderr: " ENCODING UTF-8)
if(NOT want_rc OR NOT want_err)
  message(FATAL_ERROR "${file} lacks its \"# exit: \" or \"# stderr: \" line")
endif()
string(REGEX REPLACE "^# exit: " "" want_rc "${want_rc}")
string(REGEX REPLACE "^# stderr: " "" want_err "${want_err}")

execute_process(COMMAND ${RUNNER} ${file} WORKING_DIRECTORY ${dir}
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc STREQUAL want_rc)
  message(FATAL_ERROR "exit ${rc}, expected ${want_rc}\nstderr: ${err}")
endif()
if(NOT err STREQUAL "${want_err}\n")
  message(FATAL_ERROR "stderr:\n${err}expected:\n${want_err}")
endif()
string(REGEX REPLACE "\\.scn$" ".out" recorded ${SCENARIO})
set(want_out "")
if(EXISTS ${recorded})
  file(READ ${recorded} want_out)
endif()
if(NOT out STREQUAL want_out)
  message(FATAL_ERROR "stdout:\n${out}expected:\n${want_out}")
endif()
