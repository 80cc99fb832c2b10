// Nothing but what CMake compiles the test programs' common headers with.
