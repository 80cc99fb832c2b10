#ifndef VESK_DEVKIT_COMMON_INIFILE_H
#define VESK_DEVKIT_COMMON_INIFILE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::devkit {

/// A settings file of "key = value" lines, with what a mere reader would pass over in silence.
/// Blanks around a key and a value are no part of them; the first line for a key counts.
class IniFile {
public:
    /// Where a "#" begins a comment: anywhere, as docs/configuration.md has it, or as the first
    /// character of a line, so that a value may hold one.
    enum class Comments { Anywhere, WholeLines };

    struct Setting {
        std::string key;
        std::string value;
        size_t line = 0;
        bool cut = false; ///< a "#" stands directly behind a character of the value
    };

    explicit IniFile(std::string_view bytes, Comments comments = Comments::Anywhere);

    /// Every line that sets something, in the order of the file.
    const std::vector<Setting>& settings() const { return mSettings; }

    /// The line that counts for @p key; null when there is none.
    const Setting* find(std::string_view key) const;

    /// The value that counts, which may be empty; @p otherwise when no line sets it.
    std::string value(std::string_view key, std::string_view otherwise = {}) const;

    /// Lines that are no setting, no comment, no section and not empty either.
    const std::vector<size_t>& strayLines() const { return mStrayLines; }

private:
    void readLine(std::string_view line, size_t number, Comments comments);

    std::vector<Setting> mSettings;
    std::vector<size_t> mStrayLines;
};

} // namespace vesk::devkit

#endif
