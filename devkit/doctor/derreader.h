#ifndef VESK_DEVKIT_DOCTOR_DERREADER_H
#define VESK_DEVKIT_DOCTOR_DERREADER_H

#include <string_view>

namespace vesk::doctor {

/// Walks through the elements of DER, the encoding of certificates.
class DerReader {
public:
    explicit DerReader(std::string_view bytes) : mRest(bytes) {}

    struct Element {
        unsigned tag = 0; ///< 0 when there is no further one, or a broken one
        std::string_view content;
    };

    Element next();

    /// The content of the next element, which has to be of this kind; throws std::runtime_error.
    std::string_view expect(unsigned tag);

private:
    std::string_view mRest;
};

} // namespace vesk::doctor

#endif
