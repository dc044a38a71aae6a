// MD5 message digest (RFC 1321), used to derive the template cipher key.
#ifndef FOLIOSCOPE_REPORTSETS_MD5_H_
#define FOLIOSCOPE_REPORTSETS_MD5_H_

#include <array>
#include <cstdint>
#include <string_view>

namespace folioscope {

using Md5Digest = std::array<uint8_t, 16>;

// The 16-byte digest of `bytes`.
Md5Digest Md5(std::string_view bytes);

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_MD5_H_
