# pagamenti_add_test(<name> SOURCES <files...> [LIBS <targets...>] [GUI] [POSTGRES | SERVER]
#                    [TIMEOUT <s>])
#
# One Qt Test executable registered with CTest. Every test runs with the offscreen platform
# (widget tests need it, the others do not mind) and with its own temporary HOME and
# XDG directories, so that no test ever reads or writes the user's settings or files.
# PAGAMENTI_SOURCE_DIR tells a test where the shipped data lives.
#
# POSTGRES registers the same executable a second time, as <name>_pg, with its local
# databases on the tests' own PostgreSQL server (tests/support/pgcluster.sh, started and
# stopped by CTest around the tests that need it): one test source for both engines. SERVER
# registers it on the server only (what only a server has).

# The tests' server: a directory of the build tree and a port of its own, so that several
# build trees on one machine never meet.
set(PAGAMENTI_TEST_PG_DIR ${PROJECT_BINARY_DIR}/tests/pg)
string(MD5 pagamenti_build_hash "${PROJECT_BINARY_DIR}")
string(SUBSTRING "${pagamenti_build_hash}" 0 4 pagamenti_build_hash)
math(EXPR PAGAMENTI_TEST_PG_PORT "20000 + (0x${pagamenti_build_hash} % 20000)")

function(pagamenti_add_test name)
    cmake_parse_arguments(ARG "GUI;POSTGRES;SERVER" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
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
    set(environment "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/.config;XDG_DATA_HOME=${home}/.local/share;XDG_RUNTIME_DIR=${home}/run;LC_ALL=C.UTF-8")
    # A lock another connection holds is waited for one second, not the program's thirty.
    set(server "PAGAMENTI_TEST_ENGINE=postgresql;PAGAMENTI_TEST_PGHOST=${PAGAMENTI_TEST_PG_DIR};PAGAMENTI_TEST_PGPORT=${PAGAMENTI_TEST_PG_PORT};PGOPTIONS=-c lock_timeout=1000")
    if(ARG_SERVER)
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment};${server}"
                             TIMEOUT ${ARG_TIMEOUT} FIXTURES_REQUIRED pagamenti_pg)
        return()
    endif()
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT ${ARG_TIMEOUT})
    if(ARG_POSTGRES)
        add_test(NAME ${name}_pg COMMAND ${name})
        set_tests_properties(${name}_pg PROPERTIES ENVIRONMENT "${environment};${server}"
                             TIMEOUT ${ARG_TIMEOUT} FIXTURES_REQUIRED pagamenti_pg)
    endif()
endfunction()
