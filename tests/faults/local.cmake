# Faults of the player's machine: files, components, the clock, what the system may refuse.

# Each row is a game in a process of its own.
set(threaded_cases)
set(cases ${CMAKE_CURRENT_SOURCE_DIR}/shutdown_test.cpp)
if(NOT WIN32)
    # Not under Wine: it has a thread of its own that comes and goes, and threads are counted.
    set(threaded_cases ${CMAKE_CURRENT_SOURCE_DIR}/components_test.cpp)
    list(APPEND cases ${CMAKE_CURRENT_SOURCE_DIR}/files_test.cpp)
    if(NOT VESK_SANITIZE)
        # What is built with a sanitizer looks up its own names, and cannot be loaded without one.
        list(APPEND cases ${CMAKE_CURRENT_SOURCE_DIR}/componentfiles_test.cpp)
    endif()
endif()
vesk_add_fault_program(vesk_local_fault_tests
    SOURCES ${threaded_cases} ${cases} LIBRARIES VESKCore)
vesk_add_test_cases(faults vesk_local_fault_tests BACKEND
    SOURCES ${cases} FILES ${vesk_game_files})
vesk_add_test_cases(faults vesk_local_fault_tests BACKEND
    SOURCES ${threaded_cases} LABELS threads FILES ${vesk_game_files})

if(NOT WIN32 AND NOT VESK_SANITIZE)
    # This program brings functions of the C library, as the sanitizers do.
    set(cases
        ${CMAKE_CURRENT_SOURCE_DIR}/clock_test.cpp
        ${CMAKE_CURRENT_SOURCE_DIR}/resources_test.cpp)
    vesk_add_fault_program(vesk_system_fault_tests
        SOURCES ${cases} systemfaults_posix.cpp LIBRARIES VESKCore CURL::libcurl)
    set_source_files_properties(systemfaults_posix.cpp PROPERTIES
        COMPILE_OPTIONS -fvisibility=default)
    set_target_properties(vesk_system_fault_tests PROPERTIES ENABLE_EXPORTS ON)
    vesk_add_test_cases(faults vesk_system_fault_tests BACKEND
        SOURCES ${cases} FILES ${vesk_game_files})
    # Hundreds of logins, on a machine that may be busy.
    set_tests_properties(
        faults.ResourceFaults.RefusedMemoryAtTheFirstUseLeavesTheSdkUsable
        faults.ResourceFaults.RefusedMemoryCostsAtMostTheLogin
        PROPERTIES ENVIRONMENT VESK_CASE_SECONDS=110)
endif()

vesk_add_loading_test_program(vesk_close_fault_tests SOURCES libraryclose_test.cpp)
vesk_add_test_cases(faults vesk_close_fault_tests BACKEND
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/libraryclose_test.cpp LABELS threads FILES ${vesk_game_files})
