# Runs the quillbank program once, as a black box, and compares what it did
# with the expected files of tests/data/cli/expected/.
#
# Variables (-D):
#   TOOL        the program
#   DATA        tests/data/cli
#   WORK        a folder of this case's own, emptied first; the program runs there
#   ARGS        the arguments (lists here are joined with "|")
#   INPUTS      files of DATA copied into WORK before the run
#   STDIN       a file of DATA given as standard input
#   STATUS      the expected exit status
#   STDOUT      expected standard output: a file of DATA/expected ("" means empty)
#   STDOUT_MATCHES  or a regular expression standard output must match
#   LANG        the LANG the program runs with ("C" when not given)
#   STDERR      expected standard error: a file of DATA/expected ("" means empty)
#   STDERR_MATCHES  or a regular expression standard error must match
#   SCRIPT      a shell script run (by sh, in WORK, with the program in $QB)
#               instead of the program with ARGS
#   OUTPUT      a file the run writes in WORK, compared with EXPECT_OUTPUT
#   EXPECT_OUTPUT  a file of DATA/expected, compared after masking, and its
#               CRs counted on the bytes (file(READ) drops them). Standard
#               output is compared as text, without its CRs.
#   UNCHANGED   files of WORK that must still equal their originals in DATA
#   ABSENT      files that must not exist in WORK after the run
#   FORBID      texts that must not appear in OUTPUT
#   MASK_GUIDS  when ON, every GUID becomes GUID-1, GUID-2, ... in order of
#               first appearance (so references stay visible but new
#               identifiers compare equal)
#
# Every "documentid" value is masked: it is new at every write.
#
# With the environment variable QUILLBANK_UPDATE_EXPECTED=1 the expected
# files are written from the run instead of compared (review the change!).

# Lists come joined with "|".
foreach(list ARGS INPUTS UNCHANGED ABSENT FORBID)
  string(REPLACE "|" ";" ${list} "${${list}}")
endforeach()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
foreach(input IN LISTS INPUTS)
  file(COPY "${DATA}/${input}" DESTINATION "${WORK}")
endforeach()

# The regional setting comes from the environment unless --locale names one:
# every case runs in the default one unless it names a LANG.
set(ENV{LC_ALL} "")
if(LANG)
  set(ENV{LANG} "${LANG}")
else()
  set(ENV{LANG} "C")
endif()

set(stdin_option)
if(STDIN)
  set(stdin_option INPUT_FILE "${DATA}/${STDIN}")
endif()
set(command "${TOOL}" ${ARGS})
if(SCRIPT)
  set(ENV{QB} "${TOOL}")
  set(command sh "${SCRIPT}")
endif()
execute_process(COMMAND ${command}
                WORKING_DIRECTORY "${WORK}"
                ${stdin_option}
                RESULT_VARIABLE status
                OUTPUT_VARIABLE stdout
                ERROR_VARIABLE stderr)

if(SCRIPT AND status EQUAL 77)
  message("QUILLBANK_TEST_SKIPPED: ${stderr}")
  return()
endif()

set(guid_pattern "[0-9A-Fa-f]+-[0-9A-Fa-f]+-[0-9A-Fa-f]+-[0-9A-Fa-f]+-[0-9A-Fa-f]+")

function(mask text_var)
  set(text "${${text_var}}")
  string(REGEX REPLACE "documentid=\"[^\"]*\"" "documentid=\"(masked)\"" text "${text}")
  if(MASK_GUIDS)
    string(REGEX MATCHALL "${guid_pattern}" guids "${text}")
    list(REMOVE_DUPLICATES guids)
    set(n 0)
    foreach(guid IN LISTS guids)
      math(EXPR n "${n} + 1")
      string(REPLACE "${guid}" "GUID-${n}" text "${text}")
    endforeach()
  endif()
  set(${text_var} "${text}" PARENT_SCOPE)
endfunction()

set(failures "")

# "<CR LF pairs> <lone CRs>" in a file.
function(count_crs path result)
  file(READ "${path}" hex HEX)
  string(REGEX REPLACE "(..)" "\\1 " hex "${hex}")
  string(REGEX MATCHALL "0d " crs " ${hex}")
  string(REGEX MATCHALL "0d 0a " pairs " ${hex}")
  list(LENGTH crs cr_count)
  list(LENGTH pairs pair_count)
  math(EXPR lone "${cr_count} - ${pair_count}")
  set(${result} "${pair_count} ${lone}" PARENT_SCOPE)
