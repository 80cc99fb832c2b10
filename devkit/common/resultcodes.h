#ifndef VESK_DEVKIT_COMMON_RESULTCODES_H
#define VESK_DEVKIT_COMMON_RESULTCODES_H

#include <cstdint>
#include <string>

namespace vesk::devkit {

/// What a code says to a person. The texts begin small and have no full stop at their end.
struct Explanation {
    std::string meaning;
    std::string remedy; ///< what to do about it; empty when nothing is wrong
};

/// The code that says that nobody else was asked.
constexpr int64_t kNobody = -1;

/// A result's retCode.
Explanation explainResult(int64_t retCode);

/// A result's thirdCode. Who it is from, and so what it means, depends on the retCode beside it;
/// the meaning begins with that: "libcurl reports 77, cacert.pem cannot be read". Both are empty
/// for kNobody, and for a success.
Explanation explainOutside(int64_t retCode, int64_t thirdCode);

/// The more exact of the two remedies.
std::string remedyFor(int64_t retCode, int64_t thirdCode);

} // namespace vesk::devkit

#endif
