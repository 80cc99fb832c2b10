#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZRESULT_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZRESULT_H

#include <cstdint>
#include <memory>
#include <string>

namespace Braxel {
namespace VESK {

/// The property bag that comes with an event of the KZ component. A property that is missing or of
/// another type reads as the default that is given.
class KZResult {
public:
    virtual ~KZResult() = default;

    virtual int32_t GetInt(const wchar_t* name, int32_t defValue) const = 0;

    /// UTF-8; empty when there is none.
    virtual std::string GetText(const wchar_t* name) const = 0;

    /// Number of entries of a list property; -1 when there is no such list.
    virtual int32_t GetListSize(const wchar_t* name) const = 0;

    /// One entry of a list property; null when it cannot be read.
    virtual std::unique_ptr<KZResult> GetListEntry(const wchar_t* name, int32_t index) const = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
