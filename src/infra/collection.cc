#include "infra/collection.h"

namespace vb {

std::string CollectionKey(const std::string& key) {
  std::string k = key;
  for (char& c : k)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return k;
}

}  // namespace vb
