# The project's libraries, from the bottom up. A library may link only libraries listed before
# it: logic never depends on windows, and no room reaches into a room above it.
# pagamenti_check_layers() fails the configuration when a link breaks that rule, or when a
# library of the project is not in the list.
set(PAGAMENTI_LAYERS
    # shared types and helpers, start-up and environment, the local database
    pagamenti_core
    pagamenti_startup
    pagamenti_localdb
    # the suite's archives: store, text form, demo; the record-manager library over the store
    pagamenti_archives
    pagamenti_archivetext
    pagamenti_demo
    tqzdbm32
    # the distinta and the clerk's settings
    pagamenti_distinta
    pagamenti_lists
    # widgets shared by every window
    pagamenti_ui
    # the rules of the editor's rooms, printing, checks and the bank file
    pagamenti_selection
    pagamenti_rowlist
    pagamenti_detail
    pagamenti_printing
    pagamenti_checks
    pagamenti_bankfile
    pagamenti_editor
    # the windows
    pagamenti_lists_ui
    pagamenti_selection_ui
    pagamenti_rowlist_ui
    pagamenti_detail_ui
    pagamenti_checks_ui
    pagamenti_bankfile_ui
    pagamenti_editor_ui
    pagamenti_printing_ui
    # the two programs
    pagamenti_cli
    pagamenti_application
    pagamenti-cli
    pagamenti
)

function(pagamenti_check_layers)
    set(problems "")
    set(below "")
    foreach(target IN LISTS PAGAMENTI_LAYERS)
        if(NOT TARGET ${target})
            string(APPEND problems "  ${target} is listed but not defined\n")
            continue()
        endif()
        get_target_property(links ${target} LINK_LIBRARIES)
        if(links)
            foreach(link IN LISTS links)
                if(link MATCHES "^(pagamenti|tqzdbm32)" AND NOT link MATCHES "_resources_[0-9]+$"
                   AND NOT link IN_LIST below)
                    string(APPEND problems "  ${target} links ${link}, which is not below it\n")
                endif()
            endforeach()
        endif()
        list(APPEND below ${target})
    endforeach()
    # Every library under src/ must have its place in the list.
    get_property(dirs DIRECTORY ${PROJECT_SOURCE_DIR}/src PROPERTY SUBDIRECTORIES)
    set(pending ${dirs})
    while(pending)
        list(POP_FRONT pending dir)
        get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
        foreach(target IN LISTS targets)
            get_target_property(type ${target} TYPE)
            if(type MATCHES "LIBRARY|EXECUTABLE" AND target MATCHES "^(pagamenti|tqzdbm32)"
               AND NOT target MATCHES "_resources_[0-9]+$" AND NOT target IN_LIST PAGAMENTI_LAYERS)
                string(APPEND problems "  ${target} (${dir}) has no place in PAGAMENTI_LAYERS\n")
            endif()
        endforeach()
        get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
        list(APPEND pending ${subdirs})
    endwhile()
    if(problems)
        message(FATAL_ERROR "The libraries' layers are broken (cmake/PagamentiLayers.cmake):\n${problems}")
    endif()
endfunction()
