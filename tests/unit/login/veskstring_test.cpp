#include "vesk/veskstring.h"

#include "unit/unittest.h"

namespace vesk::test {

using StringType = UnitTest;

TEST_F(StringType, CopiesTextUpToItsEndOrTheGivenLength) {
    const char unterminated[] = {'a', 'b', 'c'};
    const Rows<String, std::string> rows = {{String(), ""},
                                            {String(nullptr), ""},
                                            {String(nullptr, 5), ""},
                                            {String("text"), "text"},
                                            {String("text", 2), "te"},
                                            {String("text", 0), ""},
                                            {String("te\0xt", 5), "te"},
                                            {String(unterminated, 3), "abc"}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(text.c_str(), expected);
        EXPECT_EQ(text.length(), expected.size());
    }
}

TEST_F(StringType, MayBeAssignedItselfOrItsParts) {
    String text("abcdef");
    const String& same = text;
    text = same;
    EXPECT_STREQ(text.c_str(), "abcdef");
    text = text.c_str() + 2;
    EXPECT_STREQ(text.c_str(), "cdef");
    text.assign(text.c_str(), 2);
    EXPECT_STREQ(text.c_str(), "cd");
}

TEST_F(StringType, AssignmentAloneIsTraced) {
    internal::CaptureStdout();
    String text("constructed");
    const String copy(text);
    text = "four";
    text = copy;
    text.assign("abcdef", 3);
    text = static_cast<const char*>(nullptr);
    EXPECT_EQ(internal::GetCapturedStdout(), "len:4len:11len:3len:0");
    EXPECT_STREQ(copy.c_str(), "constructed");
}

} // namespace vesk::test
