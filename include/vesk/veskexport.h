/// @file
/// Export markers of the library, and the only public place that asks which compiler is at work.
///
/// A game needs none of these. Define VESK_STATIC only when the sources are compiled straight into
/// a program instead of being loaded as a library.
#ifndef VESK_VESKEXPORT_H
#define VESK_VESKEXPORT_H

#if defined(VESK_STATIC)
#define VESK_API
#elif defined(_WIN32)
#if defined(VESK_BUILDING_LIBRARY)
#define VESK_API __declspec(dllexport)
#else
#define VESK_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VESK_API __attribute__((visibility("default")))
#else
#define VESK_API
#endif

#endif
