#include "recordfilter.h"

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr std::string_view kLevels = "DIWE";

/// Ids end in a counter: "...-1" is not in "...-12".
bool holdsId(std::string_view text, std::string_view id) {
    for (size_t at = text.find(id); at != std::string_view::npos; at = text.find(id, at + 1)) {
        const size_t end = at + id.size();
        if ((at == 0 || !devkit::isDigit(text[at - 1])) &&
            (end == text.size() || !devkit::isDigit(text[end]))) {
            return true;
        }
    }
    return false;
}

} // namespace

bool RecordFilter::passes(const LogRecord& record) {
    mIsTime = record.time.empty() ? mIsTime : record.time >= mSince;
    if (!mSince.empty() && !mIsTime) {
        return false;
    }
    const size_t wanted = kLevels.find(mLevel);
    const size_t level = record.level == 0 ? 0 : kLevels.find(record.level);
    return level >= wanted && (mSequenceId.empty() || holdsId(record.message, mSequenceId));
}

} // namespace vesk::logread
