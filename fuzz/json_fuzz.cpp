// JSON texts of any bytes: the reader, the manager, the merge of two, and a backend's answer to a
// login. The first byte of an input says where the second text begins.
#include <cstdint>
#include <rapidjson/document.h>
#include <string>

#include "expect.h"
#include "foundation/json/veskjsonmanager.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"
#include "login/veskloginresults.h"
#include "vesk/veskerror.h"

using namespace Braxel::VESK;
using vesk::fuzz::expect;

namespace {

rapidjson::Document parsed(const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(text.c_str(), text.size());
    return document;
}

void readAll(const std::string& text) {
    VESKJsonReader reader;
    reader.init(text);
    expect(!(reader.parseFailed() && reader.hasCursor()), "what is not parsed has no members");
    int32_t number = 7;
    int64_t wide = 7;
    bool flag = true;
    float real = 0;
    std::string words = "as it was";
    for (const char* key : {"ret", "a", ""}) {
        reader.read(key, number);
        reader.read(key, wide);
        reader.read(key, flag);
        reader.read(key, real);
        reader.read(key, words);
    }
    if (reader.enter("a")) {
        for (int count = 0; count < 20; ++count) {
            reader.next().read("b", words);
        }
    }
}

void merge(const std::string& left, const std::string& right) {
    std::string merged = left;
    VESKJsonWriter::merge(merged, right);
    const auto ours = parsed(merged);
    const auto theirs = parsed(right);
    const auto before = parsed(left);
    if (before.HasParseError() || !before.IsObject() || theirs.HasParseError() ||
        !theirs.IsObject()) {
        return;
    }
    expect(!ours.HasParseError() && ours.IsObject(), "two objects become an object");
    for (const auto& member : before.GetObject()) {
        expect(ours.HasMember(member.name), "no member is lost");
    }
}

void putInto(std::string text) {
    VESKJsonManager manager(text);
    manager.PutIfAbsent("put", "value");
    const auto after = parsed(manager);
    expect(!after.HasParseError(), "the text of a document is JSON");
    expect(!manager.IsObject() || after.HasMember("put"), "the member is there afterwards");
}

void takeAsAnswer(const std::string& body) {
    InnerLoginRet ret;
    ConvertLoginRet(ret, 0, body, "1-1");
    const bool succeeded =
        ret.retCode == VESKError::SUCCESS || ret.retCode == VESKError::NEED_REALNAME;
    expect(succeeded || ret.retCode == VESKError::SERVER_ERROR,
           "an answer is a success or a failure of the backend");
    expect(!succeeded || ret.thirdCode == 0, "only \"ret\" 0 is a success");

    InnerLoginRet copy;
    copy.FromJson(ret.ToJson());
    expect(copy.thirdCode == ret.thirdCode && copy.tokenExpire == ret.tokenExpire,
           "numbers survive the stored form");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const size_t middle = data[0] * text.size() / 255;
    readAll(text);
    putInto(text);
    takeAsAnswer(text);
    merge(text.substr(0, middle), text.substr(middle));
    return 0;
}
