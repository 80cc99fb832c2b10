#include "foundation/json/veskjsonmanager.h"

#include "unit/unittest.h"

namespace vesk::test {

using JsonManager = UnitTest;

TEST_F(JsonManager, ShortTextBecomesAnEmptyObjectInTheCallersVariable) {
    for (std::string text : {"", "x", "{", "5"}) {
        const VESKJsonManager json(text);
        EXPECT_EQ(text, "{}");
        EXPECT_EQ(std::string(json), "{}");
    }
}

TEST_F(JsonManager, PutIfAbsentAddsOrOverwritesStringsOnly) {
    const auto silent = IsEmpty();
    const auto notString = ElementsAre("unknown error , it should be String type");
    const auto notObject = ElementsAre("unknown error occur while parser json or val is NULL");
    const Rows<std::string, const char*, Matcher<std::vector<std::string>>> rows = {
        {"{}", R"({"k":"v"})", silent},
        {R"({"a":1,"b":2})", R"({"a":1,"b":2,"k":"v"})", silent},
        {R"({"k":"an old and long one","z":0})", R"({"k":"v","z":0})", silent},
        {R"({"k":1})", R"({"k":1})", notString},
        {R"({"k":null})", R"({"k":null})", notString},
        {"[]", "[]", notObject},
        {"nope", "null", notObject},
    };
    for (auto [before, after, complaint] : rows) {
        VESKJsonManager json(before);
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

} // namespace vesk::test
