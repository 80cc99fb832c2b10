// A library that does nothing; it is padded to the size of the SDK's.
#include "vesk/veskexport.h"

extern "C" VESK_API void bench_nothing(void* /*argument*/) {}
