#ifndef VESK_SIMULATORS_KZ_JSON_LINE_H
#define VESK_SIMULATORS_KZ_JSON_LINE_H

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>

namespace vesk::kzsim {

/// A JSON object of a few members on one line. Texts are UTF-8.
class JsonLine {
public:
    JsonLine();

    JsonLine& add(const std::string& name, const std::string& text);
    JsonLine& add(const std::string& name, const char* text) {
        return add(name, std::string(text));
    }
    JsonLine& add(const std::string& name, long number);
    JsonLine& add(const std::string& name, bool flag);

    /// The finished object. Nothing can be added afterwards.
    std::string end();

private:
    JsonLine(const JsonLine&) = delete;
    JsonLine& operator=(const JsonLine&) = delete;

    void addName(const std::string& name);

    rapidjson::StringBuffer mBuffer;
    rapidjson::Writer<rapidjson::StringBuffer> mWriter{mBuffer};
};

} // namespace vesk::kzsim

#endif
