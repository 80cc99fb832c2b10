#include "filecheck.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

constexpr const char* kMessages = "VESKRetMsg.json";
constexpr const char* kFirstMessages = "VESKRetMsg_.json";
constexpr const char* kTrust = "cacert.pem";
constexpr const char* kLog = "veskrecord.log";
constexpr const char* kLogin = "upra_login.txt";

Finding checkMessageFile(const std::string& name, const std::string& bytes) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(bytes.data(), bytes.size());
    if (document.HasParseError()) {
        const size_t at = document.GetErrorOffset();
        const auto line =
            1 + std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n');
        return problem(name,
                       "is not valid JSON, line " + std::to_string(line) + ": " +
                           rapidjson::GetParseError_En(document.GetParseError()),
                       "Correct that line, or take the file that comes with the SDK: without it "
                       "results have no text.");
    }
    if (!document.IsObject()) {
        return problem(
            name, "is JSON, but no object",
            "Write {\"0\":\"Success.\", ...}, or take the file that comes with the SDK.");
    }
    const auto texts = std::count_if(document.MemberBegin(), document.MemberEnd(),
                                     [](const auto& member) { return member.value.IsString(); });
    if (texts == 0) {
        return warning(name, "holds no text", "Take the file that comes with the SDK.");
    }
    return ok(name, "valid JSON, texts: " + std::to_string(texts));
}

/// Opens for appending, which changes nothing, what the SDK would write to.
bool canWrite(const fs::path& file) {
    return std::ofstream(file, std::ios::binary | std::ios::app).good();
}

Finding checkWritable(const fs::path& folder) {
    const fs::path trial = folder / "vesk-doctor-trial.tmp";
    const bool writable = canWrite(trial);
    std::error_code ignored;
    fs::remove(trial, ignored);
    if (!writable) {
        return problem("folder", "nothing can be written to " + folder.u8string(),
                       "Let the player's account write there, or install the game where it may: "
                       "logins cannot be kept and there is no log.");
    }
    for (const char* name : {kLog, kLogin}) {
        if (fs::exists(folder / name, ignored) && !canWrite(folder / name)) {
            return problem("folder", std::string(name) + " cannot be written to",
                           "Remove the file's write protection, or the file.");
        }
    }
    return ok("folder", folder.u8string() + " can be written to");
}

Finding checkLog(const fs::path& folder) {
    // From here on the SDK begins a new log at its next start.
    constexpr uintmax_t kUsualLimit = 2097152;
    constexpr uintmax_t kSurprising = 32 * kUsualLimit;
    std::error_code missing;
    const uintmax_t size = fs::file_size(folder / kLog, missing);
    if (missing) {
        return ok(kLog, "there is none yet");
    }
    const std::string found = std::to_string(size) + " bytes";
    if (size > kSurprising) {
        return warning(kLog, found,
                       "Restart the game: a log of more than 2 MB is deleted at the start. Switch "
                       "VESK_JSON_LOG_ENABLE and VESK_CONFIG_LOG_ENABLE off.");
    }
    return ok(kLog,
              found + "; it holds credentials, pass on only what vesk-logread --redact prints");
}

Finding checkStoredLogin(const fs::path& folder) {
    constexpr size_t kShortest = 4;
    const std::string bytes = fileBytes(folder / kLogin);
    std::error_code ignored;
    if (!fs::exists(folder / kLogin, ignored)) {
        return ok(kLogin, "no login is remembered");
    }
    if (bytes.size() < kShortest) {
        return warning(kLogin, "is too short to be a login",
                       "Remove the file: the player has to log in again anyway.");
    }
    const std::string channel = bytes.substr(0, 2);
    if (channel != "KZ" && channel != "Fe" && channel != "St") {
        return warning(kLogin, "begins with no channel's name",
                       "Remove the file: the player has to log in again anyway.");
    }
    return ok(kLogin, "a login is remembered, channel " + std::string(channel == "KZ"   ? "KZ"
                                                                      : channel == "Fe" ? "Ferno"
                                                                                        : "Steam"));
}

std::string trustSummary(const Pem& pem) {
    return "certificates: " + std::to_string(pem.certificates.size()) + ", the first is " +
           pem.certificates.front().subject() + ", until " +
           dayText(pem.certificates.front().end());
}

} // namespace

std::string fileBytes(const fs::path& file) {
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) {
        return {}; // opening a FIFO would block
    }
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Findings checkMessages(const fs::path& folder) {
    Findings findings;
    const std::string first = fileBytes(folder / kFirstMessages);
    if (!first.empty()) {
        findings.push_back(checkMessageFile(kFirstMessages, first));
        return findings;
    }
    const std::string bytes = fileBytes(folder / kMessages);
    if (bytes.empty()) {
        return {problem(kMessages, "is missing or empty",
                        "Put the file that comes with the SDK beside the library: without it "
                        "results have no text.")};
    }
    return {checkMessageFile(kMessages, bytes)};
}

Findings checkTrust(const fs::path& folder, const Pem& pem, int64_t now, bool needed) {
    const std::string remedy = "Put the certificate authority of the backend there, in PEM form; "
                               "the operator of the backend has it.";
    std::error_code ignored;
    if (!fs::exists(folder / kTrust, ignored)) {
        return {needed
                    ? problem(kTrust, "there is no such file: every request fails with 77", remedy)
                    : ok(kTrust, "there is none, and http:// needs none")};
    }
    Findings findings;
    if (pem.privateKey) {
        findings.push_back(problem(kTrust, "holds a private key",
                                   "Remove the key from the file, and do not use it any more: "
                                   "everybody who has the game has it."));
    }
    size_t good = 0;
    for (const Certificate& certificate : pem.certificates) {
        const bool early = now < certificate.begin();
        if (!early && now <= certificate.end()) {
            ++good;
            continue;
        }
        const std::string found =
            certificate.subject() + (early ? " is valid only from " + dayText(certificate.begin())
                                           : " has expired on " + dayText(certificate.end()));
        const std::string what = early ? "Compare this computer's date with the day it is, or get "
                                         "the right certificate from the backend's operator."
                                       : "Get the certificate that has replaced it from the "
                                         "backend's operator.";
        findings.push_back(pem.certificates.size() == 1 ? problem(kTrust, found, what)
                                                        : warning(kTrust, found, what));
    }
    if (pem.broken > 0) {
        findings.push_back(
            problem(kTrust, "certificates that cannot be read: " + std::to_string(pem.broken),
                    "The file is damaged or cut off. " + remedy));
    }
    if (pem.certificates.empty() && pem.broken == 0) {
        findings.push_back(problem(kTrust, "holds no certificate", remedy));
    } else if (good == 0 && pem.certificates.size() > 1) {
        findings.push_back(problem(kTrust, "holds no certificate that is valid today", remedy));
    }
    if (findings.empty()) {
        findings.push_back(ok(kTrust, trustSummary(pem)));
    }
    return findings;
}

Findings checkFolder(const fs::path& folder) {
    return {checkWritable(folder), checkLog(folder), checkStoredLogin(folder)};
}

} // namespace vesk::doctor
