# What is particular to a Windows build: which Windows versions the headers describe, one static file, and the
# program itself.
add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX _WINSOCK_DEPRECATED_NO_WARNINGS)
add_link_options(-static)

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
    target_link_options(tavrinconfig PRIVATE -s)
endfunction()
