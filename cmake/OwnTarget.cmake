# What every target of the project has in common.

# Puts the .cpp files at and below FOLDER into VARIABLE; an empty one stands in where there are none yet, since a
# library target needs a source.
function(mxfzelm_sources variable folder)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
    if(NOT sources)
        file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/empty.cpp" CONTENT "// No sources yet.\n")
        set(sources "${CMAKE_CURRENT_BINARY_DIR}/empty.cpp")
    endif()
    set(${variable} "${sources}" PARENT_SCOPE)
endfunction()

# Language level, warnings and platform definitions.
function(mxfzelm_own_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${MXFZELM_WERROR}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # g++ 12 warns of overlapping and endless copies inside plain std::string concatenation at -O2 and -O3.
        target_compile_options(${target} PRIVATE -Wno-restrict)
        target_link_options(${target} PRIVATE -Wno-restrict -Wno-stringop-overflow)
    endif()
    # Source files are named relative to the project in what is compiled in (__FILE__), wherever it is built.
    target_compile_options(${target} PRIVATE "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
    if(WIN32)
        target_compile_definitions(${target} PRIVATE _WIN32_WINNT=0x0601 UNICODE)
        if(NOT BUILD_SHARED_LIBS)
            # One self-contained program. With DLLs the compiler's runtime has to be shared as well, or an
            # exception could not leave the DLL that throws it: see WindowsRuntime.cmake.
            target_link_options(${target} PRIVATE -static)
        endif()
    endif()
endfunction()

# The same for a library: hidden symbols, version, the name under MXF:: for hosts.
function(mxfzelm_own_library target export_name)
    mxfzelm_own_target(${target})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${export_name}
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
        VERSION ${PROJECT_VERSION}
        # Before 1.0 a minor version may change the binary interface.
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        INSTALL_RPATH "$ORIGIN")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_INTERPROCEDURAL_OPTIMIZATION AND NOT BUILD_SHARED_LIBS)
        # A static library also links where nothing is optimised at link time, or by another version of g++.
        target_compile_options(${target} PRIVATE -ffat-lto-objects)
    endif()
    if(UNIX AND NOT APPLE AND BUILD_SHARED_LIBS)
        # Tables of virtual functions then need no look-up by name when the library is loaded.
        target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions)
    endif()
    if(MXFZELM_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()
