#include "connection.h"

#include <algorithm>
#include <chrono>
#include <curl/curl.h>
#include <memory>
#include <stdexcept>

#include "pem.h"

namespace vesk::doctor {

namespace {

using Step = Connection::Step;

/// The SDK's own limit for a request.
constexpr long kSeconds = 15;

struct HandleCloser {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, HandleCloser>;

int64_t now() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

/// Keeps the head of the answer that counts: a proxy may have sent one before.
size_t onHeader(char* data, size_t size, size_t count, void* context) {
    std::string& head = *static_cast<std::string*>(context);
    const std::string line(data, size * count);
    if (line.compare(0, 5, "HTTP/") == 0) {
        head.clear();
    }
    head += line;
    return size * count;
}

size_t onBody(char* /*data*/, size_t size, size_t count, void* /*context*/) {
    return size * count;
}

/// The value of a header line; a name is written in any case.
std::string headerValue(const std::string& head, const std::string& name) {
    size_t begin = 0;
    while (begin < head.size()) {
        const size_t end = std::min(head.find('\n', begin), head.size());
        const std::string line = head.substr(begin, end - begin);
        begin = end + 1;
        if (line.size() > name.size() && line[name.size()] == ':' &&
            curl_strnequal(line.c_str(), name.c_str(), name.size()) != 0) {
            const size_t first = line.find_first_not_of(" \t", name.size() + 1);
            return first == std::string::npos
                       ? std::string()
                       : line.substr(first, line.find_last_not_of(" \t\r") + 1 - first);
        }
    }
    return {};
}

curl_off_t timeOf(CURL* handle, CURLINFO info) {
    curl_off_t microseconds = 0;
    curl_easy_getinfo(handle, info, &microseconds);
    return microseconds;
}

/// The step at which a failure of this kind happened. A time-out may strike at any of them.
Step failedStep(CURL* handle, CURLcode code, bool secure) {
    switch (code) {
    case CURLE_OK:
        return Step::Done;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return Step::Name;
    case CURLE_COULDNT_CONNECT:
        return Step::Connect;
    default:
        break;
    }
    if (timeOf(handle, CURLINFO_NAMELOOKUP_TIME_T) == 0) {
        return Step::Name;
    }
    // The time of the connecting is not kept when the handshake fails, the socket's port is.
    long port = 0;
    curl_easy_getinfo(handle, CURLINFO_LOCAL_PORT, &port);
    if (port == 0) {
        return Step::Connect;
    }
    const bool handshakeOpen = timeOf(handle, CURLINFO_APPCONNECT_TIME_T) == 0;
    return secure && handshakeOpen ? Step::Secure : Step::Answer;
}

std::vector<Certificate> certificatesOf(CURL* handle) {
    curl_certinfo* chain = nullptr;
    std::vector<Certificate> found;
    if (curl_easy_getinfo(handle, CURLINFO_CERTINFO, &chain) != CURLE_OK || chain == nullptr) {
        return found;
    }
    const std::string label = "Cert:";
    for (int i = 0; i < chain->num_of_certs; ++i) {
        for (const curl_slist* entry = chain->certinfo[i]; entry != nullptr; entry = entry->next) {
            const std::string text = entry->data;
            if (text.compare(0, label.size(), label) == 0) {
                const Pem pem = readPem(text.substr(label.size()));
                found.insert(found.end(), pem.certificates.begin(), pem.certificates.end());
            }
        }
    }
    return found;
}

Handle makeHandle(const std::string& url) {
    Handle handle(curl_easy_init());
    if (!handle) {
        throw std::runtime_error("libcurl does not start");
    }
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_CERTINFO, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_CONNECTTIMEOUT, kSeconds);
    curl_easy_setopt(handle.get(), CURLOPT_TIMEOUT, kSeconds);
    return handle;
}

/// The certificates of a backend that is not trusted. The connection is closed as soon as they are
/// there, and nothing is sent.
std::vector<Certificate> refusedCertificates(const std::string& url) {
    const Handle handle = makeHandle(url);
    curl_easy_setopt(handle.get(), CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(handle.get(), CURLOPT_SSL_VERIFYHOST, 0L);
    curl_easy_setopt(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
    curl_easy_perform(handle.get());
    return certificatesOf(handle.get());
}

void readAnswer(CURL* handle, const std::string& head, Connection& connection) {
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &connection.status);
    connection.location = headerValue(head, "Location");
    const std::string date = headerValue(head, "Date");
    const time_t seconds = date.empty() ? -1 : curl_getdate(date.c_str(), nullptr);
    if (seconds != -1) {
        connection.backendTime = static_cast<int64_t>(seconds);
    }
}

} // namespace

Connection tryConnection(const std::string& url, const std::filesystem::path& certificates) {
    const bool secure = curl_strnequal(url.c_str(), "https:", 6) != 0;
    const Handle handle = makeHandle(url + "/");
    char error[CURL_ERROR_SIZE] = {};
    std::string head;
    const std::string trusted = certificates.string();
    curl_easy_setopt(handle.get(), CURLOPT_NOBODY, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_CAINFO, trusted.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, error);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERDATA, &head);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, onBody);

    const CURLcode code = curl_easy_perform(handle.get());
    Connection connection;
    connection.ownTime = now();
    connection.reached = failedStep(handle.get(), code, secure);
    connection.proxyName = code == CURLE_COULDNT_RESOLVE_PROXY;
    connection.untrusted = code == CURLE_PEER_FAILED_VERIFICATION;
    connection.noTrust = code == CURLE_SSL_CACERT_BADFILE;
    connection.code = static_cast<int>(code);
    connection.error = *error != '\0' ? error : curl_easy_strerror(code);
    connection.milliseconds = static_cast<long>(timeOf(handle.get(), CURLINFO_TOTAL_TIME_T) / 1000);
    const char* address = nullptr;
    curl_easy_getinfo(handle.get(), CURLINFO_PRIMARY_IP, &address);
    connection.address = address == nullptr ? "" : address;
    connection.certificates =
        connection.untrusted ? refusedCertificates(url) : certificatesOf(handle.get());
    if (code == CURLE_OK) {
        readAnswer(handle.get(), head, connection);
    }
    return connection;
}

} // namespace vesk::doctor
