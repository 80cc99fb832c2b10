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

// Members of a login's answer are in AnswerFaults.
TEST_F(JsonReader, BytesPassUnchangedAndWhatDoesNotFitIsTold) {
    using namespace std::string_literals;
    write("VESKConfig.ini", "VESK_JSON_LOG_ENABLE=1");
    const std::string source = R"({"f":1.5,"n":null,"s":")"
                               "\xff\xfe\x80"
                               R"(","z":"a\u0000b"})";
    reader.init(source);
    EXPECT_EQ(logged("]json src : " + source), 1u);
    EXPECT_EQ(readOver<float>("f", -1), 1.5F);
    EXPECT_EQ(readOver<std::string>("s", ""), "\xff\xfe\x80");
    EXPECT_EQ(readOver<std::string>("z", ""), "a\0b"s);
    EXPECT_EQ(readOver<String>("z", "").length(), 1u);
    newMessages();
    EXPECT_EQ(readOver<float>("s", -1), -1.0F);
    EXPECT_EQ(readOver<std::string>("n", "-"), "-");
    EXPECT_EQ(readOver<int32_t>("missing", -1), -1);
    EXPECT_THAT(newMessages(),
                ElementsAre("unknown error occur while parser json", "value = NULL"));
}

TEST_F(JsonReader, NextWalksTheElementsOfAListOrObject) {
    reader.init(R"({"list":[{"a":1},{"a":2}],"map":{"x":{"a":3}},"s":"t"})");
    EXPECT_FALSE(reader.next().hasCursor());
    EXPECT_FALSE(reader.enter("s"));
    EXPECT_FALSE(reader.next().hasCursor());
    std::string found;
    for (const char* parent : {"list", "map"}) {
        ASSERT_TRUE(reader.enter(parent));
        for (VESKJsonReader element = reader.next(); element.hasCursor(); element = reader.next()) {
            int32_t value = 0;
            element.read("a", value);
            found += std::to_string(value);
        }
    }
    EXPECT_EQ(found, "123");
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

using JsonWriter = UnitTest;

TEST_F(JsonWriter, EachTypeHasItsForm) {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("l", int64_t{5000000000});
    writer.convert("f", 0.0F);
    writer.convert("g", -2.5F);
    writer.convert("none", static_cast<const char*>(nullptr));
    writer.convert("s", String("a\"b"));
    writer.convert("z", std::string("\xff\0", 2));
    for (const char* json : {R"({"b": [1]})", "", "7", "nope"}) {
        writer.convertJson("j", json);
    }
    writer.objectEnd();
    EXPECT_EQ(buffer.text(), R"({"l":5000000000,"f":0.0,"g":-2.5,"none":"","s":"a\"b",)"
                             "\"z\":\"\xff\\u0000\","
                             R"("j":{"b": [1]},"j":{},"j":{},"j":{}})");
}

TEST_F(JsonWriter, MergeLetsTheSecondWinAndStopsAtWhatItCannotRead) {
    const Rows<std::string, const char*, std::string> rows = {
        {R"({"a":1,"b":2,"c":3,"d":4})", R"({"b":8,"x":7,"a":9})",
         R"({"x":7,"d":4,"c":3,"b":8,"a":9})"},
        {"{}", R"({"a":1,"a":2})", R"({"a":2})"},
        {"x", "y", "y"},
        {R"({"a":1})", "nope", R"({"a":1})"},
        {"nope", R"({"a":1})", "nope"},
        {"[1]", R"({"a":1})", "[1]"},
    };
    for (auto [json1, json2, result] : rows) {
        const std::string given = json1 + " + " + json2;
        VESKJsonWriter::merge(json1, json2);
        EXPECT_EQ(json1, result) << given;
    }
    EXPECT_EQ(logged("]Parse json string [ nope ] fail. ope "), 2u);
}

using JsonManager = UnitTest;

TEST_F(JsonManager, PutIfAbsentAddsOrOverwritesStringsOnly) {
    const Rows<std::string, const char*> rows = {
        {"x", R"({"k":"v"})"}, // in the caller's variable, too, it becomes an empty object
        {R"({"a":1})", R"({"a":1,"k":"v"})"},
        {R"({"k":"an old and long one","z":0})", R"({"k":"v","z":0})"},
        {R"({"k":null})", R"({"k":null})"},
        {"[]", "[]"},
        {"nope", "null"},
    };
    for (auto [before, after] : rows) {
        const std::string given = before.size() < 2 ? "{}" : before;
        VESKJsonManager json(before);
        EXPECT_EQ(before, given);
        json.PutIfAbsent("k", std::string("v").c_str()); // gone before the text is made
        EXPECT_EQ(std::string(json), after) << before;
    }
}

} // namespace vesk::test
