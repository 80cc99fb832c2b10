# The ids of the KZ messenger's component come from its maker: docs/kz-component.md. One that COM cannot
# read would be all zeroes at run time, and two that are alike would be answered by the wrong interface.
set(vesk_kz_ids
    VESK_KZ_CLSID_OPENSDK
    VESK_KZ_IID_OPENSDK
    VESK_KZ_IID_PROPERTIES
    VESK_KZ_IID_EVENTS
    VESK_KZ_IID_DISPEVENTS)

# Those that are not given are the simulator's.
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/../src/thirdsdk/kz/kzopensdk.h" lines REGEX "#define VESK_KZ_.*ID_")
set(seen)
foreach(id IN LISTS vesk_kz_ids)
    set(value "${${id}}")
    if(NOT DEFINED ${id})
        string(REGEX MATCH "${id} \"([^\"]*)\"" found "${lines}")
        set(value "${CMAKE_MATCH_1}")
    endif()
    string(REPEAT "[0-9A-Fa-f]" 4 hex)
    if(NOT "${value}" MATCHES "^{${hex}${hex}-${hex}-${hex}-${hex}-${hex}${hex}${hex}}$")
        message(FATAL_ERROR "${id} is \"${value}\", and not an id like "
            "{01234567-89AB-CDEF-0123-456789ABCDEF}")
    endif()
    string(TOUPPER "${value}" value)
    list(FIND seen "${value}" before)
    if(NOT before EQUAL -1)
        message(FATAL_ERROR "${id} is ${value}, which is another interface's id already")
    endif()
    list(APPEND seen "${value}")
endforeach()
if(DEFINED VESK_KZ_DISPID_NOTIFY AND (NOT "${VESK_KZ_DISPID_NOTIFY}" MATCHES "^[0-9]+$"
        OR "${VESK_KZ_DISPID_NOTIFY}" GREATER 2147483647))
    message(FATAL_ERROR "VESK_KZ_DISPID_NOTIFY is \"${VESK_KZ_DISPID_NOTIFY}\", and not a number from "
        "0 to 2147483647")
endif()

# Builds TARGET, and what links it, with the ids that were given. Both sides of the contract need it.
function(vesk_use_kz_ids target)
    foreach(id IN LISTS vesk_kz_ids)
        if(DEFINED ${id})
            target_compile_definitions(${target} PUBLIC "${id}=\"${${id}}\"")
        endif()
    endforeach()
    if(DEFINED VESK_KZ_DISPID_NOTIFY)
        target_compile_definitions(${target} PUBLIC VESK_KZ_DISPID_NOTIFY=${VESK_KZ_DISPID_NOTIFY})
    endif()
endfunction()
