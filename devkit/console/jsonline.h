#ifndef VESK_DEVKIT_CONSOLE_JSONLINE_H
#define VESK_DEVKIT_CONSOLE_JSONLINE_H

#include <cstdint>
#include <string>

#include "vesk/veskret.h"

/// Builds one JSON object on one line.
class JsonLine {
public:
    /// @param event what the line tells of; becomes its first member.
    explicit JsonLine(const std::string& event);

    JsonLine& add(const char* name, const std::string& value);
    JsonLine& add(const char* name, const char* value) { return add(name, std::string(value)); }
    JsonLine& add(const char* name, int64_t value);
    JsonLine& add(const char* name, bool value);

    /// Adds a text that must not be shown: its first four characters and its length.
    JsonLine& addMasked(const char* name, const std::string& secret);

    JsonLine& addRet(const Braxel::VESK::VESKBaseRet& ret);
    JsonLine& addRet(const Braxel::VESK::VESKLoginRet& ret);
    JsonLine& addRet(const Braxel::VESK::VESKQrCodeRet& ret);

    /// Writes the line to standard error.
    void print() const;

private:
    JsonLine& addRaw(const char* name, const std::string& json);

    std::string mMembers;
};

#endif
