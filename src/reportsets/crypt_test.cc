#include <string>

#include <gtest/gtest.h>

#include "reportsets/md5.h"
#include "reportsets/rc4.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {
namespace {

std::string Hex(const std::string& bytes) {
  static const char* kDigits = "0123456789abcdef";
  std::string out;
  for (unsigned char c : bytes) {
    out += kDigits[c >> 4];
    out += kDigits[c & 15];
  }
  return out;
}

std::string Hex(const Md5Digest& d) { return Hex(std::string(d.begin(), d.end())); }

TEST(Md5, Rfc1321TestSuite) {
  const struct {
    const char* input;
    const char* digest;
  } kCases[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Hex(Md5(c.input)), c.digest) << c.input;
}

TEST(Rc4, PublishedVectors) {
  // The classic vectors (key, plaintext, ciphertext) and the first 16 key
  // stream bytes of the 40-bit key 0102030405 from RFC 6229.
  EXPECT_EQ(Hex(Rc4("Key", "Plaintext")), "bbf316e8d940af0ad3");
  EXPECT_EQ(Hex(Rc4("Wiki", "pedia")), "1021bf0420");
  EXPECT_EQ(Hex(Rc4("Secret", "Attack at dawn")), "45a01f645fc35b383552544b9bf5");
  EXPECT_EQ(Hex(Rc4(std::string("\x01\x02\x03\x04\x05"), std::string(16, '\0'))),
            "b2396305f03dc027ccc3524a0a1118a8");
}

TEST(CWinAPICrypt, KeyIsFortyBitsOfTheMd5HashWithElevenZeroBytes) {
  // Reference computed independently (Python hashlib for MD5, a textbook
  // RC4) from the documented default of the Base provider: a 40-bit
  // CALG_RC4 key with eleven zero bytes of salt. MD5("kelp") is
  // c40c69779e15780adae46c45eb451e23.
  EXPECT_EQ(Hex(CWinAPICrypt::SessionKey("kelp")), "c40c69779e" + std::string(22, '0'));
  CWinAPICrypt crypt;
  EXPECT_EQ(Hex(crypt.EncryptString("<HTML>Folioscope</HTML>", "kelp")),
            "130c2e303543ef58cb78456818ce03d5f98fdaef03b339");
}

TEST(CWinAPICrypt, RoundTripsEveryByteAndKeepsLength) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  all += all;
  CWinAPICrypt crypt;
  const std::string cipher = crypt.EncryptString(all, "geheim");
  EXPECT_EQ(cipher.size(), all.size());
  EXPECT_NE(cipher, all);
  EXPECT_EQ(crypt.DecryptString(cipher, "geheim"), all);
  // A second object with the same password reads what the first wrote.
  CWinAPICrypt other;
  EXPECT_EQ(other.DecryptString(cipher, "geheim"), all);
  // A wrong password is no error; it just yields other bytes.
  EXPECT_NE(other.DecryptString(cipher, "falsch"), all);
  EXPECT_EQ(crypt.EncryptString("", "geheim"), "");
  EXPECT_EQ(crypt.DecryptString("", ""), "");
}

TEST(CWinAPICrypt, EmptyPasswordArgumentKeepsTheStoredPassword) {
  CWinAPICrypt crypt;
  EXPECT_EQ(crypt.Password(), "");
  crypt.SetPassword(kTemplatePassword);
  const std::string cipher = CWinAPICrypt().EncryptString("Vorlage", kTemplatePassword);
  EXPECT_EQ(crypt.DecryptString(cipher, ""), "Vorlage");
  EXPECT_EQ(crypt.Password(), "kelp");
  crypt.DecryptString(cipher, "anders");
  EXPECT_EQ(crypt.Password(), "anders");
}

}  // namespace
}  // namespace folioscope
