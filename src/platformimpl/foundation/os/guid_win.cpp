#include "platformimpl/foundation/os/guid.h"

#include <algorithm>
#include <iterator>
#include <objbase.h>

namespace Braxel {
namespace VESK {
namespace os {

bool CreateGuid(Guid& guid) {
    GUID made = {};
    if (FAILED(CoCreateGuid(&made))) {
        return false;
    }
    guid.data1 = made.Data1;
    guid.data2 = made.Data2;
    guid.data3 = made.Data3;
    std::copy(std::begin(made.Data4), std::end(made.Data4), std::begin(guid.data4));
    return true;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
