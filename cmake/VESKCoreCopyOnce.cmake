# cmake -P VESKCoreCopyOnce.cmake FROM TO: copies a file unless there is one already.
if(NOT EXISTS "${CMAKE_ARGV4}")
    configure_file("${CMAKE_ARGV3}" "${CMAKE_ARGV4}" COPYONLY)
endif()
