#ifndef VESK_DEVKIT_CONSOLE_DOCTORWORD_H
#define VESK_DEVKIT_CONSOLE_DOCTORWORD_H

/// The word "doctor".
/// @return the program's exit status.
int runDoctorWord(bool json, bool offline);

#endif
