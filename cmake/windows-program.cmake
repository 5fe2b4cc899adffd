# What is particular to a Windows build: which Windows versions the headers describe, one static file, DLLs that
# are not found beside the program, and the program itself.
add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX _WINSOCK_DEPRECATED_NO_WARNINGS)
add_link_options(-static)

# The one DLL that Windows would look for beside the program first (the others are known DLLs, or named with their
# version in the manifest) is loaded with its first call, when the program has closed that folder to the search.
set(TAVRIN_IPHLPAPI ${CMAKE_BINARY_DIR}/libiphlpapi_delayed.a)
add_custom_command(
    OUTPUT ${TAVRIN_IPHLPAPI}
    COMMAND ${CMAKE_DLLTOOL} --input-def ${CMAKE_CURRENT_LIST_DIR}/iphlpapi.def --output-delaylib ${TAVRIN_IPHLPAPI}
    DEPENDS ${CMAKE_CURRENT_LIST_DIR}/iphlpapi.def
    VERBATIM)
add_custom_target(tavrin_delayed_dlls DEPENDS ${TAVRIN_IPHLPAPI})

# The compiler's runtime for programs without threads: with the other, the tests' one, comes a library of threads
# that suspends them, sets the system's clock and opens other processes.
execute_process(COMMAND x86_64-w64-mingw32-g++-win32 -print-libgcc-file-name
                OUTPUT_VARIABLE TAVRIN_RUNTIME OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET TAVRIN_RUNTIME PARENT_PATH TAVRIN_RUNTIME)

function(tavrin_windows_program)
    enable_language(RC)
    # The project's version, into the version resource and the manifest.
    set(resources ${CMAKE_BINARY_DIR}/resources)
    configure_file(src/app/tavrinconfig.manifest.in ${resources}/tavrinconfig.manifest @ONLY)
    configure_file(src/app/tavrinconfig.rc.in ${resources}/tavrinconfig.rc @ONLY)
    set_source_files_properties(${resources}/tavrinconfig.rc PROPERTIES
        INCLUDE_DIRECTORIES "${CMAKE_SOURCE_DIR}/src/app;${resources}"
        OBJECT_DEPENDS "${CMAKE_SOURCE_DIR}/src/app/tavrin.ico;${resources}/tavrinconfig.manifest")
    add_executable(tavrinconfig WIN32 src/app/entry_point.cpp ${resources}/tavrinconfig.rc)
    target_link_libraries(tavrinconfig PRIVATE tavrin tavrin_warnings)
    set_target_properties(tavrinconfig PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    target_link_options(tavrinconfig PRIVATE
        $<$<CONFIG:Release>:-s> -L${TAVRIN_RUNTIME}
        -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp)
    # What of other people's libraries went into the program; the package's bill of materials is written from it.
    target_link_options(tavrinconfig PRIVATE -Wl,-Map=${CMAKE_BINARY_DIR}/tavrinconfig.map)
endfunction()
