#include <algorithm>
#include <cstdlib>
#include <curl/curl.h>

#include "doctor.h"

namespace vesk::doctor {

namespace {

using Step = Connection::Step;

// Requests carry the time. Backends usually refuse one that is off by more than five minutes.
constexpr int64_t kNoticeableSkew = 30;
constexpr int64_t kRefusedSkew = 300;
constexpr int64_t kSoon = 14 * 86400;

/// What libcurl says, and the number by which the game's log and the docs know it.
std::string curlSays(const Connection& connection) {
    return "libcurl reports " + std::to_string(connection.code) +
           " (the game's thirdCode): " + connection.error;
}

Finding checkProxy(const BackendAddress& address, const Connection& connection) {
    if (connection.proxy.empty()) {
        return ok("proxy", "the environment names none for this address");
    }
    return warning("proxy",
                   connection.proxyVariable + " is " + BackendAddress(connection.proxy).shown +
                       ": requests go through it",
                   "If that is not wanted, remove the variable, or add " + address.host +
                       " to no_proxy.");
}

Finding checkName(const BackendAddress& address, const Connection& connection) {
    if (connection.reached > Step::Name) {
        return ok("name",
                  address.host + " is known" +
                      (connection.address.empty() ? "" : ", " + connection.address),
                  address.host + " is known");
    }
    if (connection.code == CURLE_COULDNT_RESOLVE_PROXY) {
        return problem("name", "the proxy's name is unknown: " + curlSays(connection),
                       "Correct the proxy that the environment names; see the check \"proxy\".");
    }
    return problem("name", curlSays(connection),
                   "Compare VESK_URL with the backend's address. If it is right, this computer's "
                   "network or its name server (DNS) is not in order.");
}

Finding checkReach(const BackendAddress& address, const Connection& connection) {
    if (connection.reached > Step::Connect) {
        const std::string found = "port " + address.port + " answers";
        return ok("connection", found, found);
    }
    if (address.isLocal() && connection.proxy.empty()) {
        return problem("connection", curlSays(connection),
                       "Nothing listens there. Start the backend on this computer, vesk-devbackend "
                       "--port " +
                           address.port + ", or write another address for VESK_URL.");
    }
    return problem("connection", curlSays(connection),
                   "The backend is down, VESK_URL names a wrong port, or a firewall or proxy is in "
                   "between. Open VESK_URL in a browser on this computer.");
}

bool isTrustedBy(const PemFile& trusted, const std::vector<Certificate>& chain) {
    return std::any_of(chain.begin(), chain.end(), [&](const Certificate& certificate) {
        return std::any_of(
            trusted.certificates.begin(), trusted.certificates.end(),
            [&](const Certificate& authority) { return authority.subject == certificate.issuer; });
    });
}

Finding checkRefusal(const Connection& connection, const PemFile& trusted) {
    const std::string words = curlSays(connection);
    if (connection.code == CURLE_SSL_CACERT_BADFILE) {
        return problem("certificate", words,
                       "cacert.pem is missing or damaged; see the check \"cacert.pem\".");
    }
    if (connection.code != CURLE_PEER_FAILED_VERIFICATION || connection.certificates.empty()) {
        return problem("certificate", words,
                       "Something speaks other than TLS on that port, or breaks the connection. "
                       "Compare VESK_URL's scheme and port with the backend's, and look for a "
                       "proxy or a virus scanner in between.");
    }
    const Certificate& own = connection.certificates.front();
    if (connection.ownTime > own.end || connection.ownTime < own.begin) {
        return problem("certificate",
                       "the backend's is valid from " + dayText(own.begin) + " until " +
                           dayText(own.end) + ", and here it is " + dayText(connection.ownTime),
                       "If this computer's date is right, the operator of the backend has to renew "
                       "the certificate.");
    }
    if (!isTrustedBy(trusted, connection.certificates)) {
        return problem(
            "certificate",
            "the backend's is from \"" + connection.certificates.back().issuer +
                "\", which is not in cacert.pem: " + words,
            "Put that authority's certificate into cacert.pem if it is the backend's own "
            "(its operator knows). If not, a proxy or a virus scanner is in between.");
    }
    // Both TLS libraries speak of the name that does not match, each in its own words.
    const bool otherName = connection.error.find("host") != std::string::npos;
    return problem("certificate", words,
                   otherName ? "VESK_URL names another host than the certificate does: write the "
                               "host for which it was made."
                             : "An authority of that name is in cacert.pem, but not the one that "
                               "made this certificate: take cacert.pem from this backend's "
                               "operator.");
}

Finding checkCertificate(const Connection& connection, const PemFile& trusted) {
    if (connection.reached == Step::Secure) {
        return checkRefusal(connection, trusted);
    }
    if (connection.certificates.empty()) {
        return ok("certificate", "trusted", "its certificate is trusted");
    }
    const int64_t end = connection.certificates.front().end;
    const std::string found = "trusted, valid until " + dayText(end);
    if (end - connection.ownTime < kSoon) {
        return warning("certificate", found,
                       "The operator of the backend has to renew it in time.");
    }
    return ok("certificate", found, "its certificate is " + found);
}

Finding checkAnswer(const Connection& connection) {
    if (connection.reached == Step::Answer) {
        return problem("answer", curlSays(connection),
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
    return ok("answer", found,
              "it has answered after " + std::to_string(connection.milliseconds) + " ms");
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
    const auto judge = std::abs(ahead) > kRefusedSkew ? problem : warning;
    if (std::abs(ahead) > kNoticeableSkew) {
        return judge("clock", found + "; a backend usually refuses requests beyond 300", remedy);
    }
    return ok("clock", found, "clock " + std::to_string(std::abs(ahead)) + " s off");
}

} // namespace

Findings checkConnection(const BackendAddress& address, const Connection& connection,
                         const PemFile& trusted) {
    Findings findings = {checkProxy(address, connection), checkName(address, connection)};
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
