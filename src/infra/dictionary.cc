#include "infra/dictionary.h"

#include <atomic>
#include <functional>

#include "infra/vb_runtime.h"

namespace vb {

std::string DictKey::ToText() const { return is_long_ ? CStr(long_value_) : string_value_; }

size_t DictKey::Hash::operator()(const DictKey& k) const {
  if (k.is_long_) return std::hash<int32_t>()(k.long_value_) * 31u + 1u;
  return std::hash<std::string>()(k.string_value_);
}

namespace {

uint64_t NextRevision() {
  static std::atomic<uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

int32_t Dictionary::Find(const DictKey& key) const {
  if (key.is_long() && key.long_value() >= 1 && key.long_value() <= dense_count_) {
    return key.long_value() - 1;
  }
  if (index_.empty()) return -1;
  auto it = index_.find(key);
  return it == index_.end() ? -1 : it->second;
}

void Dictionary::Append(const DictKey& key, std::string item) {
  const int32_t position = Count();
  if (dense_count_ == position && key.is_long() && key.long_value() == position + 1) {
    ++dense_count_;
  } else {
    index_.emplace(key, position);
  }
  entries_.push_back(Entry{key, std::move(item)});
  revision_ = NextRevision();
}

const std::string& Dictionary::Item(const DictKey& key) {
  const int32_t position = Find(key);
  if (position >= 0) return entries_[position].item;
  Append(key, std::string());
  return entries_.back().item;
}

void Dictionary::SetItem(const DictKey& key, std::string item) {
  const int32_t position = Find(key);
  if (position >= 0) {
    entries_[position].item = std::move(item);
    revision_ = NextRevision();
    return;
  }
  Append(key, std::move(item));
}

void Dictionary::Add(const DictKey& key, std::string item) {
  if (Find(key) >= 0) Raise(kKeyAlreadyAssociated);
  Append(key, std::move(item));
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
  dense_count_ = 0;
  revision_ = NextRevision();
}

}  // namespace vb
