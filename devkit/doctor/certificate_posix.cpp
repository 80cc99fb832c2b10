#include "certificate.h"

#include <ctime>
#include <memory>
#include <openssl/pem.h>
#include <openssl/x509.h>

namespace vesk::doctor {

namespace {

std::string textOf(const X509_NAME* name) {
    for (const int kind : {NID_commonName, NID_organizationName}) {
        char text[256] = {};
        if (X509_NAME_get_text_by_NID(name, kind, text, sizeof text) > 0) {
            return text;
        }
    }
    return "a certificate without a name";
}

int64_t secondsOf(const ASN1_TIME* time) {
    std::tm utc = {};
    ASN1_TIME_to_tm(time, &utc);
    return timegm(&utc);
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
    return Certificate{
        textOf(X509_get_subject_name(read.get())), textOf(X509_get_issuer_name(read.get())),
        secondsOf(X509_get0_notBefore(read.get())), secondsOf(X509_get0_notAfter(read.get()))};
}

} // namespace vesk::doctor
