# Puts the compiler's runtime DLLs beside the programs and installs them. An exception crosses from our DLL into the
# host only when both use one and the same runtime, so they share libgcc and libstdc++ instead of holding a copy each.
set(runtime_dlls "")
foreach(name libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(IS_ABSOLUTE "${path}")
        list(APPEND runtime_dlls "${path}")
    else()
        message(WARNING "${name} not found; the programs need it at run time.")
    endif()
endforeach()
file(COPY ${runtime_dlls} DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
install(FILES ${runtime_dlls} DESTINATION "${CMAKE_INSTALL_BINDIR}")
