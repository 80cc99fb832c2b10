#include "certificate.h"

#include <memory>
#include <openssl/pem.h>
#include <openssl/x509.h>

namespace vesk::doctor {

namespace {

std::string textOf(const X509_NAME* name) {
    for (const int kind : {NID_commonName, NID_organizationName}) {
        const int at = X509_NAME_get_index_by_NID(name, kind, -1);
        const ASN1_STRING* value =
            at < 0 ? nullptr : X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, at));
        unsigned char* utf8 = nullptr;
        const int size = value == nullptr ? -1 : ASN1_STRING_to_UTF8(&utf8, value);
        if (size >= 0) {
            std::string text(reinterpret_cast<const char*>(utf8), static_cast<size_t>(size));
            OPENSSL_free(utf8);
            return text;
        }
    }
    return "a certificate without a name";
}

std::string encoded(const X509_NAME* name) {
    const unsigned char* bytes = nullptr;
    size_t size = 0;
    X509_NAME_get0_der(name, &bytes, &size);
    return {reinterpret_cast<const char*>(bytes), size};
}

int64_t secondsOf(const ASN1_TIME* time) {
    const std::unique_ptr<ASN1_TIME, decltype(&ASN1_STRING_free)> begin(ASN1_TIME_set(nullptr, 0),
                                                                        &ASN1_STRING_free);
    int days = 0;
    int seconds = 0;
    ASN1_TIME_diff(&days, &seconds, begin.get(), time);
    return int64_t{86400} * days + seconds;
}

} // namespace

std::optional<Certificate> readCertificate(const std::string& block) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> bytes(
        BIO_new_mem_buf(block.data(), static_cast<int>(block.size())), &BIO_free);
    const std::unique_ptr<X509, decltype(&X509_free)> read(
        PEM_read_bio_X509(bytes.get(), nullptr, nullptr, nullptr), &X509_free);
    if (!read) {
        return {};
    }
    const X509_NAME* subject = X509_get_subject_name(read.get());
    const X509_NAME* issuer = X509_get_issuer_name(read.get());
    return Certificate{textOf(subject),
                       textOf(issuer),
                       encoded(subject),
                       encoded(issuer),
                       secondsOf(X509_get0_notBefore(read.get())),
                       secondsOf(X509_get0_notAfter(read.get()))};
}

} // namespace vesk::doctor
