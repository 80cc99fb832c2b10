// What is kept where the platform has a storage. Ours have none, so the linker puts one in its
// place (ld's --wrap).
#include "common/vesk.h"
#include "config/veskconfigmanager.h"
#include "foundation/tools/veskutils.h"
#include "unit/unittest.h"

namespace vesk::test {

static std::map<std::string, std::string> kept;
static bool keeps = false; ///< not for the other cases of this program

// What the linker calls for VESKLocalStorage's Read, Write and ConfigPath.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming,clang-diagnostic-*)
extern "C" {
std::string
__wrap__ZN6Braxel4VESK16VESKLocalStorage4ReadERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE(
    const std::string& key) {
    return keeps ? kept[key] : "";
}

void __wrap__ZN6Braxel4VESK16VESKLocalStorage5WriteERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES9_(
    const std::string& key, const std::string& value) {
    if (keeps) {
        kept[key] = value;
    }
}

std::string __wrap__ZN6Braxel4VESK16VESKLocalStorage10ConfigPathB5cxx11Ev() {
    return keeps ? kept["path"] : "";
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming,clang-diagnostic-*)

struct LocalStorage : UnitTest {
    LocalStorage() { keeps = true; }
};

TEST_F(LocalStorage, KeepsTheDeviceAndNamesTheLanguageOfTheMessages) {
    kept["ret_msg_lan"] = "de";
    write("VESKRetMsg_de.json", R"({"0":"gut"})");
    EXPECT_EQ(VESKUtils::GetRetMsg(0), "gut");
    const std::string uuid = VESK::GetUUID();
    EXPECT_THAT(VESK::CreateSequenceId(), HasSubstr(uuid));
    EXPECT_EQ(kept["upra_uuid"], uuid);
}

TEST_F(LocalStorage, KnowsTheDeviceAndItsCounterAgain) {
    kept = {{"upra_uuid", "U-1"}, {"upra_seq_id_primary_key", "7"}};
    EXPECT_THAT(VESK::CreateSequenceId(), AllOf(StartsWith("-U-1-"), EndsWith("-8")));
    write("VESKConfig.ini", "VESK_GAME_ID=1106"); // looked for until there is one
    EXPECT_THAT(VESK::CreateSequenceId(), StartsWith("1106-U-1-"));
}

TEST_F(LocalStorage, WhatTheGameSetComesBeforeTheServersAndThatBeforeTheFile) {
    kept["path"] = "there";
    write("VESKConfig.ini", "A=1\nB=2\nC=3\nVESK_DEBUG=0");
    write("upra_remote_config.tmp", "B=22\nC=33\nVESK_DEBUG=1");
    write("upra_game_set_config.tmp", "C=333\nVESK_DEBUG=0");
    auto* config = VESKConfigManager::GetInstance();
    EXPECT_EQ(config->Get<int>("A", 0) + config->Get<int>("B", 0) + config->Get<int>("C", 0), 356);
    EXPECT_EQ(config->Get<const char*>("B") + config->Get<const char*>("C"), "22333");
    EXPECT_TRUE(config->Get<bool>("VESK_DEBUG", false)) << "the server's alone";
}

} // namespace vesk::test
