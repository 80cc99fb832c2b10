#include "foundation/tools/md5.h"

#include "unit/unittest.h"

namespace vesk::test {

using Md5 = UnitTest;

TEST_F(Md5, TestSuiteOfTheRfcAndEveryLengthThatIsPaddedInAnotherWay) {
    // Those of the letter a are OpenSSL's.
    const Rows<std::string, const char*> rows = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
        {std::string("a\0\xff", 3), "b400e11f5b771d40145d1dc70b3d7b8c"},
        {std::string(55, 'a'), "ef1772b6dff9a122358552954ad0df65"},
        {std::string(56, 'a'), "3b0c8ac703f828b04c6c197006d17218"},
        {std::string(63, 'a'), "b06521f39153d618550606be297466d5"},
        {std::string(64, 'a'), "014842d480b571495a4a0363793f7367"},
        {std::string(65, 'a'), "c743a45e0d2e6a95cb859adae0248435"},
        {std::string(119, 'a'), "8a7bd0732ed6a28ce75f6dabc90e1613"},
        {std::string(120, 'a'), "5f61c0ccad4cac44c75ff505e1f1e537"},
        {std::string(70000, 'a'), "0b21388e04a856f824a29c58d71c8d40"},
    };
    for (const auto& [text, digest] : rows) {
        EXPECT_EQ(MD5::Hex(text), digest) << text;
        for (size_t first = 0; first <= std::min<size_t>(text.size(), 130); ++first) {
            MD5 pieces;
            pieces.Update(text.data(), first);
            pieces.Update(text.data() + first, text.size() - first);
            EXPECT_EQ(pieces.Finalise(), digest) << text << first;
        }
    }
}

} // namespace vesk::test
