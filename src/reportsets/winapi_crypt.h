// CWinAPICrypt: the report-set file cipher. RC4 with a session key derived
// from the MD5 hash of a password the way the Microsoft Base Cryptographic
// Provider derives a default-length CALG_RC4 key: the first five hash bytes
// (40 bits) followed by eleven zero bytes of salt, a 16-byte RC4 key.
// Texts are Windows-1252 byte strings, so every byte value passes through
// unchanged in length.
#ifndef FOLIOSCOPE_REPORTSETS_WINAPI_CRYPT_H_
#define FOLIOSCOPE_REPORTSETS_WINAPI_CRYPT_H_

#include <string>

namespace folioscope {

// The password of the shipped report-set files.
inline constexpr const char* kTemplatePassword = "kelp";

class CWinAPICrypt {
 public:
  // Stores the value if it differs from the current one.
  void SetPassword(const std::string& New_Value);
  const std::string& Password() const { return password_; }

  // A non-empty `Password` first becomes the object's password; then `Text`
  // is encrypted (decrypted) with the object's password.
  std::string EncryptString(const std::string& Text, const std::string& Password = "");
  std::string DecryptString(const std::string& Text, const std::string& Password = "");

  // The 16-byte RC4 key for `password`.
  static std::string SessionKey(const std::string& password);

 private:
  std::string EncryptDecrypt(const std::string& Text, bool Encrypt);

  std::string password_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_WINAPI_CRYPT_H_
