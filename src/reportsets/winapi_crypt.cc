#include "reportsets/winapi_crypt.h"

#include "reportsets/md5.h"
#include "reportsets/rc4.h"

namespace folioscope {

void CWinAPICrypt::SetPassword(const std::string& New_Value) {
  if (New_Value != password_) password_ = New_Value;
}

std::string CWinAPICrypt::EncryptString(const std::string& Text, const std::string& Password) {
  if (!Password.empty()) SetPassword(Password);
  return EncryptDecrypt(Text, true);
}

std::string CWinAPICrypt::DecryptString(const std::string& Text, const std::string& Password) {
  if (!Password.empty()) SetPassword(Password);
  return EncryptDecrypt(Text, false);
}

std::string CWinAPICrypt::SessionKey(const std::string& password) {
  const Md5Digest hash = Md5(password);
  std::string key(16, '\0');
  for (int i = 0; i < 5; ++i) key[static_cast<size_t>(i)] = static_cast<char>(hash[i]);
  return key;
}

// A stream cipher: both directions apply the same key stream, and the
// length never changes. There is no provider, container or handle that
// could fail here, so no call raises.
std::string CWinAPICrypt::EncryptDecrypt(const std::string& Text, bool /*Encrypt*/) {
  if (Text.empty()) return std::string();
  return Rc4(SessionKey(password_), Text);
}

}  // namespace folioscope
