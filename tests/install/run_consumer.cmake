# Installs the built library into WORK_DIR/prefix, then configures, builds and
# runs the consumer project against it, once through find_package and once
# through pkg-config.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "Command failed (${rc}): ${ARGV}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
if(NOT last_output MATCHES "00000000-0000-0000-0000-000000000000")
  message(FATAL_ERROR "The consumer printed: ${last_output}")
endif()

# pkg-config
set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig:${prefix}/lib/x86_64-linux-gnu/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs quillbank
                RESULT_VARIABLE rc OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know quillbank")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
find_program(CXX NAMES c++ g++ REQUIRED)
run(${CXX} -std=c++20 ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/consumer_pc ${flags})
file(GLOB libdirs ${prefix}/lib ${prefix}/lib/x86_64-linux-gnu)
string(REPLACE ";" ":" libpath "${libdirs}")
set(ENV{LD_LIBRARY_PATH} "${libpath}")
run(${WORK_DIR}/consumer_pc)
if(NOT last_output MATCHES "00000000-0000-0000-0000-000000000000")
  message(FATAL_ERROR "The pkg-config consumer printed: ${last_output}")
endif()
