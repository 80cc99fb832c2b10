#include "console/codepicture.h"

#include <sstream>
#include <stdexcept>
#include <vector>

#include "devkit/qrreader.h"

namespace vesk::test {
namespace {

using Rows = std::vector<std::vector<bool>>;

/// Reads a line of blocks as two rows of dark modules; false when it is none.
bool readLine(const std::string& line, Rows& rows) {
    std::vector<bool> upper;
    std::vector<bool> lower;
    for (size_t i = 0; i < line.size();) {
        const std::string block = line[i] == ' ' ? " " : line.substr(i, 3);
        i += block.size();
        if (block != " " && block != "▀" && block != "▄" && block != "█") {
            return false;
        }
        upper.push_back(block == " " || block == "▄");
        lower.push_back(block == " " || block == "▀");
    }
    rows.push_back(upper);
    rows.push_back(lower);
    return !line.empty();
}

} // namespace

std::string textOfPicture(const std::string& output) {
    constexpr size_t kQuietZone = 4;
    Rows rows;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);) {
        readLine(line, rows);
    }
    const size_t size = rows.empty() ? 0 : rows[0].size();
    if (size < 2 * kQuietZone || rows.size() < size) {
        throw std::runtime_error("no picture:\n" + output);
    }
    std::string runs;
    for (size_t y = 0; y < size; ++y) {
        for (size_t x = 0; x < size; ++x) {
            const bool edge = x < kQuietZone || y < kQuietZone || x >= size - kQuietZone ||
                              y >= size - kQuietZone;
            if (rows[y].at(x) && edge) {
                throw std::runtime_error("dark in the quiet zone");
            }
            if (rows[y][x]) {
                runs += "M" + std::to_string(x) + " " + std::to_string(y) + "h1v1";
            }
        }
    }
    const std::string side = std::to_string(size);
    return QrReader("viewBox=\"0 0 " + side + " " + side + "\"" + runs).text();
}

} // namespace vesk::test
