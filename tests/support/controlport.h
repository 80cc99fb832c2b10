#ifndef VESK_TESTS_SUPPORT_CONTROLPORT_H
#define VESK_TESTS_SUPPORT_CONTROLPORT_H

#include <string>
#include <vector>

namespace vesk::test {

/// An answer of the dev backend's control port.
struct ControlAnswer {
    long status = 0;
    std::string body;
};

/// Asks the control port: a GET, or a POST when there is a body. Throws when nobody answers.
/// @param headers further ones, as "Name: value"
ControlAnswer callControlPort(const std::string& url, const std::string* body,
                              const std::vector<std::string>& headers = {});

} // namespace vesk::test

#endif
