#ifndef VESK_TESTS_LOGREAD_PRODUCTLOGTEST_H
#define VESK_TESTS_LOGREAD_PRODUCTLOGTEST_H

#include "flow/messengertest.h"
#include "logread/logbytes.h"

namespace vesk::test {

/// A product that logs all it can.
class ProductLogTest : public MessengerTest {
protected:
    ProductLogTest(const char* channel, const char* simulator, const char* fileName);

    std::string log() const { return readFile(game.path() / "veskrecord.log"); }
    /// Adds the signatures and pre-codes that the log holds to these secrets, and expects each in
    /// the log and none in the redacted log.
    void expectRedacted(std::vector<std::string> secrets) const;
};

} // namespace vesk::test

#endif
