#include "support/programrun.h"

#include <cstdlib>

#include "support/files.h"

namespace fs = std::filesystem;

namespace vesk::test {

ProgramRun runProgram(const fs::path& folder, const std::string& name, const std::string& arguments,
                      const std::string& before) {
    fs::path program = folder / name;
    if (!fs::exists(program)) {
        program += ".exe";
    }
    const fs::path out = (folder.parent_path() / "out.txt").make_preferred();
    const fs::path err = (folder.parent_path() / "err.txt").make_preferred();
    const std::string command = before + program.make_preferred().string() + " " + arguments +
                                " >" + out.string() + " 2>" + err.string();
    const int status = std::system(command.c_str());
    // One system gives the exit status as it is, the other one eight bits further up.
    return {status > 0xFF ? status >> 8 : status, readFile(out), readFile(err)};
}

} // namespace vesk::test
