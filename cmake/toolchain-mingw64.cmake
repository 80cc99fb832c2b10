# Windows x64, built with MinGW-w64 and its POSIX threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The libraries that scripts/bootstrap has built, outside the build folder.
if(DEFINED ENV{VESK_CACHE})
    set(vesk_cache "$ENV{VESK_CACHE}")
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(vesk_cache "$ENV{XDG_CACHE_HOME}/veskcore")
else()
    set(vesk_cache "$ENV{HOME}/.cache/veskcore")
endif()

# Headers and libraries of the building machine stay out of sight.
set(CMAKE_FIND_ROOT_PATH
    /usr/x86_64-w64-mingw32 "${vesk_cache}/curl-windows" "${vesk_cache}/devkit-windows"
    "${vesk_cache}/sdl2-windows")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
