#ifndef VESK_DEVKIT_TEXT_DIGIT_H
#define VESK_DEVKIT_TEXT_DIGIT_H

namespace vesk::text {

/// Whatever the locale.
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace vesk::text

#endif
