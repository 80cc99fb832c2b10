#include "foundation/json/veskjsonreader.h"

#include "unit/unittest.h"

namespace vesk::test {

class JsonReader : public UnitTest {
protected:
    /// What reading the member @p key leaves in a variable that held @p before.
    template <typename T>
    T readOver(const char* key, T before) const {
        reader.read(key, before);
        return before;
    }

    VESKJsonReader reader;
};

TEST_F(JsonReader, ReadsMembersOfTheRightTypeAndLeavesTheRest) {
    reader.init(R"({"i":7,"big":5000000000,"huge":9223372036854775808,"t":true,"f":1.5,"w":1.0,
                    "s":"text","o":{"a":[1, {}]},"l":[ ],"q":"5","n":null})");
    newMessages();
    EXPECT_EQ(readOver<int32_t>("i", -1), 7);
    EXPECT_EQ(readOver<int64_t>("i", -1), 7);
    EXPECT_EQ(readOver<int64_t>("big", -1), 5000000000);
    EXPECT_TRUE(readOver<bool>("t", false));
    EXPECT_EQ(readOver<float>("f", -1), 1.5F);
    EXPECT_EQ(readOver<std::string>("s", "-"), "text");
    EXPECT_EQ(readOver<std::string>("o", "-"), R"({"a":[1,{}]})");
    EXPECT_STREQ(readOver<String>("l", "-").c_str(), "[]");
    EXPECT_EQ(readOver<int32_t>("missing", -1), -1);
    EXPECT_THAT(newMessages(), IsEmpty());

    for (const char* key : {"big", "huge", "t", "w", "s", "o", "l", "q"}) {
        EXPECT_EQ(readOver<int32_t>(key, -1), -1) << key;
    }
    for (const char* key : {"huge", "t", "w", "q", "o"}) {
        EXPECT_EQ(readOver<int64_t>(key, -1), -1) << key;
    }
    for (const char* key : {"i", "t", "f"}) {
        EXPECT_EQ(readOver<std::string>(key, "-"), "-") << key;
    }
    EXPECT_FALSE(readOver<bool>("i", false));
    EXPECT_EQ(readOver<float>("q", -1), -1.0F);
    EXPECT_THAT(newMessages(), AllOf(SizeIs(18), Each("unknown error occur while parser json")));
    EXPECT_EQ(readOver<int32_t>("n", -1), -1);
    EXPECT_EQ(readOver<std::string>("n", "-"), "-");
    EXPECT_THAT(newMessages(), ElementsAre("value = NULL", "value = NULL"));
}

TEST_F(JsonReader, OnlyAnObjectGivesACursorAndOnlyBrokenTextIsAParseFailure) {
    const Rows<const char*, bool, bool> rows = {
        {"{}", false, true},   {"", true, false},      {"7", true, false},
        {"[]", false, false},  {"null", false, false}, {"12", false, false},
        {"nope", true, false}, {"{}{}", true, false},  {R"({"a":1,})", true, false}};
    for (const auto& [text, parseFailed, hasCursor] : rows) {
        reader.init(R"({"i":7})"); // nothing of this remains
        reader.init(text);
        EXPECT_EQ(reader.parseFailed(), parseFailed) << text;
        EXPECT_EQ(reader.hasCursor(), hasCursor) << text;
        EXPECT_EQ(readOver<int32_t>("i", -1), -1) << text;
    }
    EXPECT_EQ(logged("]value = NULL"), 2u);
    EXPECT_EQ(logged("]unknown error occur while parser json or val is NULL"), 8u);
}

TEST_F(JsonReader, NextWalksTheElementsOfAListOrObject) {
    reader.init(R"({"list":[{"a":1,"in":[{"b":9}]},{"a":2}],"map":{"x":{"a":3}},"s":"t"})");
    newMessages();
    EXPECT_FALSE(reader.next().hasCursor());
    EXPECT_FALSE(reader.enter("s"));
    EXPECT_FALSE(reader.next().hasCursor());
    EXPECT_THAT(newMessages(), ElementsAre("parent null", "parent no iterator"));

    ASSERT_TRUE(reader.enter("list"));
    VESKJsonReader first = reader.next();
    VESKJsonReader second = reader.next();
    EXPECT_FALSE(reader.next().hasCursor());
    int32_t value = 0;
    second.read("a", value);
    EXPECT_EQ(value, 2);
    ASSERT_TRUE(first.enter("in"));
    first.next().read("b", value);
    EXPECT_EQ(value, 9);
    ASSERT_TRUE(reader.enter("map"));
    reader.next().read("a", value);
    EXPECT_EQ(value, 3);
    EXPECT_FALSE(reader.next().hasCursor());
}

TEST_F(JsonReader, BytesPassUnchangedAndTheSwitchShowsTheSource) {
    using namespace std::string_literals;
    write("VESKConfig.ini", "VESK_JSON_LOG_ENABLE=1");
    reader.init("{\"s\":\"\xff\xfe\x80\",\"z\":\"a\\u0000b\"}");
    EXPECT_EQ(readOver<std::string>("s", ""), "\xff\xfe\x80");
    EXPECT_EQ(readOver<std::string>("z", ""), "a\0b"s);
    EXPECT_EQ(readOver<String>("z", "").length(), 1u);
    EXPECT_EQ(logged("]json src : {\"s\":\"\xff\xfe\x80\",\"z\":\"a\\u0000b\"}"), 1u);
    EXPECT_EQ(logged("config key: VESK_JSON_LOG_ENABLE, value: true"), 1u);
}

} // namespace vesk::test
