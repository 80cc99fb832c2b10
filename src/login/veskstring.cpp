#include "vesk/veskstring.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>

namespace Braxel {
namespace VESK {

namespace {

// What a string points to when no memory could be had; never written, never freed.
char gNoMemory[1] = {'\0'};

struct Bytes {
    char* text;
    uint32_t length;
};

uint32_t LengthUpTo(const char* text, uint32_t atMost) {
    if (text == nullptr) {
        return 0;
    }
    const void* end = std::memchr(text, '\0', atMost);
    return end == nullptr ? atMost : static_cast<uint32_t>(static_cast<const char*>(end) - text);
}

Bytes Copy(const char* text, uint32_t length) {
    char* copy = new (std::nothrow) char[static_cast<size_t>(length) + 1];
    if (copy == nullptr) {
        return {gNoMemory, 0};
    }
    if (length != 0) {
        std::memcpy(copy, text, length);
    }
    copy[length] = '\0';
    return {copy, length};
}

uint32_t Length(const char* text) {
    if (text == nullptr) {
        return 0;
    }
    constexpr size_t longest = std::numeric_limits<uint32_t>::max() - 1;
    const size_t length = std::strlen(text);
    return static_cast<uint32_t>(length < longest ? length : longest);
}

// Deliberate: a trace of every assignment, without a line end. Each record has dozens, so without
// formatted output.
void Trace(uint32_t length) {
    char text[16] = {'l', 'e', 'n', ':'};
    constexpr size_t kPrefix = 4;
    const auto end = std::to_chars(text + kPrefix, text + sizeof text, static_cast<int>(length));
    std::fwrite(text, 1, static_cast<size_t>(end.ptr - text), stdout);
}

void Free(char* text) {
    if (text != gNoMemory) {
        delete[] text;
    }
}

} // namespace

String::String() : String(nullptr, 0) {}

String::String(const char* text) : String(text, Length(text)) {}

String::String(const char* text, uint32_t length) {
    const Bytes bytes = Copy(text, LengthUpTo(text, length));
    mText = bytes.text;
    mLength = bytes.length;
}

String::String(const String& other) : String(other.mText, other.mLength) {}

String::~String() {
    Free(mText);
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assign() copes with it
String& String::operator=(const String& other) {
    return assign(other.mText, other.mLength);
}

String& String::operator=(const char* text) {
    return assign(text, Length(text));
}

String& String::assign(const char* text, uint32_t length) {
    length = LengthUpTo(text, length);
    if (length == mLength && mText != gNoMemory) {
        // A buffer of that very size is there, which saves the heap most of a record's work.
        if (length != 0) {
            std::memmove(mText, text, length);
        }
    } else {
        // Copied before the old buffer goes: the text may be part of it.
        const Bytes bytes = Copy(text, length);
        Free(mText);
        mText = bytes.text;
        mLength = bytes.length;
    }
    Trace(mLength);
    return *this;
}

const char* String::c_str() const {
    return mText;
}

uint32_t String::length() const {
    return mLength;
}

} // namespace VESK
} // namespace Braxel
