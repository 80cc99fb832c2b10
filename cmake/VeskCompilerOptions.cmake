# One interface target carries what every target of the project is compiled with.
find_package(Threads REQUIRED)

add_library(vesk_options INTERFACE)
target_link_libraries(vesk_options INTERFACE Threads::Threads)
if(MSVC)
    target_compile_options(vesk_options INTERFACE /W4 /utf-8 /Zc:__cplusplus)
    target_compile_definitions(vesk_options INTERFACE NOMINMAX _CRT_SECURE_NO_WARNINGS)
else()
    target_compile_options(vesk_options INTERFACE
        -Wall -Wextra -Wpedantic -fvisibility=hidden
        $<$<COMPILE_LANGUAGE:CXX>:-fvisibility-inlines-hidden>
        # Log lines and debug information know their source file. Where it was built is nobody's business,
        # and the same sources shall give the same bytes in every folder.
        "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${PROJECT_BINARY_DIR}=.")
    if(DEFINED vesk_cache) # by the toolchain file
        target_compile_options(vesk_options INTERFACE "-ffile-prefix-map=${vesk_cache}/=")
    endif()
endif()
if(MINGW)
    # And at every time.
    target_link_options(vesk_options INTERFACE -Wl,--no-insert-timestamp)
endif()

if(VESK_WARNINGS_ARE_ERRORS)
    target_compile_options(vesk_options INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()

# Programs find the library beside themselves, so that they can be copied together.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

if(VESK_SANITIZE)
    target_compile_options(vesk_options INTERFACE
        -fsanitize=${VESK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vesk_options INTERFACE -fsanitize=${VESK_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND VESK_SANITIZE MATCHES "undefined")
        # rapidjson's growing stack offsets a null pointer by zero. The simulated Ferno component
        # passes lengths of 64 bits where the SDK takes the low 32, as real ones may.
        target_compile_options(vesk_options INTERFACE -fno-sanitize=pointer-overflow,function)
    endif()
endif()
