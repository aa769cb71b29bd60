# Installs a build tree into a scratch prefix and builds the C example against
# it twice, through the CMake package and through pkg-config, then runs both.
#
#   cmake -DBUILD_DIR=<build> -DSOURCE_DIR=<source> -DWORK_DIR=<scratch>
#         -DC_COMPILER=<cc> -P check_install.cmake
cmake_minimum_required(VERSION 3.25)
foreach(required BUILD_DIR SOURCE_DIR WORK_DIR C_COMPILER)
  if(NOT DEFINED ${required})
    message(FATAL_ERROR "check_install: ${required} is not set")
  endif()
endforeach()

function(run_step what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${out}\n${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

function(expect_greeting what)
  if(NOT step_output MATCHES "^vok-lite [0-9]+\\.[0-9]+\\.[0-9]+: effect applied")
    message(FATAL_ERROR "${what} printed: '${step_output}'")
  endif()
  message("${what}: ${step_output}")
endfunction()

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
run_step("install" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")
file(GLOB_RECURSE pc_files "${prefix}/*/voklite.pc")
list(GET pc_files 0 pc_file)
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
set(ENV{LD_LIBRARY_PATH} "${lib_dir}")

# CMake package.
run_step("configure with find_package(voklite)" "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/examples/c"
         -B "${WORK_DIR}/cmake-consumer" "-DCMAKE_PREFIX_PATH=${prefix}"
         "-DCMAKE_C_COMPILER=${C_COMPILER}")
run_step("build with find_package(voklite)" "${CMAKE_COMMAND}" --build "${WORK_DIR}/cmake-consumer")
run_step("run the CMake-built example" "${WORK_DIR}/cmake-consumer/effect_road")
expect_greeting("CMake package")

# pkg-config, moved prefix included: the .pc file finds its own location.
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run_step("pkg-config" pkg-config --cflags --libs voklite)
string(STRIP "${step_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run_step("compile with pkg-config" "${C_COMPILER}" -std=c99 -Wall -Wextra -pedantic
         "${SOURCE_DIR}/examples/c/effect_road.c" ${flags} -o "${WORK_DIR}/effect_road_pc")
run_step("run the pkg-config-built example" "${WORK_DIR}/effect_road_pc")
expect_greeting("pkg-config")
