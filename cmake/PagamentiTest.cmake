# pagamenti_add_test(<name> SOURCES <files...> [LIBS <targets...>] [GUI] [TIMEOUT <s>])
#
# One Qt Test executable registered with CTest. Every test runs with the offscreen platform
# (widget tests need it, the others do not mind) and with its own temporary HOME and
# XDG directories, so that no test ever reads or writes the user's settings or files.
# PAGAMENTI_SOURCE_DIR tells a test where the shipped data lives.
function(pagamenti_add_test name)
    cmake_parse_arguments(ARG "GUI" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "pagamenti_add_test(${name}): unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT ARG_SOURCES)
        message(FATAL_ERROR "pagamenti_add_test(${name}): SOURCES is required")
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test pagamenti_testsupport ${ARG_LIBS})
    if(ARG_GUI)
        target_link_libraries(${name} PRIVATE Qt6::Widgets)
    endif()
    target_compile_definitions(${name} PRIVATE PAGAMENTI_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                               PAGAMENTI_BINARY_DIR="${PROJECT_BINARY_DIR}")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name})
    set(home ${PROJECT_BINARY_DIR}/tests/home/${name})
    file(MAKE_DIRECTORY ${home})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/.config;XDG_DATA_HOME=${home}/.local/share;XDG_RUNTIME_DIR=${home}/run;LC_ALL=C.UTF-8"
        TIMEOUT ${ARG_TIMEOUT})
endfunction()
