# The command line. Its commands are a library of their own, which is not part of the window's program.

# A compiler for Windows must not find the host's headers, so it gets only the own folder of a header-only library.
if(NOT EXISTS /usr/include/nlohmann/json.hpp)
    message(FATAL_ERROR "nlohmann-json is not installed, see script/setup")
endif()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
file(CREATE_LINK /usr/include/nlohmann ${CMAKE_BINARY_DIR}/headers/nlohmann SYMBOLIC)
add_library(tavrin_json INTERFACE)
target_include_directories(tavrin_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
# Without its streams, which would add the locales to the program.
target_compile_definitions(tavrin_json INTERFACE JSON_NO_IO)

if(WIN32)
    set(platform windows)
    set(other_platform linux)
else()
    set(platform linux)
    set(other_platform windows)
endif()
file(GLOB_RECURSE TAVRIN_CTL_SOURCES CONFIGURE_DEPENDS src/ctl/*.cpp)
list(FILTER TAVRIN_CTL_SOURCES EXCLUDE REGEX "/${other_platform}/")
set(TAVRIN_CTL_PROGRAM src/ctl/${platform}/main.cpp)
list(FILTER TAVRIN_CTL_SOURCES EXCLUDE REGEX "src/ctl/${platform}/")
if(NOT WIN32)
    add_executable(make_code_pages cmake/code_pages.cpp)
    target_link_libraries(make_code_pages PRIVATE tavrin_warnings)
    set(TAVRIN_CODE_PAGES ${CMAKE_BINARY_DIR}/code_pages.cpp)
    add_custom_command(OUTPUT ${TAVRIN_CODE_PAGES} COMMAND make_code_pages ${TAVRIN_CODE_PAGES}
                       DEPENDS make_code_pages VERBATIM)
    list(APPEND TAVRIN_CTL_SOURCES ${TAVRIN_CODE_PAGES})
endif()
add_library(tavrin_ctl ${TAVRIN_CTL_SOURCES})
target_link_libraries(tavrin_ctl PUBLIC tavrin tavrin_json PRIVATE tavrin_warnings)
if(NOT WIN32)
    # SHA-256. Small, and without obligations for a program that links it statically.
    find_library(TAVRIN_DIGESTS libmd.a REQUIRED)
    target_link_libraries(tavrin_ctl PUBLIC ${TAVRIN_DIGESTS})
endif()
set_source_files_properties(src/ctl/program.cpp src/ctl/machine/identity.cpp src/ctl/check/check_report.cpp PROPERTIES COMPILE_DEFINITIONS TAVRIN_VERSION="${PROJECT_VERSION}")

if(WIN32)
    target_compile_options(tavrin_ctl PRIVATE $<$<CONFIG:Release>:-Os> -ffunction-sections -fdata-sections)
    target_precompile_headers(tavrin_ctl PRIVATE src/platform/win32.h <functional> <map> <memory> <string> <vector>)
    tavrin_console_program()
else()
    # Built only from the sources on this list, which do not use Windows.
    file(GLOB portable CONFIGURE_DEPENDS src/specfile/*.cpp src/ctl/*.cpp src/ctl/check/*.cpp src/ctl/template/*.cpp
         src/ctl/template/linux/*.cpp
         src/ctl/diff/*.cpp src/ctl/verbs/diff.cpp src/ctl/io/*.cpp src/ctl/linux/*.cpp src/ctl/io/linux/*.cpp)
    add_executable(tavrinctl ${portable} ${TAVRIN_CODE_PAGES} src/base/text.cpp src/ctl/verbs/verbs.cpp src/ctl/verbs/check.cpp
                   src/ctl/verbs/template.cpp src/ctl/verbs/completion.cpp src/ctl/change/state_file.cpp src/ctl/change/state_check.cpp
                   src/ctl/machine/entry_index.cpp)
    target_include_directories(tavrinctl PRIVATE src)
    target_link_libraries(tavrinctl PRIVATE tavrin_json ${TAVRIN_DIGESTS} tavrin_warnings)
    set_target_properties(tavrinctl PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    if(TAVRIN_STATIC)
        target_compile_options(tavrinctl PRIVATE -Os -fPIE -ffunction-sections -fdata-sections)
        target_link_options(tavrinctl PRIVATE -static-pie -s -Wl,--gc-sections -Wl,-Map=${CMAKE_BINARY_DIR}/tavrinctl.map)
    endif()
endif()
