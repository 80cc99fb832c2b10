#include "common/veskdefine.h"
#include "foundation/json/veskjsonmanager.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"
#include "unit/unittest.h"

namespace vesk::test {

using HostileJson = UnitTest;

static std::string times(size_t count, const std::string& text) {
    std::string all;
    for (size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// Takes @p text wherever JSON from outside comes in.
static void expectRefused(const std::string& text) {
    VESKJsonReader reader;
    reader.init(text);
    EXPECT_TRUE(reader.parseFailed());
    EXPECT_FALSE(reader.hasCursor());
    std::string copy = text;
    EXPECT_EQ(std::string(VESKJsonManager(copy)), "null");
    VESKJsonWriter::merge(copy, R"({"k":1})");
    EXPECT_EQ(copy, text);
    std::string merged = R"({"k":1})";
    VESKJsonWriter::merge(merged, text);
    EXPECT_EQ(merged, R"({"k":1})");
    InnerLoginRet ret;
    ConvertLoginRet(ret, 0, text, "");
    EXPECT_STREQ(ret.retMsg.c_str(), "Parse respBody error");
}

TEST_F(HostileJson, DeepNestingIsAParseFailure) {
    constexpr size_t depth = 1000000; // more than any stack holds
    expectRefused(times(depth, "["));
    expectRefused(times(depth, "[") + times(depth, "]"));
    expectRefused(times(depth, R"({"a":)") + "1" + times(depth, "}"));
    expectRefused(R"({"ret":0,"channel_info":)" + times(depth, "[") + times(depth, "]") + "}");
    EXPECT_EQ(logged("]Parse json string [ "), 20u);
    EXPECT_EQ(logged(",Braxel::VESK::VESKJsonManager::VESKJsonManager,"), 4u);
    EXPECT_EQ(logged(",Braxel::VESK::VESKJsonReader::init,"), 8u);
    EXPECT_EQ(logged(",Braxel::VESK::VESKJsonWriter::merge,"), 8u);
}

TEST_F(HostileJson, OnlyBracketsThatNestCount) {
    const std::string deepest = times(255, "[") + times(255, "]");
    const Rows<std::string, bool> rows = {
        {R"({"a":)" + deepest + "}", true},
        {R"({"a":[)" + deepest + "]}", false},
        {R"({"a":"\")" + times(300, "{[") + R"("})", true},
        {R"({"a":[)" + times(300, "[],") + "{}]}", true},
    };
    for (const auto& [text, good] : rows) {
        VESKJsonReader reader;
        reader.init(text);
        std::string member;
        reader.read("a", member);
        EXPECT_NE(member.empty(), good) << text;
    }
}

} // namespace vesk::test
