#include "scanpage/qrimage.h"

#include <memory>
#include <qrencode.h>

namespace vesk::backend {

namespace {

constexpr int kMargin = 4;

struct FreeCode {
    void operator()(QRcode* code) const { QRcode_free(code); }
};

/// Every dark module as a square of a path.
std::string pathOf(const QRcode& code) {
    std::string path;
    for (int i = 0; i < code.width * code.width; ++i) {
        if ((code.data[i] & 1) != 0) {
            path += "M" + std::to_string(i % code.width + kMargin) + " " +
                    std::to_string(i / code.width + kMargin) + "h1v1h-1z";
        }
    }
    return path;
}

} // namespace

std::optional<std::string> qrSvg(const std::string& text) {
    if (text.empty() || text.size() > kMaxQrText) {
        return std::nullopt;
    }
    const std::unique_ptr<QRcode, FreeCode> code(
        QRcode_encodeData(static_cast<int>(text.size()),
                          reinterpret_cast<const unsigned char*>(text.data()), 0, QR_ECLEVEL_M));
    if (!code) {
        return std::nullopt;
    }
    const std::string size = std::to_string(code->width + 2 * kMargin);
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + size + " " + size +
           R"(" shape-rendering="crispEdges"><rect width="100%" height="100%" fill="#fff"/>)" +
           R"(<path d=")" + pathOf(*code) + R"(" fill="#000"/></svg>)";
}

} // namespace vesk::backend
