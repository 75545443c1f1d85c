# The target mxfzelm-header-only: CLI11 and nlohmann-json, for the program and the tests.
# Only the two header folders are linked into the build tree, never the folder that they stand in: a cross build
# must not see the headers of the machine that it runs on.
include_guard(GLOBAL)
add_library(mxfzelm-header-only INTERFACE)

function(mxfzelm_link_headers folder probe package)
    find_path(MXFZELM_${folder}_INCLUDE "${folder}/${probe}" PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(MXFZELM_${folder}_INCLUDE)
    if(NOT MXFZELM_${folder}_INCLUDE)
        message(FATAL_ERROR "${folder}/${probe} not found: install ${package}, or run scripts/setup.")
    endif()
    set(link "${PROJECT_BINARY_DIR}/header-only/${folder}")
    if(NOT EXISTS "${link}")
        file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/header-only")
        file(CREATE_LINK "${MXFZELM_${folder}_INCLUDE}/${folder}" "${link}" COPY_ON_ERROR SYMBOLIC)
    endif()
endfunction()

mxfzelm_link_headers(CLI CLI.hpp libcli11-dev)
mxfzelm_link_headers(nlohmann json.hpp nlohmann-json3-dev)
target_include_directories(mxfzelm-header-only SYSTEM INTERFACE "${PROJECT_BINARY_DIR}/header-only")
