#include "config/veskconfigmanager.h"
#include "foundation/ini/iniparser.h"
#include "foundation/json/veskjsonreader.h"
#include "unit/unittest.h"

namespace vesk::test {

class Config : public UnitTest {
protected:
    static std::string text(const std::string& key) {
        return VESKConfigManager::GetInstance()->Get<const char*>(key);
    }
    static bool flag(const std::string& key, bool otherwise) {
        return VESKConfigManager::GetInstance()->Get<bool>(key, otherwise);
    }
    static int number(const std::string& key, int otherwise) {
        return VESKConfigManager::GetInstance()->Get<int>(key, otherwise);
    }
};

TEST_F(Config, NumberIsWhatTheValueStartsWithAndOnlyOneIsTrue) {
    const Rows<std::string, int, bool, bool> rows = {
        {"1", 1, true, true},   {"0", 0, false, false},      {"", 0, false, true},
        {"2", 2, false, false}, {"-5", -5, false, false},    {"true", 0, false, false},
        {"01", 1, true, true},  {"12abc", 12, false, false}, {"0x10", 0, false, false},
        {"1x", 1, true, true},  {"1.9", 1, true, true}};
    std::string ini;
    for (const auto& row : rows) {
        ini += "K" + std::get<0>(row) + "=" + std::get<0>(row) + "\n";
    }
    write("VESKConfig.ini", ini);
    for (const auto& [value, asNumber, overFalse, overTrue] : rows) {
        EXPECT_EQ(number("K" + value, 15), asNumber) << value;
        EXPECT_EQ(flag("K" + value, false), overFalse) << value;
        EXPECT_EQ(flag("K" + value, true), overTrue) << value;
    }
    newMessages();
    EXPECT_EQ(number("ABSENT", 15), 15);
    EXPECT_TRUE(flag("VESK_DEBUG", true));
    EXPECT_THAT(newMessages(), ElementsAre("config key: VESK_DEBUG, value: true"));
}

TEST_F(Config, MissingFileIsLookedForAgainUntilItIsThere) {
    EXPECT_EQ(text("A"), "");
    EXPECT_EQ(number("A", 3), 3);
    EXPECT_TRUE(flag("A", true));
    // At the manager's creation and for each of the three.
    EXPECT_EQ(logged("]read from assets file of VESKConfig.ini is empty"), 4u);
    write("VESKConfig.ini", "A=1");
    EXPECT_EQ(number("A", 3), 1);
    EXPECT_EQ(logged("]Read config file:"), 5u);
    write("VESKConfig.ini", "A=2");
    newMessages();
    EXPECT_EQ(text("A"), "1");
    // Texts show their search, whatever the switch.
    EXPECT_THAT(newMessages(),
                ElementsAre("config from game, key:A value:", "config from remote, key:A value:",
                            "config from default, key:A value:1"));
}

TEST_F(Config, SwitchesAtFirstUseNeitherLockNorRecurseAndTheCachesAreShownAsJson) {
    write("VESKConfig.ini", "VESK_JSON_LOG_ENABLE=1\nVESK_CONFIG_LOG_ENABLE=1\nQ=a\"b\\\x01\xff");
    VESKJsonReader reader;
    reader.init(R"({"a":1})");
    EXPECT_EQ(logged("]json src : "), 1u);
    EXPECT_THAT(
        newMessages(),
        IsSupersetOf({"mDefaultConfigCache : {\"Q\":\"a\\\"b\\\\\\u0001\xff\",\"VESK_CONFIG_"
                      "LOG_ENABLE\":\"1\",\"VESK_JSON_LOG_ENABLE\":\"1\"} \n",
                      "mRemoteConfigCache : {} \n", "mGameSetConfigCache : {} "}));
}

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
    Pairs pairs = {{"A", "old"}};
    EXPECT_FALSE(INIParser::GetInstance()->ParseINI("", pairs));
    EXPECT_TRUE(INIParser::GetInstance()->ParseINI("A=new\nB=1", pairs));
    EXPECT_EQ(pairs, (Pairs{{"A", "old"}, {"B", "1"}}));
}

} // namespace vesk::test
