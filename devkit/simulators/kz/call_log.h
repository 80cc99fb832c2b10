#ifndef VESK_SIMULATORS_KZ_CALL_LOG_H
#define VESK_SIMULATORS_KZ_CALL_LOG_H

#include <string>

namespace vesk::kzsim {

class JsonLine;

/// Each of these appends one line to kz_sim_calls.txt beside the library.
void logLine(JsonLine& line);

void logCall(const char* name);
void logEvent(long type);
void logObjects();
void logUnload();

/// Something that a real component would not accept, or a script that cannot be followed.
void logProblem(const std::string& what);

} // namespace vesk::kzsim

#endif
