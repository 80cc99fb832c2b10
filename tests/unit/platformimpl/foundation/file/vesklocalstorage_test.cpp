// What is kept where the platform has a storage. Ours have none, so the linker puts one in its
// place (ld's --wrap).
#include "common/vesk.h"
#include "foundation/tools/veskutils.h"
#include "unit/unittest.h"

namespace vesk::test {

/// What the linker calls for VESKLocalStorage's functions of the same names.
struct KeptStorage {
    static std::string Read(const std::string& key);
    static void Write(const std::string& key, const std::string& value);
};

static std::map<std::string, std::string> kept;
static bool keeps = false; ///< not for the other cases of this program

std::string KeptStorage::Read(const std::string& key) {
    return keeps ? kept[key] : "";
}
void KeptStorage::Write(const std::string& key, const std::string& value) {
    if (keeps) {
        kept[key] = value;
    }
}

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
}

} // namespace vesk::test
