#ifndef VESK_SIMULATORS_KZ_TEXT_H
#define VESK_SIMULATORS_KZ_TEXT_H

#include <string>
#include <string_view>

namespace vesk::kzsim {

std::wstring toWide(std::string_view utf8);
std::string toUtf8(std::wstring_view wide);

} // namespace vesk::kzsim

#endif
