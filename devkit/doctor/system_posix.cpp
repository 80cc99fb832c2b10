#include "common/system.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <elf.h>
#include <iterator>
#include <memory>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <set>
#include <stdexcept>
#include <string_view>

#include "connection.h"
#include "module.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "libVESKCore.so";
const ModuleKind kSystem = ModuleKind::Linux64;

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

/// A record at a place in a file; throws std::out_of_range beyond its end.
template <typename Record>
Record recordAt(std::string_view file, size_t place) {
    Record record;
    if (file.substr(place).size() < sizeof record) {
        throw std::out_of_range("a record is cut off");
    }
    std::memcpy(&record, file.data() + place, sizeof record);
    return record;
}

std::set<std::string> exportsOf(std::string_view file) {
    std::set<std::string> names;
    const auto header = recordAt<Elf64_Ehdr>(file, 0);
    const auto section = [&](size_t index) {
        return recordAt<Elf64_Shdr>(file, header.e_shoff + index * header.e_shentsize);
    };
    for (size_t i = 0; i < header.e_shnum; ++i) {
        const Elf64_Shdr symbols = section(i);
        if (symbols.sh_type != SHT_DYNSYM) {
            continue;
        }
        const Elf64_Shdr texts = section(symbols.sh_link);
        for (size_t at = 0; at < symbols.sh_size; at += sizeof(Elf64_Sym)) {
            const auto symbol = recordAt<Elf64_Sym>(file, symbols.sh_offset + at);
            if (symbol.st_shndx != SHN_UNDEF) { // else it needs the symbol and does not have it
                const std::string_view name = file.substr(texts.sh_offset + symbol.st_name);
                names.emplace(name.substr(0, name.find('\0')));
            }
        }
    }
    return names;
}

LoadedSdk openSdk(const char* name, int mode) {
    void* const library = dlopen(name, mode);
    if (library == nullptr) {
        return {{}, {}, dlerror()};
    }
    void* const version = dlsym(library, "vesk_version");
    if (version == nullptr) {
        return {name, {}, {}};
    }
    return {devkit::moduleOf(version), reinterpret_cast<const char* (*)()>(version)(), {}};
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

// Loading it instead would run its constructors, and end this program when it is cut off: what is
// missing is mapped all the same.
std::optional<std::vector<std::string>> missingExports(const fs::path& file,
                                                       const std::vector<std::string>& names) {
    try {
        const std::set<std::string> exported = exportsOf(devkit::readFile(file));
        std::vector<std::string> missing;
        std::copy_if(names.begin(), names.end(), std::back_inserter(missing),
                     [&](const std::string& name) { return exported.count(name) == 0; });
        return missing;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

LoadedSdk loadedSdk() {
    return openSdk(kSdkLibrary, RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD);
}

LoadedSdk loadSdk(const fs::path& file) {
    return openSdk(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
}

} // namespace vesk::doctor
