# What is particular to a Windows build: which Windows versions the headers describe, one static file, and the
# program itself.
add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX _WINSOCK_DEPRECATED_NO_WARNINGS)
add_link_options(-static)

function(tavrin_windows_program)
    enable_language(RC)
    add_executable(tavrinconfig WIN32 src/app/entry_point.cpp src/app/tavrinconfig.rc)
    target_link_libraries(tavrinconfig PRIVATE tavrin tavrin_warnings)
    set_target_properties(tavrinconfig PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    target_link_options(tavrinconfig PRIVATE -s)
endfunction()
