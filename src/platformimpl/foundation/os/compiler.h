#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_COMPILER_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_COMPILER_H

/// Lets the compiler check a printf-style call, where it can. Positions count from 1 and include
/// `this` for member functions.
#if defined(__MINGW32__)
#define VESK_PRINTF_FORMAT(formatAt, argumentsAt)                                                  \
    __attribute__((format(gnu_printf, formatAt, argumentsAt)))
#elif defined(__GNUC__)
#define VESK_PRINTF_FORMAT(formatAt, argumentsAt)                                                  \
    __attribute__((format(printf, formatAt, argumentsAt)))
#else
#define VESK_PRINTF_FORMAT(formatAt, argumentsAt)
#endif

#endif
