#include <cstdio>
#include <filesystem>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <stdexcept>
#include <string>

#include "common/veskinnerrecords.h"
#include "foundation/json/veskjsonwriter.h"
#include "groups.h"
#include "loggedlines.h"
#include "microbench.h"
#include "support/files.h"

using Braxel::VESK::InnerLoginRet;
using Braxel::VESK::VESKJsonWriter;

namespace vesk::bench {

namespace {

const char* const kAnswer =
    R"({"ret":0,"msg":"","openid":"0123456789abcdef0123456789abcdef","uid":"76561198000000001",)"
    R"("token":"0123456789abcdef0123456789abcdef01234567","token_expire_time":1999999999,"first":1,)"
    R"("reg_channel_dis":"Windows","user_name":"Player 012345","gender":0,"birthdate":"",)"
    R"("picture_url":"https://pictures.example/012345.png","pf":"desktop_m_qq-00000000-windows",)"
    R"("pf_key":"0123456789abcdef","need_name_auth":false,"seq":"1106-bench-1"})";

/// The fields of a login record as a program would hold them that knew rapidjson only.
struct PlainRecord {
    struct Field {
        const char* key;
        char type; // s, i, l or b
        std::string text;
        int64_t number;
    };
    Field fields[23] = {{"methodNameID", 'i', "", 0},
                        {"retCode", 'i', "", 0},
                        {"retMsg", 's', "", 0},
                        {"ret", 'i', "", 0},
                        {"msg", 's', "", 0},
                        {"extraJson", 's', "", 0},
                        {"openid", 's', "", 0},
                        {"token", 's', "", 0},
                        {"token_expire_time", 'l', "", 0},
                        {"first", 'i', "", 0},
                        {"reg_channel_dis", 's', "", 0},
                        {"user_name", 's', "", 0},
                        {"gender", 'i', "", 0},
                        {"birthdate", 's', "", 0},
                        {"picture_url", 's', "", 0},
                        {"pf", 's', "", 0},
                        {"pf_key", 's', "", 0},
                        {"need_name_auth", 'b', "", 0},
                        {"channelID", 'i', "", 0},
                        {"channel", 's', "", 0},
                        {"channel_info", 's', "", 0},
                        {"uid", 's', "", 0},
                        {"seq", 's', "", 0}};

    std::string toJson() const {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        writer.StartObject();
        for (const Field& field : fields) {
            writer.Key(field.key);
            if (field.type == 's') {
                writer.String(field.text.data(),
                              static_cast<rapidjson::SizeType>(field.text.size()));
            } else if (field.type == 'b') {
                writer.Bool(field.number != 0);
            } else {
                writer.Int64(field.number);
            }
        }
        writer.EndObject();
        return std::string(buffer.GetString(), buffer.GetSize());
    }

    void fromJson(const std::string& json) {
        rapidjson::Document document;
        document.Parse(json.data(), json.size());
        if (!document.IsObject()) {
            return;
        }
        for (Field& field : fields) {
            const auto member = document.FindMember(field.key);
            if (member == document.MemberEnd()) {
                continue;
            }
            if (field.type == 's' && member->value.IsString()) {
                field.text.assign(member->value.GetString(), member->value.GetStringLength());
            } else if (field.type == 'b' && member->value.IsBool()) {
                field.number = member->value.GetBool() ? 1 : 0;
            } else if (member->value.IsInt64()) {
                field.number = member->value.GetInt64();
            }
        }
    }
};

void mergePlainly(std::string& into, const std::string& from) {
    rapidjson::Document target;
    rapidjson::Document source;
    target.Parse(into.data(), into.size());
    source.Parse(from.data(), from.size());
    if (!target.IsObject() || !source.IsObject()) {
        return;
    }
    auto& allocator = target.GetAllocator();
    for (auto member = source.MemberBegin(); member != source.MemberEnd(); ++member) {
        target.RemoveMember(member->name);
        rapidjson::Value name(member->name, allocator);
        rapidjson::Value value(member->value, allocator);
        target.AddMember(name, value, allocator);
    }
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    target.Accept(writer);
    into.assign(buffer.GetString(), buffer.GetSize());
}

void measureMerge(Figures& figures) {
    const std::string answer = kAnswer;
    InnerLoginRet record;
    record.FromJson(answer);
    const std::string stored = record.ToJson();
    std::string ours = stored;
    std::string plain = stored;
    VESKJsonWriter::merge(ours, answer);
    mergePlainly(plain, answer);
    if (ours != plain) {
        throw std::runtime_error("the two merges differ:\n" + ours + "\n" + plain);
    }
    figures.ratio("JSON merge", "plain rapidjson doing the same", "ns",
                  microbench(
                      "merge",
                      [&] {
                          std::string text = stored;
                          mergePlainly(text, answer);
                      },
                      [&] {
                          std::string text = stored;
                          VESKJsonWriter::merge(text, answer);
                      }),
                  atMost(1.5));
}

void measureRecord(Figures& figures) {
    InnerLoginRet record;
    record.FromJson(kAnswer);
    PlainRecord plain;
    plain.fromJson(record.ToJson());
    if (plain.toJson() != record.ToJson()) {
        throw std::runtime_error("the two records differ:\n" + plain.toJson() + "\n" +
                                 record.ToJson());
    }
    const auto thereAndBack = [&record] { record.FromJson(record.ToJson()); };
    // Both directions ask for the JSON log switch, and that is a log line each.
    const std::string folder = test::environment("VESK_TEST_FOLDER");
    const LoggedLines lines(folder + "/veskrecord.log", thereAndBack);
    // Without the folder they end early, and what is subtracted is small. Between system calls
    // everything runs slower, so the plain code gets the same output.
    std::filesystem::rename(folder, folder + ".away");
    const auto output = [&] {
        lines.logAgain();
        for (const PlainRecord::Field& field : plain.fields) {
            if (field.type == 's') {
                std::fputs("len:16", stdout); // as each assignment of a String does
            }
        }
    };
    const Pair ours = microbench("record", output, thereAndBack);
    const Pair theirs = microbench("plain record", output, [&] {
        output();
        plain.fromJson(plain.toJson());
    });
    std::filesystem::rename(folder + ".away", folder);
    figures.ratio("a record to JSON text and back, less its output",
                  "plain rapidjson doing the same", "ns",
                  {theirs.measured - theirs.baseline, ours.measured - ours.baseline}, atMost(1.40));
}

void measureJson(Figures& figures) {
    measureMerge(figures);
    measureRecord(figures);
}

const Group jsonGroup("json", &measureJson);

} // namespace
} // namespace vesk::bench