endfunction()
function(fail message)
  set(failures "${failures}\n${message}" PARENT_SCOPE)
endfunction()

function(compare what actual expected_name)
  if(expected_name STREQUAL "")
    set(expected "")
  else()
    set(expected_file "${DATA}/expected/${expected_name}")
    if("$ENV{QUILLBANK_UPDATE_EXPECTED}" STREQUAL "1")
      file(WRITE "${expected_file}" "${actual}")
      return()
    endif()
    if(NOT EXISTS "${expected_file}")
      set(failures "${failures}\n${what}: the expected file ${expected_file} is missing; the run gave:\n${actual}" PARENT_SCOPE)
      return()
    endif()
    file(READ "${expected_file}" expected)
    mask(expected)
  endif()
  if(NOT actual STREQUAL expected)
    set(failures "${failures}\n${what} differs.\n--- expected (${expected_name}):\n${expected}\n--- actual:\n${actual}" PARENT_SCOPE)
  endif()
endfunction()

if(NOT status STREQUAL "${STATUS}")
  fail("exit status ${status}, expected ${STATUS}")
endif()

mask(stdout)
if(DEFINED STDOUT_MATCHES)
  if(NOT stdout MATCHES "${STDOUT_MATCHES}")
    fail("standard output does not match ${STDOUT_MATCHES}:\n${stdout}")
  endif()
else()
  compare("standard output" "${stdout}" "${STDOUT}")
endif()
if(DEFINED STDERR_MATCHES)
  if(NOT stderr MATCHES "${STDERR_MATCHES}")
    fail("standard error does not match ${STDERR_MATCHES}:\n${stderr}")
  endif()
else()
  compare("standard error" "${stderr}" "${STDERR}")
endif()

if(OUTPUT)
  if(NOT EXISTS "${WORK}/${OUTPUT}")
    fail("the run wrote no ${OUTPUT}")
  else()
    file(READ "${WORK}/${OUTPUT}" written)
    foreach(text IN LISTS FORBID)
      string(FIND "${written}" "${text}" at)
      if(NOT at EQUAL -1)
        fail("${OUTPUT} still holds ${text}")
      endif()
    endforeach()
    mask(written)
    set(expected_output "${DATA}/expected/${EXPECT_OUTPUT}")
    if("$ENV{QUILLBANK_UPDATE_EXPECTED}" STREQUAL "1")
      # A byte-for-byte copy: masking happens when comparing.
      file(COPY_FILE "${WORK}/${OUTPUT}" "${expected_output}")
    elseif(NOT EXISTS "${expected_output}")
      fail("the expected file ${expected_output} is missing")
    else()
      file(READ "${expected_output}" expected)
      mask(expected)
      if(NOT written STREQUAL expected)
        fail("${OUTPUT} differs from ${EXPECT_OUTPUT}.\n--- expected:\n${expected}\n--- actual:\n${written}")
      endif()
      # file(READ) drops CRs, so they are counted on the bytes.
      count_crs("${WORK}/${OUTPUT}" actual_crs)
      count_crs("${expected_output}" expected_crs)
      if(NOT actual_crs STREQUAL expected_crs)
        fail("${OUTPUT}: ${actual_crs} CR LF pairs and lone CRs, expected ${expected_crs}")
      endif()
    endif()
  endif()
endif()

foreach(name IN LISTS UNCHANGED)
  file(SHA256 "${DATA}/${name}" before)
  file(SHA256 "${WORK}/${name}" after)
  if(NOT before STREQUAL after)
    fail("${name} was changed")
  endif()
endforeach()

foreach(name IN LISTS ABSENT)
  if(EXISTS "${WORK}/${name}")
    fail("${name} exists after the run")
  endif()
endforeach()

# No temporary file may be left behind.
file(GLOB leftovers "${WORK}/.*.tmp")
if(leftovers)
  fail("temporary files left: ${leftovers}")
endif()

if(failures)
  message(FATAL_ERROR "quillbank ${ARGS}:${failures}")
endif()
