/// @file
/// The text type of the SDK's arguments.
#ifndef VESK_VESKSTRING_H
#define VESK_VESKSTRING_H

#include <cstdint>

#include "vesk/veskexport.h"

namespace Braxel {
namespace VESK {

/// An owning byte string that is always NUL-terminated. Text is UTF-8.
///
/// Its memory belongs to the library, so it may cross the library's boundary in both directions.
/// String literals convert by themselves: `VESKLogin::Logout("Steam", "", false)`.
///
/// Every assignment prints "len:<n>" to standard output. Constructing and copying print nothing.
///
/// @thread Any; one object must not be written from two threads at once.
/// @errors Never throws. When memory runs out the string becomes empty.
class VESK_API String {
public:
    /// Makes an empty string; c_str() is "" and never null.
    String();

    /// Copies a NUL-terminated text.
    /// @param text may be null, which gives an empty string.
    String(const char* text); // NOLINT(google-explicit-constructor): literals must convert

    /// Copies at most @p length bytes of @p text, stopping at its first NUL byte.
    /// @param text need not be NUL-terminated within @p length; null gives an empty string.
    /// @param length in bytes.
    String(const char* text, uint32_t length);

    /// Copies; the two share nothing.
    String(const String& other);
    ~String();

    /// Replaces the text by a copy of the other one. @{
    String& operator=(const String& other);
    String& operator=(const char* text); ///@}

    /// As the constructor of the same arguments.
    String& assign(const char* text, uint32_t length);

    /// The text, NUL-terminated.
    /// @lifetime valid until the string is assigned to or destroyed.
    const char* c_str() const;

    /// Length in bytes, without the terminating NUL.
    uint32_t length() const;

private:
    char* mText;
    uint32_t mLength;
};

} // namespace VESK
} // namespace Braxel

#endif
