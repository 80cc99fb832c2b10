#include "foundation/json/veskjsonmanager.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"
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

using JsonWriter = UnitTest;

TEST_F(JsonWriter, EachTypeHasItsFormAndTheSwitchShowsIt) {
    write("VESKConfig.ini", "VESK_JSON_LOG_ENABLE=1");
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("i", -7);
    writer.convert("l", int64_t{5000000000});
    writer.convert("t", true);
    writer.convert("f", 0.0F);
    writer.convert("g", -2.5F);
    writer.convert("c", "chars");
    writer.convert("none", static_cast<const char*>(nullptr));
    writer.convert("s", String("a\"b"));
    writer.convert("z", std::string("\xff\0", 2));
    writer.convertJson("o", R"({"b": [1]})");
    for (const char* noObject : {"", "7", "nope"}) {
        writer.convertJson("no", noObject);
    }
    writer.objectEnd();
    EXPECT_EQ(
        buffer.text(),
        R"({"i":-7,"l":5000000000,"t":true,"f":0.0,"g":-2.5,"c":"chars","none":"","s":"a\"b",)"
        "\"z\":\"\xff\\u0000\","
        R"("o":{"b": [1]},"no":{},"no":{},"no":{}})");
    EXPECT_EQ(logged("]key : i , val(int) : -7"), 1u);
    EXPECT_EQ(logged("]key : l , val(int) : 5000000000"), 1u);
    EXPECT_EQ(logged("]key : g , val(float) : -2.5"), 1u);
    EXPECT_EQ(logged("]key : c , val(char*) : chars, type: 5"), 1u);
    EXPECT_EQ(logged("]key : s , val(String) : a\"b , type : 5"), 1u);
    EXPECT_EQ(logged("config key: VESK_JSON_LOG_ENABLE, value: true"), 1u);
}

TEST_F(JsonWriter, WithoutABufferItOnlyComplains) {
    VESKJsonWriter writer;
    writer.objectBegin();
    writer.convert("a", 1);
    writer.objectEnd();
    for (const std::string method : {"objectBegin", "convert", "objectEnd"}) {
        EXPECT_EQ(logged(",Braxel::VESK::VESKJsonWriter::" + method + ","), 1u) << method;
    }
    EXPECT_EQ(logged("VESK [W.E]"), 3u);
    EXPECT_THAT(newMessages(), Each("need construct first, suggest use VESKJsonManager"));
}

TEST_F(JsonWriter, MergeLetsTheSecondWinAndStopsAtWhatItCannotRead) {
    const Rows<std::string, const char*, std::string, std::string> rows = {
        {R"({"a":1,"b":2,"c":3})", R"({"a":9})", R"({"c":3,"b":2,"a":9})", ""},
        {R"({"a":1,"b":2,"c":3,"d":4})", R"({"b":8,"x":7,"a":9})",
         R"({"x":7,"d":4,"c":3,"b":8,"a":9})", ""},
        {R"({"a":1})", "{}", R"({"a":1})", ""},
        {R"({ "a" : 1 })", R"({"b":{"c":[1,{"x":null}]}})", R"({"a":1,"b":{"c":[1,{"x":null}]}})",
         ""},
        {"{}", R"({"a":1,"a":2})", R"({"a":2})", ""},
        {"", R"({"b":2})", R"({"b":2})",
         R"(json1 : , json2 : {"b":2}, merge stopped, copy json2 to json1)"},
        {"x", "y", "y", "json1 : x, json2 : y, merge stopped, copy json2 to json1"},
        {R"({"a":1})", "x", R"({"a":1})",
         R"(json1 : {"a":1}, json2 : x error format, merge stopped)"},
        {R"({"a":1})", "nope", R"({"a":1})", "Parse json string [ nope ] fail. ope "},
        {"nope", R"({"a":1})", "nope", "Parse json string [ nope ] fail. ope "},
        {R"({"a":1})", "[1]", R"({"a":1})",
         R"(json1 : {"a":1}, json2 : [1] error format, merge stopped)"},
        {"[1]", R"({"a":1})", "[1]", R"(json1 : [1], json2 : {"a":1} error format, merge stopped)"},
    };
    for (auto [json1, json2, result, message] : rows) {
        const std::string given = json1 + " + " + json2;
        VESKJsonWriter::merge(json1, json2);
        EXPECT_EQ(json1, result) << given;
        const auto messages = newMessages();
        EXPECT_EQ(messages.empty() ? "" : messages.back(), message) << given;
    }
}

using JsonManager = UnitTest;

TEST_F(JsonManager, PutIfAbsentAddsOrOverwritesStringsOnly) {
    const auto silent = IsEmpty();
    const auto notString = ElementsAre("unknown error , it should be String type");
    const auto notObject = ElementsAre("unknown error occur while parser json or val is NULL");
    const Rows<std::string, const char*, Matcher<std::vector<std::string>>> rows = {
        {"{}", R"({"k":"v"})", silent},
        {"", R"({"k":"v"})", silent}, // in the caller's variable, too, it becomes an empty object
        {"x", R"({"k":"v"})", silent},
        {"{", R"({"k":"v"})", silent},
        {"5", R"({"k":"v"})", silent},
        {R"({"a":1,"b":2})", R"({"a":1,"b":2,"k":"v"})", silent},
        {R"({"k":"an old and long one","z":0})", R"({"k":"v","z":0})", silent},
        {R"({"k":1})", R"({"k":1})", notString},
        {R"({"k":null})", R"({"k":null})", notString},
        {"[]", "[]", notObject},
        {"nope", "null", notObject},
    };
    for (auto [before, after, complaint] : rows) {
        const std::string given = before.size() < 2 ? "{}" : before;
        VESKJsonManager json(before);
        EXPECT_EQ(before, given);
        newMessages();
        json.PutIfAbsent("k", std::string("v").c_str()); // gone before the text is made
        EXPECT_EQ(std::string(json), after) << before;
        EXPECT_THAT(newMessages(), complaint) << before;
    }
    EXPECT_EQ(logged("VESK [W.E]"), 5u); // the parse failure is one
}

TEST_F(JsonManager, FailureShowsTheMoreTheLaterItIs) {
    const std::string tail(200, 'y');
    const Rows<std::string, std::string> rows = {
        {R"({"a":)" + tail, std::string(5 + 32, 'y')},
        {R"({"a":")" + std::string(50, 'b') + "\"}" + tail, std::string(58 + 32, 'y')},
        {R"({"a":1)", ""}};
    for (auto [json, excerpt] : rows) {
        VESKJsonManager manager(json);
        EXPECT_THAT(newMessages(),
                    ElementsAre("Parse json string [ " + json + " ] fail. " + excerpt + " "));
    }
}

static std::string times(size_t count, const std::string& text) {
    return count == 0 ? "" : text + times(count - 1, text);
}

TEST_F(JsonReader, OnlyBracketsThatNestCount) {
    const std::string deepest = times(255, "[") + times(255, "]");
    const Rows<std::string, bool> rows = {
        {R"({"a":)" + deepest + "}", true},
        {R"({"a":[)" + deepest + "]}", false},
        {R"({"a":"\")" + times(300, "{[") + R"("})", true},
        {R"({"a":[)" + times(300, "[],") + "{}]}", true},
    };
    for (const auto& [text, good] : rows) {
        reader.init(text);
        EXPECT_NE(readOver<std::string>("a", "").empty(), good) << text;
    }
}

} // namespace vesk::test
