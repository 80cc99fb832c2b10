#include "foundation/json/veskjsonwriter.h"

#include "unit/unittest.h"

namespace vesk::test {

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

} // namespace vesk::test
