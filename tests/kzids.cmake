# Run with cmake -P: malformed ids of the KZ component end the configuration, good ones do not.
set(good "{0a1B2c3D-0123-4567-89ab-CDEF01234567}")
set(check "${CMAKE_CURRENT_LIST_DIR}/../cmake/VeskKzIds.cmake")
function(expect outcome setting)
    execute_process(COMMAND ${CMAKE_COMMAND} "-D${setting}" -P "${check}"
        RESULT_VARIABLE result ERROR_VARIABLE text OUTPUT_QUIET)
    string(REGEX REPLACE "=.*" "" name "${setting}")
    if((outcome STREQUAL "taken" AND NOT result EQUAL 0) OR (outcome STREQUAL "refused"
            AND (result EQUAL 0 OR NOT text MATCHES "${name} is ")))
        message(SEND_ERROR "expected to be ${outcome}: ${setting}\n${text}")
    endif()
endfunction()

foreach(id CLSID_OPENSDK IID_OPENSDK IID_PROPERTIES IID_EVENTS IID_DISPEVENTS)
    expect(taken "VESK_KZ_${id}=${good}")
    expect(refused "VESK_KZ_${id}=0a1B2c3D-0123-4567-89ab-CDEF01234567")
endforeach()
foreach(value "" "{}" "{0a1B2c3D-0123-4567-89ab-CDEF0123456}" "{0a1B2c3D-0123-4567-89ab-CDEF01234567}x"
        "{0a1B2c3D-0123-4567-89ab-CDEF0123456G}" "{0a1B2c3D-01234-567-89ab-CDEF01234567}"
        "{7a1d3c52-94b0-4e4f-8c61-2f60d5a7e904}")
    expect(refused "VESK_KZ_IID_DISPEVENTS=${value}")
endforeach()
expect(taken "VESK_KZ_DISPID_NOTIFY=200")
foreach(value "" "-1" "0x1" "2147483648")
    expect(refused "VESK_KZ_DISPID_NOTIFY=${value}")
endforeach()
