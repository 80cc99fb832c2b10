#include "ids.h"

#include <objbase.h>

#include "text.h"

namespace vesk::kzsim {

GUID idOf(const char* text) {
    GUID id = {};
    IIDFromString(toWide(text).c_str(), &id);
    return id;
}

} // namespace vesk::kzsim
