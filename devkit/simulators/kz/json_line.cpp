#include "json_line.h"

namespace vesk::kzsim {

JsonLine::JsonLine() {
    mWriter.StartObject();
}

JsonLine& JsonLine::add(const std::string& name, const std::string& text) {
    addName(name);
    mWriter.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return *this;
}

JsonLine& JsonLine::add(const std::string& name, long number) {
    addName(name);
    mWriter.Int64(number);
    return *this;
}

JsonLine& JsonLine::add(const std::string& name, bool flag) {
    addName(name);
    mWriter.Bool(flag);
    return *this;
}

std::string JsonLine::end() {
    mWriter.EndObject();
    return mBuffer.GetString();
}

void JsonLine::addName(const std::string& name) {
    mWriter.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
}

} // namespace vesk::kzsim
