#include "common/veskchannelfacts.h"

namespace Braxel {
namespace VESK {

namespace {

using Kind = VESKChannelKind;

// clang-format off
constexpr VESKChannelFacts kChannels[] = {
    // name    id  kind              pre-code  token   life  margin  auto   serial pay token
    {"KZ",      2, Kind::kMessenger, 2,        "ctk",  3600, 540,    true,  true,  true},
    {"Ferno",   1, Kind::kMessenger, 1,        "ctt",   300,  60,    false, false, false},
    {"Steam",  21, Kind::kDirect,    0,        "",        0, 300,    false, false, false},
    {"Guest",   0, Kind::kGuest,     0,        "",        0, 300,    false, false, false},
};
constexpr VESKChannelFacts kNoChannel =
    {"",        0, Kind::kUnknown,   0,        "",        0, 300,    false, false, false};
// clang-format on

} // namespace

const VESKChannelFacts& ChannelFacts(const std::string& name) {
    for (const VESKChannelFacts& channel : kChannels) {
        if (name == channel.name) {
            return channel;
        }
    }
    return kNoChannel;
}

} // namespace VESK
} // namespace Braxel
