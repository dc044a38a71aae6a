// VB's Collection: 1-based, optionally keyed (keys compare without regard to
// ASCII case), insertion-ordered. Item(index) outside 1..Count raises error
// 9; Item(key) of a missing key raises error 5; Add of a present key raises
// error 457. Owns its elements.
#ifndef FOLIOSCOPE_INFRA_COLLECTION_H_
#define FOLIOSCOPE_INFRA_COLLECTION_H_

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "infra/vb_runtime.h"

namespace vb {

// ASCII lower case of a key, the Collection's key comparison.
std::string CollectionKey(const std::string& key);

template <typename T>
class Collection {
 public:
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }

  T& Add(std::unique_ptr<T> item, const std::string& key = "") {
    if (!key.empty()) {
      std::string k = CollectionKey(key);
      if (keys_.count(k)) Raise(kKeyAlreadyAssociated);
      keys_.emplace(std::move(k), Count());
    }
    items_.push_back(std::move(item));
    return *items_.back();
  }

  T& Item(int32_t index) const {
    if (index < 1 || index > Count()) Raise(kSubscriptOutOfRange);
    return *items_[static_cast<size_t>(index - 1)];
  }

  T& Item(const std::string& key) const {
    auto it = keys_.find(CollectionKey(key));
    if (it == keys_.end()) Raise(kInvalidProcedureCall);
    return *items_[static_cast<size_t>(it->second)];
  }

  bool Exists(const std::string& key) const { return keys_.count(CollectionKey(key)) != 0; }

  // Iteration in insertion order.
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::vector<std::unique_ptr<T>> items_;
  std::unordered_map<std::string, int32_t> keys_;
};

}  // namespace vb

#endif  // FOLIOSCOPE_INFRA_COLLECTION_H_
