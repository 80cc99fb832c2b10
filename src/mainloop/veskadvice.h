#ifndef VESK_MAINLOOP_VESKADVICE_H
#define VESK_MAINLOOP_VESKADVICE_H

#include <cstdint>
#include <utility>

namespace Braxel {
namespace VESK {

/// A row of the one table that tells what codes mean: the game reads it by vesk_describe, the dev
/// kit is built with it, and docs/codes.md is compared with it. Texts are constants; they begin
/// small and have no full stop at their end.
struct VESKAdvice {
    /// The thirdCode that says that nobody outside was asked.
    static constexpr int64_t kNobody = -1;

    /// Whose code it is.
    enum class Source { kResult, kSdk, kCurl, kHttp, kBackend };

    Source source;
    int64_t first; ///< the first code that the row is for, and the last one
    int64_t last;
    int32_t cause;      ///< VESK_CAUSE_CONFIGURATION and so on
    int32_t retryAfter; ///< milliseconds; negative when trying again needs a change to help
    const char* meaning;
    const char* remedy; ///< empty when nothing is to be done, or when the row says little

    /// As vesk_advice has it.
    const char* CauseName() const;
    /// What stands before a code in a sentence: "libcurl reports".
    const char* SourceName() const;
    /// Whether it is for the codes that no other row of its source is for.
    bool IsForOthers() const { return first == INT64_MIN; }

    /// The row of a result's retCode.
    static const VESKAdvice& OfResult(int64_t retCode);

    /// The row of a result's thirdCode. Who that is from depends on the retCode beside it.
    /// @return null when nobody outside was asked, or the two do not go together.
    static const VESKAdvice* OfOutside(int64_t retCode, int64_t thirdCode);

    /// The more exact of the two.
    static const VESKAdvice& Of(int64_t retCode, int64_t thirdCode);

    /// The table's first row, and the end.
    static std::pair<const VESKAdvice*, const VESKAdvice*> Table();
};

} // namespace VESK
} // namespace Braxel

#endif
