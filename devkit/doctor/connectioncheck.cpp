#include "connectioncheck.h"

#include <algorithm>
#include <cstdlib>

namespace vesk::doctor {

namespace {

using Step = Connection::Step;

// Requests carry the time. Backends usually refuse one that is off by more than five minutes.
constexpr int64_t kNoticeableSkew = 30;
constexpr int64_t kRefusedSkew = 300;
constexpr int64_t kSoon = 14 * 86400;

std::string seenAsThirdCode(const Connection& connection) {
    return connection.error + " (the game sees thirdCode " + std::to_string(connection.code) + ")";
}

Finding checkName(const BackendAddress& address, const Connection& connection) {
    if (connection.reached > Step::Name) {
        return ok("name", address.host() + " is known" +
                              (connection.address.empty() ? "" : ", " + connection.address));
    }
    if (connection.proxyName) {
        return problem("name", "the proxy's name is unknown: " + seenAsThirdCode(connection),
                       "Correct the proxy that the environment names; see the check \"proxy\".");
    }
    return problem("name", seenAsThirdCode(connection),
                   "Compare VESK_URL with the backend's address. If it is right, this computer's "
                   "network or its name server (DNS) is not in order.");
}

Finding checkReach(const BackendAddress& address, const Connection& connection) {
    if (connection.reached > Step::Connect) {
        return ok("connection", "port " + address.port() + " answers");
    }
    return problem("connection", seenAsThirdCode(connection),
                   "The backend is down, VESK_URL names a wrong port, or a firewall or proxy is in "
                   "between. Open VESK_URL in a browser on this computer.");
}

bool isTrustedBy(const Pem& trusted, const std::vector<Certificate>& chain) {
    return std::any_of(chain.begin(), chain.end(), [&](const Certificate& certificate) {
        return std::any_of(
            trusted.certificates.begin(), trusted.certificates.end(),
            [&](const Certificate& authority) { return certificate.isFrom(authority); });
    });
}

Finding checkRefusal(const Connection& connection, const Pem& trusted) {
    const std::string words = seenAsThirdCode(connection);
    if (connection.noTrust) {
        return problem("certificate", words,
                       "cacert.pem is missing or damaged; see the check \"cacert.pem\".");
    }
    if (!connection.untrusted || connection.certificates.empty()) {
        return problem("certificate", words,
                       "Something speaks other than TLS on that port, or breaks the connection. "
                       "Compare VESK_URL's scheme and port with the backend's, and look for a "
                       "proxy or a virus scanner in between.");
    }
    const Certificate& own = connection.certificates.front();
    if (connection.ownTime > own.end() || connection.ownTime < own.begin()) {
        return problem("certificate",
                       "the backend's is valid from " + dayText(own.begin()) + " until " +
                           dayText(own.end()) + ", and here it is " + dayText(connection.ownTime),
                       "If this computer's date is right, the operator of the backend has to renew "
                       "the certificate.");
    }
    if (!isTrustedBy(trusted, connection.certificates)) {
        return problem(
            "certificate",
            "the backend's is from \"" + connection.certificates.back().issuer() +
                "\", which is not in cacert.pem: " + words,
            "Put that authority's certificate into cacert.pem if it is the backend's own "
            "(its operator knows). If not, a proxy or a virus scanner is in between.");
    }
    return problem("certificate", words,
                   "The certificate's authority is in cacert.pem, so VESK_URL may name another "
                   "host than the certificate does, or cacert.pem is from another backend whose "
                   "authority has the same name.");
}

Finding checkCertificate(const Connection& connection, const Pem& trusted) {
    if (connection.reached == Step::Secure) {
        return checkRefusal(connection, trusted);
    }
    if (connection.certificates.empty()) {
        return ok("certificate", "trusted");
    }
    const int64_t end = connection.certificates.front().end();
    const std::string found = "trusted, valid until " + dayText(end);
    if (end - connection.ownTime < kSoon) {
        return warning("certificate", found,
                       "The operator of the backend has to renew it in time.");
    }
    return ok("certificate", found);
}

Finding checkAnswer(const Connection& connection) {
    if (connection.reached == Step::Answer) {
        return problem("answer", seenAsThirdCode(connection),
                       "The backend takes connections but does not answer. Compare VESK_URL's "
                       "scheme (https or http) and port with the backend's; its operator's log "
                       "tells the rest.");
    }
    const std::string found = "HTTP status " + std::to_string(connection.status) + " after " +
                              std::to_string(connection.milliseconds) + " ms";
    if (!connection.location.empty()) {
        return warning("answer", found + ", which leads to \"" + connection.location + "\"",
                       "Set VESK_URL to the address that answers by itself.");
    }
    if (connection.status >= 500) {
        return warning("answer", found, "The backend has a fault of its own: ask its operator.");
    }
    return ok("answer", found);
}

Finding checkClock(const Connection& connection) {
    if (!connection.backendTime) {
        return warning("clock", "the backend's answer has no \"Date\" to compare with",
                       "Compare this computer's clock with another one.");
    }
    const int64_t ahead = connection.ownTime - *connection.backendTime;
    const std::string found = "this computer's is " + std::to_string(std::abs(ahead)) +
                              (ahead < 0 ? " seconds behind" : " seconds ahead of") +
                              " the backend's";
    const std::string remedy =
        "Set this computer's clock, best by letting it ask a time server. If "
        "it is right, the backend's is not: tell its operator.";
    if (std::abs(ahead) > kRefusedSkew) {
        return problem("clock", found + "; a backend usually refuses requests beyond 300", remedy);
    }
    if (std::abs(ahead) > kNoticeableSkew) {
        return warning("clock", found + "; a backend usually refuses requests beyond 300", remedy);
    }
    return ok("clock", found);
}

} // namespace

Findings checkConnection(const BackendAddress& address, const Connection& connection,
                         const Pem& trusted) {
    Findings findings = {checkName(address, connection)};
    if (connection.reached > Step::Name) {
        findings.push_back(checkReach(address, connection));
    }
    if (connection.reached > Step::Connect && address.isSecure()) {
        findings.push_back(checkCertificate(connection, trusted));
    }
    if (connection.reached > Step::Secure) {
        findings.push_back(checkAnswer(connection));
    }
    if (connection.reached == Step::Done) {
        findings.push_back(checkClock(connection));
    }
    return findings;
}

} // namespace vesk::doctor
