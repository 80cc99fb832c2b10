#ifndef VESK_SAMPLES_CONSOLE_DOCTORWORD_H
#define VESK_SAMPLES_CONSOLE_DOCTORWORD_H

/// The word "doctor". The checks are the dev kit's; a program that was built without the dev kit
/// says so.
/// @return the program's exit status.
int runDoctorWord(bool json, bool offline);

#endif
