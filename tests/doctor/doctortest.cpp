#include "doctor/doctortest.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <regex>
#include <sstream>

#include "doctor.h"

namespace vesk::test {

DoctorTest::DoctorTest() : mTrust(readFile(mFolder / "cacert.pem")) {
    heal();
}

void DoctorTest::heal() const {
    write("VESKConfig.ini", "# settings\nVESK_URL = " + mUrl +
                                "\nVESK_GAME_ID = 1106\nVESK_SDK_KEY = dev-key-0123\n"
                                "STEAM_APP_ID = 480\nFERNO_APP_ID = f-7\nKZ_APP_ID = k-7\n"
                                "KZ_APP_KEY = kz-key-4567\nVESK_HTTP_TIMEOUT = 15\n");
    write("cacert.pem", mTrust);
    copy("good_texts.json", "VESKRetMsg.json");
    copy("steam_full/steam_api64.dll", "steam_api64.dll");
    copy("ferno_full/frlogin.dll", "frlogin.dll");
    if (fs::exists(mFolder / "kz_full")) {
        copy("kz_full/KZOpenSDK.dll", "KZOpenSDK.dll");
    }
    for (const char* name : {"VESKRetMsg_.json", "upra_login.txt", "veskrecord.log"}) {
        fs::remove(mFolder / name);
    }
}

void DoctorTest::setLine(const std::string& line, std::string key) const {
    key = key.empty() ? line.substr(0, line.find(' ')) : key;
    std::istringstream before(readFile(mFolder / "VESKConfig.ini"));
    std::string after;
    bool found = false;
    for (std::string text; std::getline(before, text);) {
        const bool isIt = text.compare(0, key.size() + 1, key + " ") == 0;
        found = found || isIt;
        after += isIt ? line + "\n" : text + "\n";
    }
    write("VESKConfig.ini", found ? after : after + line + "\n");
}

void DoctorTest::write(const char* name, const std::string& bytes) const {
    writeFile(mFolder / name, bytes);
}

void DoctorTest::copy(const char* from, const char* to) const {
    fs::remove(mFolder / to);
    fs::copy_file(mFolder / from, mFolder / to);
}

Diagnosis DoctorTest::diagnose(bool offline) const {
    const std::string file = (mFolder.parent_path() / "doctor.jsonl").string();
    std::FILE* output = std::fopen(file.c_str(), "wb");
    doctor::DoctorOptions options;
    options.folder = mFolder.string();
    options.json = true;
    options.offline = offline;
    Diagnosis diagnosis;
    diagnosis.status = doctor::runDoctor(options, output);
    std::fclose(output);
    diagnosis.text = readFile(file);
    return diagnosis;
}

void DoctorTest::expectEach(const std::vector<Defect>& defects, bool offline) const {
    for (const Defect& defect : defects) {
        defect.spoil();
        const Diagnosis diagnosis = diagnose(offline);
        // A line of JSON, in which other quotes than those of its members are escaped.
        const std::string said = std::string("\"check\":\"") + defect.check + "\",\"verdict\":\"" +
                                 defect.verdict + "\",\"found\":\"[^\n]*" + defect.found +
                                 "[^\n]*\",\"remedy\":\"[^\n]*" + defect.remedy;
        EXPECT_TRUE(std::regex_search(diagnosis.text, std::regex(said))) << said << "\n"
                                                                         << diagnosis.text;
        EXPECT_EQ(diagnosis.status, defect.verdict == std::string("problem") ? 1 : 0)
            << diagnosis.text;
        EXPECT_THAT(diagnosis.text, testing::Not(testing::HasSubstr("dev-key-0123")));
        EXPECT_THAT(diagnosis.text, testing::Not(testing::HasSubstr("kz-key-4567")));
        heal();
    }
}

} // namespace vesk::test
