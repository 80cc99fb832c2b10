# Faults of the player's machine: files, components, the clock, what the system may refuse.
set(support ${PROJECT_SOURCE_DIR}/tests/support)

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

# This program loads the library at run time, as vesk_unload_test does.
vesk_add_test_program(vesk_close_fault_tests
    SOURCES
        libraryclose_test.cpp
        ${support}/loadedlibrary_${platform}.cpp
        ${support}/loadedsdk.cpp
        ${support}/recordingobserver.cpp
        ${PROJECT_SOURCE_DIR}/src/login/veskloginobserver.cpp
        ${PROJECT_SOURCE_DIR}/src/login/veskstring.cpp
    LIBRARIES vesk_test_support ${CMAKE_DL_LIBS})
target_compile_definitions(vesk_close_fault_tests PRIVATE VESK_STATIC)
target_include_directories(vesk_close_fault_tests PRIVATE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
add_dependencies(vesk_close_fault_tests VESKCore)
vesk_add_test_cases(faults vesk_close_fault_tests BACKEND
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/libraryclose_test.cpp LABELS threads FILES ${vesk_game_files})
