#ifndef VESK_TESTS_SUPPORT_WAITUNTIL_H
#define VESK_TESTS_SUPPORT_WAITUNTIL_H

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace vesk::test {

/// Asks again and again for something that does not announce itself. Throws after @p patience.
template <typename Condition>
void waitUntil(const std::string& what, Condition condition,
               std::chrono::seconds patience = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("waited in vain for " + what);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace vesk::test

#endif
