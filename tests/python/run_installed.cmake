# Installs the build into WORK_DIR/prefix, then imports the installed module
# from a clean folder (not the build tree, not the sources) and uses it.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR}/clean)
set(prefix ${WORK_DIR}/prefix)

execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                RESULT_VARIABLE rc OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "install failed: ${err}")
endif()
if(IS_ABSOLUTE "${MODULE_DIR}")
  set(module_dir ${MODULE_DIR})
else()
  set(module_dir ${prefix}/${MODULE_DIR})
endif()
file(GLOB stub ${module_dir}/quillbank.pyi)
if(NOT stub)
  message(FATAL_ERROR "no quillbank.pyi in ${module_dir}")
endif()

set(script [=[
import sys, quillbank
assert quillbank.__file__.startswith(sys.argv[1]), quillbank.__file__
lesson = quillbank.Lesson()
lesson.title = "Installed"
copy = quillbank.Lesson.from_json(lesson.to_json())
print(copy.title, quillbank.Functions.ocx_filename())
]=])
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=PYTHONPATH PYTHONPATH=${module_dir} PYTHONNOUSERSITE=1
                        ${PYTHON} -c "${script}" ${module_dir}
                WORKING_DIRECTORY ${WORK_DIR}/clean
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0 OR NOT out MATCHES "^Installed ${prefix}")
  message(FATAL_ERROR "the installed module failed (${rc}): ${out}\n${err}")
endif()
