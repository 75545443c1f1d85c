# Headers, libraries, program, manual page, CMake package and pkg-config files.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/MXFZelm")
set(libraries mxfzelm)
set(header_dirs "${PROJECT_SOURCE_DIR}/include")
if(TARGET mxfzelm-dictionary)
    list(APPEND libraries mxfzelm-dictionary)
    list(APPEND header_dirs "${PROJECT_SOURCE_DIR}/dictionary/include")
endif()

install(TARGETS ${libraries} EXPORT MXFZelmTargets
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
foreach(dir IN LISTS header_dirs)
    if(EXISTS "${dir}")
        install(DIRECTORY "${dir}/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
    endif()
endforeach()
if(TARGET zelm)
    file(RELATIVE_PATH to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(zelm PROPERTIES INSTALL_RPATH "$ORIGIN/${to_lib}")
    install(TARGETS zelm)
endif()
if(EXISTS "${PROJECT_SOURCE_DIR}/docs/zelm.1")
    install(FILES "${PROJECT_SOURCE_DIR}/docs/zelm.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()

# find_package(MXFZelm)
install(EXPORT MXFZelmTargets NAMESPACE MXF:: DESTINATION "${package_dir}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/MXFZelmConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/MXFZelmConfig.cmake"
    INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/MXFZelmConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/MXFZelmConfig.cmake" "${PROJECT_BINARY_DIR}/MXFZelmConfigVersion.cmake"
    DESTINATION "${package_dir}")

# pkg-config: the prefix follows from where the .pc file stands, unless a folder was given as an absolute path.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
    set(pc_libdir "${CMAKE_INSTALL_FULL_LIBDIR}")
    set(pc_includedir "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
else()
    file(RELATIVE_PATH to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
    set(pc_prefix "\${pcfiledir}/${to_prefix}")
    set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
    set(pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
set(pc_definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(pc_definitions " -DMXFZELM_STATIC")
endif()
foreach(library IN LISTS libraries)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in" "${PROJECT_BINARY_DIR}/${library}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${library}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
