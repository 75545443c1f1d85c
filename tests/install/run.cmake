# Installs the build into an empty folder, moves the result elsewhere (an installed copy may be moved), holds the
# list of installed headers against the sources, and builds and runs the host in this folder against it: once
# through find_package, once through pkg-config. Run by CTest, which passes the settings of the build.
cmake_minimum_required(VERSION 3.25)

set(work "${BINARY_DIR}/install-test")
set(prefix "${work}/moved")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")

function(step what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message("${output}")
        message(FATAL_ERROR "${what} failed (${result})")
    endif()
    message(STATUS "${what}: good")
endfunction()

step("install" "${CMAKE_COMMAND}" --install "${BINARY_DIR}" --config "${CONFIG}" --prefix "${work}/installed")
file(RENAME "${work}/installed" "${prefix}")

# The headers: all of them, and nothing else.
file(GLOB_RECURSE expected RELATIVE "${SOURCE_DIR}/include" "${SOURCE_DIR}/include/*.h")
if(DICTIONARY)
    set(dictionary_include "${SOURCE_DIR}/dictionary/include")
    file(GLOB_RECURSE more RELATIVE "${dictionary_include}" "${dictionary_include}/*.h")
    list(APPEND expected ${more})
endif()
file(GLOB_RECURSE installed RELATIVE "${prefix}/${INCLUDEDIR}" "${prefix}/${INCLUDEDIR}/*")
list(SORT expected)
list(SORT installed)
if(NOT installed STREQUAL expected)
    set(missing "${expected}")
    set(surplus "${installed}")
    list(REMOVE_ITEM missing ${installed} "")
    list(REMOVE_ITEM surplus ${expected} "")
    message(FATAL_ERROR "installed headers differ from the sources: missing [${missing}], surplus [${surplus}]")
endif()
list(LENGTH installed count)
message(STATUS "${count} headers installed")

step("configure the host by find_package"
    "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/install" -B "${work}/host" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" "-DINSTALLED_INCLUDE=${prefix}/${INCLUDEDIR}"
    "-DEXPECT_DICTIONARY=${DICTIONARY}")
step("build it, and each installed header alone" "${CMAKE_COMMAND}" --build "${work}/host")
step("run it" "${work}/host/host")

find_program(pkg_config pkg-config)
if(NOT pkg_config)
    message(FATAL_ERROR "pkg-config not found: run scripts/setup")
endif()
set(packages mxfzelm)
if(DICTIONARY)
    list(APPEND packages mxfzelm-dictionary)
endif()
set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
execute_process(COMMAND "${pkg_config}" --cflags --libs ${packages}
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
step("build the host by pkg-config"
    "${CXX}" ${cxx_flags} -std=c++20 "${SOURCE_DIR}/tests/install/main.cpp" ${flags} -o "${work}/host-by-pkg-config")
set(ENV{LD_LIBRARY_PATH} "${prefix}/${LIBDIR}")
step("run it" "${work}/host-by-pkg-config")
