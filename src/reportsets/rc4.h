// RC4 stream cipher. Encryption and decryption are the same operation.
#ifndef FOLIOSCOPE_REPORTSETS_RC4_H_
#define FOLIOSCOPE_REPORTSETS_RC4_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace folioscope {

// `data` XORed with the RC4 key stream of `key` (1 to 256 bytes).
std::string Rc4(std::string_view key, std::string_view data);

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_RC4_H_
