#ifndef VESK_TESTS_FAULTS_MAINLOOPTEST_H
#define VESK_TESTS_FAULTS_MAINLOOPTEST_H

#include <cstdlib>
#include <vector>

#include "faults/faulttest.h"
#include "vesk/vesk_mainloop.h"

namespace vesk::test {

/// How often: the slow cases say it themselves.
inline int rounds(int usually) {
    const char* const told = std::getenv("VESK_CASE_ROUNDS");
    return told != nullptr ? std::atoi(told) : usually;
}

struct Taken {
    int32_t kind;
    uint64_t request;
    int32_t code;

    bool operator==(const Taken& other) const {
        return kind == other.kind && request == other.request && code == other.code;
    }
};

inline void poll(std::vector<Taken>& to) {
    vesk_result* result = nullptr;
    while (vesk_next_result(&result) == 1) {
        const int32_t code = result->login != nullptr  ? result->login->ret_code
                             : result->base != nullptr ? result->base->ret_code
                                                       : result->qr_code->ret_code;
        to.push_back({result->kind, result->request, code});
        vesk_result_free(result);
    }
}

inline vesk_login_state state() {
    vesk_login_state now = {};
    now.struct_size = sizeof now;
    EXPECT_EQ(vesk_state(&now), 1);
    return now;
}

} // namespace vesk::test

#endif
