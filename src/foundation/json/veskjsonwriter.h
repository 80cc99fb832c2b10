#ifndef VESK_FOUNDATION_JSON_VESKJSONWRITER_H
#define VESK_FOUNDATION_JSON_VESKJSONWRITER_H

#include <cstdint>
#include <memory>
#include <string>

#include "vesk/veskstring.h"

namespace Braxel {
namespace VESK {

/// The memory that a VESKJsonWriter fills.
class VESKJsonBuffer {
public:
    VESKJsonBuffer();
    ~VESKJsonBuffer();
    VESKJsonBuffer(const VESKJsonBuffer&) = delete;
    VESKJsonBuffer& operator=(const VESKJsonBuffer&) = delete;

    /// The compact JSON text written so far.
    std::string text() const;

private:
    friend class VESKJsonWriter;
    struct State;
    std::unique_ptr<State> mState;
};

/// Builds the text of a JSON object member by member, in the order of the calls.
class VESKJsonWriter {
public:
    /// A writer over nothing: every call only logs that it needs a buffer.
    VESKJsonWriter() = default;

    /// @param buffer must outlive the writer.
    explicit VESKJsonWriter(VESKJsonBuffer& buffer);

    void objectBegin();
    void objectEnd();

    void convert(const char* key, int32_t value);
    void convert(const char* key, int64_t value);
    void convert(const char* key, bool value);
    void convert(const char* key, float value);
    void convert(const char* key, const char* value);
    void convert(const char* key, const String& value);
    void convert(const char* key, const std::string& value);

    /// Writes the member as the JSON object or array that @p json is, unchanged; as {} when
    /// @p json is no JSON.
    void convertJson(const char* key, const std::string& json);

    /// Merges the object @p json2 into @p json1, whose members of the same name give way. Member
    /// order is not kept: the last member moves into the place of a removed one, and the members
    /// of @p json2 come last. On a failure @p json1 stays as it is.
    static void merge(std::string& json1, const std::string& json2);

private:
    /// Whether there is a buffer; logs for @p method, fully qualified, when not.
    bool ready(const char* method) const;
    void putKey(const char* key);
    void putString(const char* key, const char* text, size_t length);

    VESKJsonBuffer* mBuffer = nullptr;
    bool mLogEnable = false;
};

} // namespace VESK
} // namespace Braxel

#endif
