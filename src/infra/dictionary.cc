#include "infra/dictionary.h"

#include <atomic>
#include <functional>
#include <new>

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

// The keys of shared lines are not stored with them: KeyAt gives a
// reference to the one process-wide copy of Long key k, made on first use
// in blocks of kKeysPerBlock and never freed.
constexpr int32_t kKeysPerBlock = 4096;
constexpr size_t kKeyBlocks = (size_t{1} << 31) / kKeysPerBlock;
std::atomic<const DictKey*> g_key_blocks[kKeyBlocks];

const DictKey* MakeKeyBlock(size_t block) {
  auto* keys = static_cast<DictKey*>(::operator new(sizeof(DictKey) * kKeysPerBlock));
  const int64_t base = static_cast<int64_t>(block) * kKeysPerBlock;
  for (int32_t i = 0; i < kKeysPerBlock; ++i)
    new (keys + i) DictKey(DictKey::Long(static_cast<int32_t>(base + i)));
  return keys;
}

void FreeKeyBlock(const DictKey* keys) {
  for (int32_t i = 0; i < kKeysPerBlock; ++i) keys[i].~DictKey();
  ::operator delete(const_cast<DictKey*>(keys));
}

const DictKey& LineKey(int32_t value) {
  const size_t block = static_cast<size_t>(value) / kKeysPerBlock;
  const DictKey* keys = g_key_blocks[block].load(std::memory_order_acquire);
  if (keys == nullptr) {
    const DictKey* fresh = MakeKeyBlock(block);
    if (g_key_blocks[block].compare_exchange_strong(keys, fresh, std::memory_order_acq_rel)) {
      keys = fresh;
    } else {
      FreeKeyBlock(fresh);  // another thread was first; `keys` holds its block
    }
  }
  return keys[value % kKeysPerBlock];
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

void Dictionary::ShareLines(SharedLines lines, size_t first, int32_t count) {
  RemoveAll();
  if (count <= 0) return;
  shared_ = std::move(lines);
  shared_first_ = first;
  shared_count_ = count;
  dense_count_ = count;
  revision_ = NextRevision();
}

void Dictionary::Unshare() {
  std::vector<Entry> own;
  own.reserve(static_cast<size_t>(Count()));
  for (int32_t k = 0; k < shared_count_; ++k)
    own.push_back(Entry{DictKey::Long(k + 1), (*shared_)[shared_first_ + static_cast<size_t>(k)]});
  for (Entry& e : entries_) own.push_back(std::move(e));
  entries_.swap(own);
  shared_.reset();
  shared_first_ = 0;
  shared_count_ = 0;
}

const std::string& Dictionary::Item(const DictKey& key) {
  const int32_t position = Find(key);
  if (position >= 0) return ItemAtPosition(position);
  Append(key, std::string());
  return entries_.back().item;
}

void Dictionary::SetItem(const DictKey& key, std::string item) {
  const int32_t position = Find(key);
  if (position >= 0) {
    if (position < shared_count_) Unshare();
    entries_[static_cast<size_t>(position - shared_count_)].item = std::move(item);
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
  if (index < shared_count_) return LineKey(index + 1);
  return entries_[index - shared_count_].key;
}

const std::string& Dictionary::ItemAt(int32_t index) const {
  if (index < 0 || index >= Count()) Raise(kSubscriptOutOfRange);
  return ItemAtPosition(index);
}

void Dictionary::RemoveAll() {
  shared_.reset();
  shared_first_ = 0;
  shared_count_ = 0;
  entries_.clear();
  index_.clear();
  dense_count_ = 0;
  revision_ = NextRevision();
}

}  // namespace vb
