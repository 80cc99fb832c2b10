// Settings files of any bytes, against the rules of docs/configuration.md.
#include <cstdint>
#include <string>

#include "expect.h"
#include "foundation/ini/iniparser.h"

using vesk::fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string content(reinterpret_cast<const char*>(data), size);
    const auto* parser = Braxel::VESK::INIParser::GetInstance();
    std::map<std::string, std::string> pairs;
    expect(parser->ParseINI(content, pairs) == !content.empty(), "only an empty file is refused");
    for (const auto& [key, value] : pairs) {
        expect(!key.empty(), "a line without a key is skipped");
        for (const std::string& text : {key, value}) {
            expect(text.find_first_of("\r\n#") == std::string::npos,
                   "line ends and comments end it");
            expect(text.empty() || (std::string(" \t").find(text.front()) == std::string::npos &&
                                    std::string(" \t").find(text.back()) == std::string::npos),
                   "blanks around it are dropped");
            expect(content.find(text) != std::string::npos, "it stands in the file");
        }
        expect(key.find('=') == std::string::npos, "the first = separates");
    }
    auto again = pairs;
    parser->ParseINI(content + "\nfirst=1\nfirst=2", again);
    expect(pairs.count("first") != 0 || again["first"] == "1", "the first occurrence wins");
    for (const auto& [key, value] : pairs) {
        expect(again[key] == value, "a key that is there keeps its value");
    }
    return 0;
}
