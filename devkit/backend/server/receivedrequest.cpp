#include "server/receivedrequest.h"

namespace vesk::backend {

std::string ReceivedRequest::path() const {
    return target.substr(0, target.find('?'));
}

std::string ReceivedRequest::query() const {
    const size_t mark = target.find('?');
    return mark == std::string::npos ? std::string() : target.substr(mark + 1);
}

} // namespace vesk::backend
