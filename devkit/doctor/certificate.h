#ifndef VESK_DEVKIT_DOCTOR_CERTIFICATE_H
#define VESK_DEVKIT_DOCTOR_CERTIFICATE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace vesk::doctor {

/// What a person wants to know of an X.509 certificate.
class Certificate {
public:
    /// Throws std::runtime_error when @p der is none.
    explicit Certificate(std::string_view der);

    /// The common name, or the organisation when there is none.
    std::string subject() const { return name(mSubject); }
    std::string issuer() const { return name(mIssuer); }

    /// Whether the other one bears the name of this one's issuer.
    bool isFrom(const Certificate& other) const { return mIssuer == other.mSubject; }

    int64_t begin() const { return mBegin; } ///< Unix seconds
    int64_t end() const { return mEnd; }

private:
    static std::string name(const std::string& der);

    std::string mSubject; ///< the encoded names
    std::string mIssuer;
    int64_t mBegin = 0;
    int64_t mEnd = 0;
};

/// A day as "2026-11-24".
std::string dayText(int64_t unixSeconds);

} // namespace vesk::doctor

#endif
