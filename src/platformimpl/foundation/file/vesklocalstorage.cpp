#include "platformimpl/foundation/file/vesklocalstorage.h"

namespace Braxel {
namespace VESK {

std::string VESKLocalStorage::Read(const std::string& /*key*/) {
    return {};
}

void VESKLocalStorage::Write(const std::string& /*key*/, const std::string& /*value*/) {}

std::string VESKLocalStorage::ConfigPath() {
    return {};
}

} // namespace VESK
} // namespace Braxel
