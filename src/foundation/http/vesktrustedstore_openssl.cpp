#include "foundation/http/vesktrustedstore.h"

#include <curl/curl.h>
#include <openssl/ssl.h>

namespace Braxel {
namespace VESK {

namespace {

/// For libcurl: a TLS context is made. Its store has in it what libcurl was told to read, or will
/// have before the server is judged. That is nothing when something is lent, or else what libcurl
/// was built to trust; either way it is replaced.
CURLcode OnContext(CURL* /*handle*/, void* context, void* user) {
    auto* tls = static_cast<SSL_CTX*>(context);
    auto* store = static_cast<VESKTrustedStore*>(user);
    if (store->lent != nullptr) {
        SSL_CTX_set1_cert_store(tls, static_cast<X509_STORE*>(store->lent.get()));
        return CURLE_OK;
    }
    // After a redirect libcurl reads nothing: it exchanges that context's store for the first one.
    X509_STORE* own = SSL_CTX_get_cert_store(tls);
    if (store->read == nullptr && X509_STORE_up_ref(own) == 1) {
        try {
            store->read = std::shared_ptr<X509_STORE>(own, &X509_STORE_free);
        } catch (...) { // NOLINT(bugprone-empty-catch): then the next request reads the file again
        }
    }
    return CURLE_OK;
}

bool UsesOpenSsl(CURL* handle) {
    curl_tlssessioninfo* tls = nullptr;
    return curl_easy_getinfo(handle, CURLINFO_TLS_SSL_PTR, &tls) == CURLE_OK && tls != nullptr &&
           tls->backend == CURLSSLBACKEND_OPENSSL;
}

} // namespace

bool VESKTrustedStore::Lend(void* handle) {
    return UsesOpenSsl(handle) &&
           curl_easy_setopt(handle, CURLOPT_SSL_CTX_DATA, this) == CURLE_OK &&
           curl_easy_setopt(handle, CURLOPT_SSL_CTX_FUNCTION, &OnContext) == CURLE_OK &&
           lent != nullptr;
}

} // namespace VESK
} // namespace Braxel
