#include "connection.h"

#include <cstdio>
#include <ctime>
#include <curl/curl.h>
#include <memory>
#include <stdexcept>
#include <utility>

namespace vesk::doctor {

namespace {

using Step = Connection::Step;

/// The SDK's own limit for a request.
constexpr long kSeconds = 15;

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
using Handle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

std::string partOf(const Url& url, CURLUPart part, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, flags) != CURLUE_OK) {
        return {};
    }
    std::string result = text;
    curl_free(text);
    return result;
}

/// libcurl's trace has a line like "Uses proxy env variable https_proxy == 'http://...'".
int onTrace(CURL* /*handle*/, curl_infotype type, char* data, size_t size, void* context) {
    Connection& connection = *static_cast<Connection*>(context);
    const std::string line(data, size);
    char variable[64] = {};
    char value[1024] = {};
    if (type == CURLINFO_TEXT &&
        std::sscanf(line.c_str(), "Uses proxy env variable %63s == '%1023[^']", variable, value) ==
            2) {
        connection.proxyVariable = variable;
        connection.proxy = value;
    }
    // The exceptions are told before and in the same way.
    if (curl_strequal(connection.proxyVariable.c_str(), "no_proxy") != 0) {
        connection.proxy.clear();
    }
    return 0;
}

/// The value of a header line of the answer; nothing when there is none.
std::string headerValue(CURL* handle, const char* name) {
    curl_header* header = nullptr;
    return curl_easy_header(handle, name, 0, CURLH_HEADER, -1, &header) == CURLHE_OK
               ? header->value
               : std::string();
}

curl_off_t timeOf(CURL* handle, CURLINFO info) {
    curl_off_t microseconds = 0;
    curl_easy_getinfo(handle, info, &microseconds);
    return microseconds;
}

/// The step at which a failure of this kind happened. A time-out may strike at any of them.
Step failedStep(CURL* handle, CURLcode code, bool secure) {
    const bool isName = code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_COULDNT_RESOLVE_PROXY;
    if (code == CURLE_OK) {
        return Step::Done;
    }
    if (isName || timeOf(handle, CURLINFO_NAMELOOKUP_TIME_T) == 0) {
        return Step::Name;
    }
    // The time of the connecting is not kept when the handshake fails, the socket's port is.
    long port = 0;
    curl_easy_getinfo(handle, CURLINFO_LOCAL_PORT, &port);
    if (code == CURLE_COULDNT_CONNECT || port == 0) {
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
    for (int i = 0; i < chain->num_of_certs; ++i) {
        for (const curl_slist* entry = chain->certinfo[i]; entry != nullptr; entry = entry->next) {
            const PemFile pem(entry->data); // one of the entries is the certificate itself
            found.insert(found.end(), pem.certificates.begin(), pem.certificates.end());
        }
    }
    return found;
}

Handle makeHandle(const std::string& url) {
    Handle handle(curl_easy_init(), &curl_easy_cleanup);
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

void readAnswer(CURL* handle, Connection& connection) {
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &connection.status);
    connection.location = headerValue(handle, "Location");
    connection.simulated = headerValue(handle, "Server") == "vesk-devbackend";
    const std::string date = headerValue(handle, "Date");
    const time_t seconds = date.empty() ? -1 : curl_getdate(date.c_str(), nullptr);
    if (seconds != -1) {
        connection.backendTime = static_cast<int64_t>(seconds);
    }
}

} // namespace

std::string dayText(int64_t seconds) {
    const std::time_t time = static_cast<std::time_t>(seconds);
    const std::tm* const utc = std::gmtime(&time);
    char text[32] = {};
    // Windows counts until the year 3000.
    return utc != nullptr && std::strftime(text, sizeof text, "%Y-%m-%d", utc) != 0
               ? text
               : "a day far from now";
}

PemFile::PemFile(const std::string& text)
    : privateKey(text.find("PRIVATE KEY-----") != std::string::npos) {
    const std::string begin = "-----BEGIN CERTIFICATE-----";
    const std::string end = "-----END CERTIFICATE-----";
    for (size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const size_t last = text.find(end, at);
        auto certificate = last == std::string::npos
                               ? std::nullopt
                               : readCertificate(text.substr(at, last - at) + end + "\n");
        if (certificate) {
            certificates.push_back(std::move(*certificate));
        } else {
            ++broken;
        }
    }
}

BackendAddress::BackendAddress(const std::string& text) {
    const Url url(curl_url(), &curl_url_cleanup);
    const bool parsed = curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) == CURLUE_OK;
    scheme = partOf(url, CURLUPART_SCHEME);
    host = partOf(url, CURLUPART_HOST);
    port = partOf(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    hasPath = text.find_first_of("/?", text.find("://") + 3) != std::string::npos;
    isValid = parsed && (scheme == "https" || scheme == "http");
    // What cannot be parsed may have a password all the same.
    const size_t at = text.rfind('@');
    const std::string user = partOf(url, CURLUPART_USER) + partOf(url, CURLUPART_PASSWORD);
    const bool hides = at != std::string::npos && !(parsed && user.empty());
    shown = '"' + (hides ? "***" + text.substr(at) : text) + '"';
}

bool BackendAddress::isLocal() const {
    return host == "localhost" || host == "[::1]" || host.compare(0, 4, "127.") == 0;
}

Connection tryConnection(const std::string& url, const std::filesystem::path& certificates) {
    const bool secure = curl_strnequal(url.c_str(), "https:", 6) != 0;
    const Handle handle = makeHandle(url + "/");
    char error[CURL_ERROR_SIZE] = {};
    Connection connection;
    const std::string trusted = certificates.string();
    curl_easy_setopt(handle.get(), CURLOPT_NOBODY, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_CAINFO, trusted.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, error);
    curl_easy_setopt(handle.get(), CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_DEBUGFUNCTION, onTrace);
    curl_easy_setopt(handle.get(), CURLOPT_DEBUGDATA, &connection);

    const CURLcode code = curl_easy_perform(handle.get());
    connection.ownTime = std::time(nullptr);
    connection.reached = failedStep(handle.get(), code, secure);
    connection.code = static_cast<int>(code);
    connection.error = *error != '\0' ? error : curl_easy_strerror(code);
    connection.milliseconds = static_cast<long>(timeOf(handle.get(), CURLINFO_TOTAL_TIME_T) / 1000);
    const char* address = nullptr;
    curl_easy_getinfo(handle.get(), CURLINFO_PRIMARY_IP, &address);
    connection.address = address == nullptr ? "" : address;
    connection.certificates = code == CURLE_PEER_FAILED_VERIFICATION ? refusedCertificates(url)
                                                                     : certificatesOf(handle.get());
    if (code == CURLE_OK) {
        readAnswer(handle.get(), connection);
    }
    return connection;
}

} // namespace vesk::doctor
