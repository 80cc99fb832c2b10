#include <gmock/gmock.h>

#include "doctor.h"
#include "doctor/doctortest.h"
#include "support/backendcontrol.h"

namespace vesk::test {
namespace {

using testing::HasSubstr;

// The first label is too long for any name server, so that none is asked.
const std::string kNoName = "https://" + std::string(64, 'n') + ".invalid";

TEST_F(DoctorTest, NamesTheStepAtWhichTheBackendIsLost) {
    const auto url = [this](const std::string& address) {
        return [this, address] { setLine("VESK_URL = " + address); };
    };
    const std::string port = mUrl.substr(mUrl.rfind(':'));
    expectEach(
        {
            {url(kNoName), "problem", "name", "libcurl reports 6", "DNS"},
            {url("https://localhost:1"), "problem", "connection", "libcurl reports 7", "--port 1"},
            {url("https://localhost" + environment("VESK_TEST_CONTROL_URL").substr(16)), "problem",
             "certificate", "libcurl reports 35", "other than TLS"},
            {url("http://localhost" + port), "problem", "answer", "libcurl reports", "scheme"},
            {[this] { copy("expired_ca.pem", "cacert.pem"); }, "problem", "certificate",
             "which is not in cacert.pem: libcurl reports 60", "Put that authority's certificate"},
            {[this] { fs::remove(mFolder / "cacert.pem"); }, "problem", "certificate",
             "libcurl reports 77", "cacert.pem is missing"},
        },
        false);
}

TEST_F(DoctorTest, NamesTheFaultOfTheBackendsCertificate) {
    BackendControl backend(environment("VESK_TEST_CONTROL_URL"));
    const auto shows = [&](const char* kind) {
        return [&backend, kind] { backend.showCertificate(kind); };
    };
    expectEach(
        {
            {shows("expired"), "problem", "certificate", "and here it is", "has to renew"},
            {shows("not-yet-valid"), "problem", "certificate", "is valid from",
             "this computer's date"},
            {shows("wrong-name"), "problem", "certificate", "libcurl reports 60", "another host"},
            {shows("self-signed"), "problem", "certificate", "not in cacert.pem",
             "Put that authority"},
            {shows("unknown-ca"), "problem", "certificate", "libcurl reports 60", "cacert.pem"},
        },
        false);
}

/// What the doctor says about a step of a connection, as "verdict: found -> remedy".
std::string judged(const doctor::Connection& connection, const std::string& check) {
    const doctor::BackendAddress address("https://login.example.com");
    for (const auto& finding : doctor::checkConnection(address, connection, doctor::PemFile())) {
        if (finding.check == check) {
            const char* const verdicts[] = {"problem", "warning", "ok"};
            return std::string(verdicts[static_cast<int>(finding.verdict)]) + ": " + finding.found +
                   " -> " + finding.remedy;
        }
    }
    return "nothing";
}

TEST(DoctorClock, IsJudgedByItsDistanceFromTheBackends) {
    const std::vector<std::pair<int64_t, const char*>> rows = {
        {0, "ok: this computer's is 0 seconds ahead"},
        {-30, "ok: this computer's is 30 seconds behind the backend's"},
        {31, "warning: this computer's is 31 seconds ahead of the backend's"},
        {-300, "warning: this computer's is 300 seconds behind"},
        {301, "problem: this computer's is 301 seconds ahead"},
        {-90000, "problem: this computer's is 90000 seconds behind"},
    };
    for (const auto& [ahead, words] : rows) {
        doctor::Connection connection;
        connection.ownTime = 1800000000;
        connection.backendTime = connection.ownTime - ahead;
        EXPECT_THAT(judged(connection, "clock"), HasSubstr(words));
    }
    EXPECT_THAT(judged({}, "clock"), HasSubstr("warning: the backend's answer has no \"Date\""));
}

TEST(DoctorAnswer, IsJudgedByItsStatus) {
    doctor::Connection connection;
    connection.status = 404;
    EXPECT_THAT(judged(connection, "answer"), HasSubstr("ok: HTTP status 404"));
    connection.status = 503;
    EXPECT_THAT(judged(connection, "answer"), HasSubstr("a fault of its own"));
    connection.status = 302;
    connection.location = "https://elsewhere.example";
    EXPECT_THAT(judged(connection, "answer"), HasSubstr("Set VESK_URL to the address"));
    connection.reached = doctor::Connection::Step::Answer;
    EXPECT_THAT(judged(connection, "answer"), HasSubstr("problem"));
    EXPECT_EQ(judged(connection, "clock"), "nothing");
}

TEST_F(DoctorTest, JudgesTheBackendsCertificateByItsDays) {
    const doctor::PemFile pem(readFile(mFolder / "expired_ca.pem"));
    ASSERT_EQ(pem.certificates.size(), 1u);
    doctor::Connection connection;
    connection.certificates = pem.certificates;
    connection.ownTime = pem.certificates[0].end - 13 * 86400;
    EXPECT_THAT(judged(connection, "certificate"),
                HasSubstr("warning: trusted, valid until 2020-12-31"));
    connection.ownTime -= 2 * 86400;
    EXPECT_THAT(judged(connection, "certificate"),
                HasSubstr("ok: trusted, valid until 2020-12-31"));
    connection.ownTime += 20 * 86400;
    connection.reached = doctor::Connection::Step::Secure;
    connection.code = 60;
    EXPECT_THAT(judged(connection, "certificate"),
                HasSubstr("valid from 2020-01-01 until 2020-12-31, and here it is 2021-01-05"));
}

} // namespace
} // namespace vesk::test
