#ifndef VESK_TESTS_SUPPORT_MESSENGER_H
#define VESK_TESTS_SUPPORT_MESSENGER_H

#include <string>
#include <vector>

#include "support/gamefolder.h"

namespace vesk::test {

/// A messenger's simulated component in the game's folder.
class Messenger {
public:
    /// Installs the full variant. @param simulator the name of its files, "ferno" or "kz"
    Messenger(const GameFolder& game, const char* simulator, const char* fileName);

    /// Replaces the component by another variant of the simulator, "full" or "partial".
    void install(const std::string& variant) const;
    /// Says how the component behaves from now on.
    void script(const std::string& settings) const;
    /// The lines that the component has written down and that hold @p text.
    std::vector<std::string> componentLines(const std::string& text) const;

    const std::filesystem::path file;

private:
    const std::filesystem::path mFolder;
    const std::string mSimulator;
};

} // namespace vesk::test

#endif
