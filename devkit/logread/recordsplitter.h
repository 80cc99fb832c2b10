#ifndef VESK_DEVKIT_LOGREAD_RECORDSPLITTER_H
#define VESK_DEVKIT_LOGREAD_RECORDSPLITTER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// Splits at the scrambled record prefix: line ends say nothing, because scrambling makes some and
/// messages hold others.
class RecordSplitter {
public:
    /// Gets each record in its order; the bytes are valid during the call only.
    using Sink = std::function<void(const RawRecord&)>;

    explicit RecordSplitter(Sink sink);

    /// Takes the next bytes. The last record waits until the next one begins.
    void feed(std::string_view bytes);
    /// The stream ends here: hands over the record that waits. Feeding may go on afterwards; what
    /// does not begin with a prefix is foreign then.
    void flush();
    /// Ends the stream, and another file follows, of either system.
    void startAnew() {
        flush();
        mTextModeEnds = 0;
        mPlainEnds = 0;
    }

    /// Whether a record waits that ends in a line feed, so that it may be whole.
    bool waitsWithLineEnd() const;
    /// Bytes so far that belong to no record.
    uint64_t foreignBytes() const { return mForeign; }

private:
    size_t findStart(size_t from) const;
    void handOver(size_t end);
    void emit(std::string_view bytes);
    void dropConsumed();

    Sink mSink;
    std::string mBuffer;
    size_t mBegin = 0;  // of the record that waits, or of what is not looked at yet
    size_t mSearch = 0; // no record starts between mBegin and here
    bool mInRecord = false;
    uint64_t mForeign = 0;
    uint64_t mTextModeEnds = 0;
    uint64_t mPlainEnds = 0;
};

} // namespace vesk::logread

#endif
