#ifndef VESK_DEVKIT_DOCTOR_INIFILE_H
#define VESK_DEVKIT_DOCTOR_INIFILE_H

#include <cstddef>
#include <string>
#include <vector>

namespace vesk::doctor {

/// A settings file by the rules of docs/configuration.md, with what a mere reader would pass over
/// in silence.
class IniFile {
public:
    struct Setting {
        std::string key;
        std::string value;
        size_t line = 0;
        bool cut = false; ///< a "#" stands directly behind a character of the value
    };

    explicit IniFile(const std::string& bytes);

    /// Every line that sets something, in the order of the file.
    const std::vector<Setting>& settings() const { return mSettings; }

    /// The line that counts for @p key, which is the first; null when there is none.
    const Setting* find(const std::string& key) const;

    /// The value that counts; empty when there is none.
    std::string value(const std::string& key) const;

    /// Lines that are no setting, no comment, no section and not empty either.
    const std::vector<size_t>& strayLines() const { return mStrayLines; }

private:
    void readLine(const std::string& line, size_t number);

    std::vector<Setting> mSettings;
    std::vector<size_t> mStrayLines;
};

} // namespace vesk::doctor

#endif
