#include "knownsecrets.h"

#include <algorithm>

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr size_t kShortestWord = 8;
constexpr size_t kMostWords = 10000;
// A sequence id is no secret, but may stand in a text that is masked as a whole.
constexpr auto kDashesOfSequenceId = 7;

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
}

/// Calls take(word) and pass(what stands between words) in their order.
template <typename Take, typename Pass>
void forEachWord(std::string_view text, const Take& take, const Pass& pass) {
    while (!text.empty()) {
        const auto word = std::find_if(text.begin(), text.end(), isWordCharacter);
        const auto end = std::find_if_not(word, text.end(), isWordCharacter);
        const auto before = static_cast<size_t>(word - text.begin());
        const auto length = static_cast<size_t>(end - word);
        pass(text.substr(0, before));
        take(text.substr(before, length));
        text.remove_prefix(before + length);
    }
}

} // namespace

void KnownSecrets::learn(std::string_view secret) {
    const auto take = [this](std::string_view word) {
        // A word without a digit may be a word of the language.
        if (word.size() >= kShortestWord && mWords.size() < kMostWords &&
            std::any_of(word.begin(), word.end(), devkit::isDigit) &&
            std::count(word.begin(), word.end(), '-') != kDashesOfSequenceId) {
            mWords.emplace(word);
        }
    };
    forEachWord(secret, take, [](std::string_view) {});
}

std::string KnownSecrets::mask(std::string_view text) const {
    std::string out;
    const auto take = [&](std::string_view word) {
        const bool known = word.size() >= kShortestWord && mWords.find(word) != mWords.end();
        out.append(known ? kMask : word);
    };
    forEachWord(text, take, [&out](std::string_view between) { out.append(between); });
    return out;
}

} // namespace vesk::logread
