#include "infra/dictionary.h"

#include <functional>

#include "infra/vb_runtime.h"

namespace vb {

std::string DictKey::ToText() const { return is_long_ ? CStr(long_value_) : string_value_; }

size_t DictKey::Hash::operator()(const DictKey& k) const {
  if (k.is_long_) return std::hash<int32_t>()(k.long_value_) * 31u + 1u;
  return std::hash<std::string>()(k.string_value_);
}

const std::string& Dictionary::Item(const DictKey& key) {
  auto it = index_.find(key);
  if (it != index_.end()) return entries_[it->second].item;
  index_.emplace(key, Count());
  entries_.push_back(Entry{key, std::string()});
  return entries_.back().item;
}

void Dictionary::SetItem(const DictKey& key, std::string item) {
  auto it = index_.find(key);
  if (it != index_.end()) {
    entries_[it->second].item = std::move(item);
    return;
  }
  index_.emplace(key, Count());
  entries_.push_back(Entry{key, std::move(item)});
}

void Dictionary::Add(const DictKey& key, std::string item) {
  if (Exists(key)) Raise(kKeyAlreadyAssociated);
  index_.emplace(key, Count());
  entries_.push_back(Entry{key, std::move(item)});
}

const DictKey& Dictionary::KeyAt(int32_t index) const {
  if (index < 0 || index >= Count()) Raise(kSubscriptOutOfRange);
  return entries_[index].key;
}

const std::string& Dictionary::ItemAt(int32_t index) const {
  if (index < 0 || index >= Count()) Raise(kSubscriptOutOfRange);
  return entries_[index].item;
}

void Dictionary::RemoveAll() {
  entries_.clear();
  index_.clear();
}

}  // namespace vb
