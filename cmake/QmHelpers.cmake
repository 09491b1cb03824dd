# qm_add_tests(LIBS <targets...> FILES <x_test.cpp...> [LABELS <labels...>])
#
# One executable and one CTest entry per test file, named after its path
# below tests/ (tests/player/transport_test.cpp -> player_transport_test).
# Every test runs offscreen, with D-Bus off, and gets the built program
# folder in QM_PROGRAM_TEMPLATE so it can copy it to a temporary place.
function(qm_add_tests)
    cmake_parse_arguments(ARG "" "TIMEOUT" "LIBS;FILES;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    file(RELATIVE_PATH rel ${CMAKE_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "_" prefix "${rel}")
    foreach(file ${ARG_FILES})
        get_filename_component(stem ${file} NAME_WE)
        if(prefix)
            set(name ${prefix}_${stem})
        else()
            set(name ${stem})
        endif()
        add_executable(${name} ${file})
        target_link_libraries(${name} PRIVATE qm_common qm_testsupport ${ARG_LIBS})
        set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
        add_dependencies(${name} qm_program_folder)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES
            TIMEOUT ${ARG_TIMEOUT}
            LABELS "${ARG_LABELS}"
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;DBUS_SESSION_BUS_ADDRESS=disabled:;QM_PROGRAM_TEMPLATE=${QM_PROGRAM_DIR};QM_SOURCE_DIR=${CMAKE_SOURCE_DIR}")
    endforeach()
endfunction()
