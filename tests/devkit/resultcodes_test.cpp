#include "common/resultcodes.h"

#include <gmock/gmock.h>
#include <sstream>

#include "support/files.h"

namespace vesk::test {
namespace {

using namespace devkit;
using testing::HasSubstr;
using testing::Not;

TEST(ResultCodes, EachCodeOfThePageIsExplained) {
    std::istringstream page(readFile(environment("VESK_TEST_FOLDER") + "/codes.md"));
    std::string heading;
    int counted = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("## ", 0) == 0 || line.rfind("Common ", 0) == 0) {
            heading = line;
        }
        const bool isNumber = line.size() > 2 && line.find_first_of("-0123456789") == 2;
        if (!isNumber || line.rfind("| ", 0) != 0) {
            continue;
        }
        const int64_t code = std::stoll(line.substr(2));
        if (heading == "## retCode") {
            EXPECT_THAT(explainResult(code).meaning, Not(HasSubstr("not know"))) << line;
            ++counted;
        } else if (heading == "Common libcurl codes:") {
            EXPECT_THAT(explainOutside(4, code).meaning, HasSubstr("libcurl reports")) << line;
            EXPECT_THAT(explainOutside(4, code).remedy, Not("")) << line;
            ++counted;
        }
    }
    EXPECT_GT(counted, 25);
}

TEST(ResultCodes, OutsideCodeSaysWhoAnswered) {
    const struct {
        int64_t retCode, thirdCode;
        const char* begin;
    } rows[] = {
        {4, 4, "the SDK reports 4, the request waited"},
        {4, 77, "libcurl reports 77, cacert.pem"},
        {4, 94, "libcurl reports 94, the transport"},
        {4, 302, "the answer has HTTP status 302, which is no answer"},
        {4, 404, "the answer has HTTP status 404, which refuses"},
        {4, 503, "the answer has HTTP status 503, a fault of the backend"},
        {4, 833, "the SDK reports 833"},
        {5, 0, "the backend answered 0, but with nothing usable"},
        {5, 4009, "the backend answered 4009"},
        {9, 12, "the channel answered 12"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(explainOutside(row.retCode, row.thirdCode).meaning.rfind(row.begin, 0), 0u)
            << row.begin;
    }
    for (const int64_t retCode : {0, 4, 5, 20}) {
        EXPECT_EQ(explainOutside(retCode, retCode == 4 || retCode == 5 ? kNobody : 0).meaning, "");
    }
    EXPECT_THAT(remedyFor(4, 60), HasSubstr("cacert.pem"));
    EXPECT_EQ(remedyFor(5, 12), explainResult(5).remedy);
}

} // namespace
} // namespace vesk::test
