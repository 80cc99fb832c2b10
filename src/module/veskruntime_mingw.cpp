#include "module/veskruntime.h"

// libstdc++ keeps 73 KB for exceptions that are thrown when memory has run out. It offers this
// function for leak checkers, without a header.
namespace __gnu_cxx { // NOLINT(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp)
void __freeres();     // NOLINT(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp)
} // namespace __gnu_cxx

namespace Braxel {
namespace VESK {

void ReleaseRuntimeMemory() {
    __gnu_cxx::__freeres();
}

} // namespace VESK
} // namespace Braxel
