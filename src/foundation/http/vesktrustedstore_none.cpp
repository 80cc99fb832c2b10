#include "foundation/http/vesktrustedstore.h"

namespace Braxel {
namespace VESK {

bool VESKTrustedStore::Lend(void* /*handle*/) {
    return false;
}

} // namespace VESK
} // namespace Braxel
