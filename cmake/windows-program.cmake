# What is particular to a Windows build: which Windows versions the headers describe, one static file, DLLs that
# are not found beside the program, and the program itself.
add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX _WINSOCK_DEPRECATED_NO_WARNINGS)
add_link_options(-static)

# Some DLLs are loaded with their first call. Windows would look for iphlpapi.dll beside the program first (the others
# are known DLLs, or named with their version in the manifest), and by then the program has closed that folder to the
# search; tavrinctl loads bcrypt.dll by its full path before its first call. The dialogs' DLLs bring others along, a seventh of the program's private memory, which few runs ever need.
set(TAVRIN_DELAYED_DLLS)
foreach(dll iphlpapi comdlg32 shell32 bcrypt)
    set(library ${CMAKE_BINARY_DIR}/lib${dll}_delayed.a)
    add_custom_command(
        OUTPUT ${library}
        COMMAND ${CMAKE_DLLTOOL} --input-def ${CMAKE_CURRENT_LIST_DIR}/${dll}.def --output-delaylib ${library}
        DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${dll}.def
        VERBATIM)
    list(APPEND TAVRIN_DELAYED_DLLS ${library})
endforeach()
add_custom_target(tavrin_delayed_dlls DEPENDS ${TAVRIN_DELAYED_DLLS})

# The compiler's runtime for programs without threads: the other one, which the tests use, adds a thread library that
# suspends threads, sets the system's clock and opens other processes.
execute_process(COMMAND x86_64-w64-mingw32-g++-win32 -print-libgcc-file-name
                OUTPUT_VARIABLE TAVRIN_RUNTIME OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET TAVRIN_RUNTIME PARENT_PATH TAVRIN_RUNTIME)

# Optimised for size: most of the time is spent in system calls, and a small file is loaded faster.
function(tavrin_windows_program)
    enable_language(RC)
    target_compile_options(tavrin PRIVATE $<$<CONFIG:Release>:-Os> -ffunction-sections -fdata-sections)
    # Windows' headers take longer to read than most files of the program to compile. The native build, which has its
    # own, shows where a file forgets to include what it uses; specfile/ does not know the system.
    target_precompile_headers(tavrin PRIVATE src/platform/win32.h <functional> <map> <memory> <string> <vector>)
    file(GLOB without_windows src/specfile/*.cpp)
    set_source_files_properties(${without_windows} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
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
        $<$<CONFIG:Release>:-s> -L${TAVRIN_RUNTIME} -Wl,--gc-sections
        -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp)
    # What an exception that nobody catches would print cannot be seen without a console, and the code that makes type
    # names readable for it is an eighth of the file.
    target_link_options(tavrinconfig PRIVATE -Wl,--defsym,_ZN9__gnu_cxx27__verbose_terminate_handlerEv=abort)
    # Lists what was linked from other people's libraries, for the package's bill of materials.
    target_link_options(tavrinconfig PRIVATE -Wl,-Map=${CMAKE_BINARY_DIR}/tavrinconfig.map)
endfunction()

# Linked differently from the window's program, which asks for administrator rights and contains the icons; this one
# must start without a question.
function(tavrin_console_program)
    configure_file(src/ctl/windows/tavrinctl.rc.in ${CMAKE_BINARY_DIR}/resources/tavrinctl.rc @ONLY)
    configure_file(src/ctl/windows/tavrinctl.manifest.in ${CMAKE_BINARY_DIR}/resources/tavrinctl.manifest @ONLY)
    set_source_files_properties(${CMAKE_BINARY_DIR}/resources/tavrinctl.rc PROPERTIES
        INCLUDE_DIRECTORIES ${CMAKE_BINARY_DIR}/resources
        OBJECT_DEPENDS ${CMAKE_BINARY_DIR}/resources/tavrinctl.manifest)
    add_executable(tavrinctl ${TAVRIN_CTL_PROGRAM} ${CMAKE_BINARY_DIR}/resources/tavrinctl.rc)
    target_link_libraries(tavrinctl PRIVATE tavrin_ctl tavrin_warnings)
    set_target_properties(tavrinctl PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    target_link_options(tavrinctl PRIVATE
        -municode $<$<CONFIG:Release>:-s> -L${TAVRIN_RUNTIME} -Wl,--gc-sections
        -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp)
    target_link_options(tavrinctl PRIVATE -Wl,-Map=${CMAKE_BINARY_DIR}/tavrinctl.map)
endfunction()
