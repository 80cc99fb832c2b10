#ifndef VESK_DEVKIT_COMMON_RESULTCODES_H
#define VESK_DEVKIT_COMMON_RESULTCODES_H

#include <string>

#include "mainloop/veskadvice.h"

namespace vesk::devkit {

/// The product's own table of codes, which vesk_describe reads, too.
using Advice = Braxel::VESK::VESKAdvice;

/// What a result's thirdCode says and who says it: "libcurl reports 77, cacert.pem cannot be read".
/// Empty when nobody outside was asked, and for a success.
inline std::string outsideMeaning(int64_t retCode, int64_t thirdCode) {
    const Advice* advice = Advice::OfOutside(retCode, thirdCode);
    return advice == nullptr ? ""
                             : std::string(advice->SourceName()) + ' ' + std::to_string(thirdCode) +
                                   ", " + advice->meaning;
}

} // namespace vesk::devkit

#endif
