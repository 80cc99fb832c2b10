#include "foundation/ini/iniparser.h"

#include "unit/unittest.h"

namespace vesk::test {

using IniParser = UnitTest;
using Pairs = std::map<std::string, std::string>;

TEST_F(IniParser, LinesAndTheirCorners) {
    const Rows<const char*, Pairs> rows = {
        {"KEY = value # note", {{"KEY", "value"}}},
        {"#KEY=1\n #KEY=2\nk#=3", {}},
        {"KEY=\nK2= \t", {{"KEY", ""}, {"K2", ""}}},
        {"=value\n \t =value\nno equals", {}},
        {"A=1\nA=2\nB=\nB=2", {{"A", "1"}, {"B", ""}}},
        {"[section]\nB=1", {{"B", "1"}}},
        {"C=1\r\nD=2\rE=3\n\r\n\nF=4", {{"C", "1"}, {"D", "2"}, {"E", "3"}, {"F", "4"}}},
        {"k=a=b", {{"k", "a=b"}}},
        {"\t k w\t=\t v w \t", {{"k w", "v w"}}},
        {"v=\v1\f", {{"v", "\v1\f"}}},
        {";x=1;y", {{";x", "1;y"}}},
        {"u=va#l=ue", {{"u", "va"}}},
        {"Key=1\nkey=2", {{"Key", "1"}, {"key", "2"}}},
    };
    for (const auto& [content, expected] : rows) {
        Pairs pairs;
        EXPECT_TRUE(INIParser::GetInstance()->ParseINI(content, pairs)) << content;
        EXPECT_EQ(pairs, expected) << content;
    }
}

TEST_F(IniParser, EmptyContentIsAFailureAndOldPairsStay) {
    Pairs pairs = {{"A", "old"}};
    EXPECT_FALSE(INIParser::GetInstance()->ParseINI("", pairs));
    EXPECT_THAT(newMessages(), ElementsAre("check ini file please, it may be empty !!!!"));
    EXPECT_TRUE(INIParser::GetInstance()->ParseINI("A=new\nB=1", pairs));
    EXPECT_EQ(pairs, (Pairs{{"A", "old"}, {"B", "1"}}));
}

} // namespace vesk::test
