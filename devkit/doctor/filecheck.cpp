#include <algorithm>
#include <fstream>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include "common/system.h"
#include "doctor.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

constexpr const char* kMessages = "VESKRetMsg.json";
constexpr const char* kFirstMessages = "VESKRetMsg_.json";
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
    return ok(name, "valid JSON, texts: " + std::to_string(texts), name);
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
        if (isThere(folder / name) && !canWrite(folder / name)) {
            return problem("folder", std::string(name) + " cannot be written to",
                           "Remove the file's write protection, or the file.");
        }
    }
    return ok("folder", folder.u8string() + " can be written to", "the folder can be written to");
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
              found + "; it holds credentials, pass on only what vesk-logread --redact prints",
              std::string(kLog) + " (pass on only what vesk-logread --redact prints)");
}

Finding checkStoredLogin(const fs::path& folder) {
    constexpr size_t kShortest = 4;
    const std::string bytes = devkit::readFile(folder / kLogin);
    if (!isThere(folder / kLogin)) {
        return ok(kLogin, "no login is remembered");
    }
    for (const char* channel : {"KZ", "Ferno", "Steam"}) {
        if (bytes.size() >= kShortest && bytes.compare(0, 2, channel, 2) == 0) {
            return ok(kLogin, std::string("a login is remembered, channel ") + channel,
                      std::string("a login by ") + channel + " is remembered");
        }
    }
    return warning(kLogin,
                   bytes.size() < kShortest ? "is too short to be a login"
                                            : "begins with no channel's name",
                   "Remove the file: the player has to log in again anyway.");
}

Finding judgeTrusted(const Certificate& certificate, int64_t now, bool only) {
    const bool early = now < certificate.begin;
    const std::string found =
        certificate.subject + (early ? " is valid only from " + dayText(certificate.begin)
                                     : " has expired on " + dayText(certificate.end));
    const char* const remedy =
        early ? "Compare this computer's date with the day it is, or get the right certificate "
                "from the backend's operator."
              : "Get the certificate that has replaced it from the backend's operator.";
    return only ? problem(kTrustFile, found, remedy) : warning(kTrustFile, found, remedy);
}

} // namespace

Finding checkMessages(const fs::path& folder) {
    for (const char* name : {kFirstMessages, kMessages}) {
        const std::string bytes = devkit::readFile(folder / name);
        if (!bytes.empty()) {
            return checkMessageFile(name, bytes);
        }
    }
    return problem(kMessages, "is missing or empty",
                   "Put the file that comes with the SDK beside the library: without it "
                   "results have no text.");
}

Findings checkTrust(const fs::path& folder, const PemFile& trusted, int64_t now, bool needed) {
    const std::string remedy = "Put the certificate authority of the backend there, in PEM form; "
                               "its operator has it, and vesk-devbackend writes its own with "
                               "--ca-out.";
    if (!isThere(folder / kTrustFile)) {
        return {needed ? problem(kTrustFile, "there is no such file: every request fails with 77",
                                 remedy)
                       : ok(kTrustFile, "there is none, and http:// needs none")};
    }
    Findings findings;
    if (trusted.privateKey) {
        findings.push_back(problem(kTrustFile, "holds a private key",
                                   "Remove the key from the file, and do not use it any more: "
                                   "everybody who has the game has it."));
    }
    const size_t count = trusted.certificates.size();
    size_t good = 0;
    for (const Certificate& certificate : trusted.certificates) {
        if (now >= certificate.begin && now <= certificate.end) {
            ++good;
        } else {
            findings.push_back(judgeTrusted(certificate, now, count == 1));
        }
    }
    if (trusted.broken > 0) {
        findings.push_back(problem(
            kTrustFile, "certificates that cannot be read: " + std::to_string(trusted.broken),
            "The file is damaged or cut off. " + remedy));
    }
    if (count == 0 && trusted.broken == 0) {
        findings.push_back(problem(kTrustFile, "holds no certificate", remedy));
    } else if (good == 0 && count > 1) {
        findings.push_back(problem(kTrustFile, "holds no certificate that is valid today", remedy));
    }
    if (findings.empty()) {
        const Certificate& first = trusted.certificates.front();
        findings.push_back(ok(kTrustFile,
                              "certificates: " + std::to_string(count) + ", the first is " +
                                  first.subject + ", until " + dayText(first.end),
                              kTrustFile));
    }
    return findings;
}

Findings checkFolder(const fs::path& folder) {
    return {checkWritable(folder), checkLog(folder), checkStoredLogin(folder)};
}

} // namespace vesk::doctor
