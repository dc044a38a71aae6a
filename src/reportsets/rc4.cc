#include "reportsets/rc4.h"

#include <array>
#include <utility>

namespace folioscope {

std::string Rc4(std::string_view key, std::string_view data) {
  std::array<uint8_t, 256> s;
  for (int i = 0; i < 256; ++i) s[i] = static_cast<uint8_t>(i);
  // Key schedule.
  uint8_t j = 0;
  for (size_t i = 0; i < 256; ++i) {
    j = static_cast<uint8_t>(j + s[i] + static_cast<uint8_t>(key[i % key.size()]));
    std::swap(s[i], s[j]);
  }
  // Key stream XORed over the data.
  std::string out(data);
  uint8_t i = 0;
  j = 0;
  for (char& c : out) {
    i = static_cast<uint8_t>(i + 1);
    j = static_cast<uint8_t>(j + s[i]);
    std::swap(s[i], s[j]);
    c = static_cast<char>(static_cast<uint8_t>(c) ^ s[static_cast<uint8_t>(s[i] + s[j])]);
  }
  return out;
}

}  // namespace folioscope
