// The VB-compatible keyed collection (Scripting.Dictionary semantics).
//
// Contract:
// - Entries keep insertion order; KeyAt/ItemAt index them from 0.
// - Keys are typed: the Long key 1 and the String key "1" are different
//   keys. String keys compare case-sensitively (binary compare mode).
// - Reading an absent key through Item() ADDS it with an empty item and
//   returns that item. The doc-comment scans depend on this: reading key 0
//   of a line dictionary keyed 1..n adds key 0 and raises Count by one.
// - Add() of a present key raises run-time error 457.
// - KeyAt/ItemAt outside 0..Count-1 raise run-time error 9.
// - A dictionary may share its lines with others (ShareLines): a module and
//   its members read one copy of the module's lines. Sharing is invisible:
//   a change to a shared line gives the changed dictionary its own copy.
// Not thread-safe; each dictionary belongs to one caller. Dictionaries that
// share lines may be used by different callers: the shared lines are never
// written.
#ifndef FOLIOSCOPE_INFRA_DICTIONARY_H_
#define FOLIOSCOPE_INFRA_DICTIONARY_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vb {

class DictKey {
 public:
  static DictKey Long(int32_t value) { return DictKey(true, value, std::string()); }
  static DictKey String(std::string value) { return DictKey(false, 0, std::move(value)); }

  bool is_long() const { return is_long_; }
  int32_t long_value() const { return long_value_; }
  const std::string& string_value() const { return string_value_; }
  // The key as text: the decimal number of a Long key, else the string.
  std::string ToText() const;

  bool operator==(const DictKey& o) const {
    return is_long_ == o.is_long_ && long_value_ == o.long_value_ &&
           string_value_ == o.string_value_;
  }

  struct Hash {
    size_t operator()(const DictKey& k) const;
  };

 private:
  DictKey(bool is_long, int32_t l, std::string s)
      : is_long_(is_long), long_value_(l), string_value_(std::move(s)) {}
  bool is_long_;
  int32_t long_value_;
  std::string string_value_;
};

// Line texts that several dictionaries hold without copying them.
using SharedLines = std::shared_ptr<const std::vector<std::string>>;

class Dictionary {
 public:
  int32_t Count() const { return shared_count_ + static_cast<int32_t>(entries_.size()); }

  // Makes this dictionary hold the Long keys 1..count with the items
  // (*lines)[first] .. (*lines)[first + count - 1], in that order, as if
  // each had been added; the texts are shared, not copied. Whatever the
  // dictionary held before is removed.
  void ShareLines(SharedLines lines, size_t first, int32_t count);

  // Item get: the item of `key`, adding the key with an empty item when absent.
  const std::string& Item(const DictKey& key);
  const std::string& Item(int32_t long_key) { return Item(DictKey::Long(long_key)); }
  const std::string& Item(const std::string& string_key) {
    return Item(DictKey::String(string_key));
  }

  // Item let: replaces the item of `key`, adding the key when absent.
  void SetItem(const DictKey& key, std::string item);
  void SetItem(int32_t long_key, std::string item) {
    SetItem(DictKey::Long(long_key), std::move(item));
  }

  // Adds a new key; raises error 457 when the key is present.
  void Add(const DictKey& key, std::string item);
  void Add(int32_t long_key, std::string item) { Add(DictKey::Long(long_key), std::move(item)); }
  void Add(const std::string& string_key, std::string item) {
    Add(DictKey::String(string_key), std::move(item));
  }

  bool Exists(const DictKey& key) const { return Find(key) >= 0; }

  // Keys()(i) and Items()(i): 0-based position in insertion order.
  const DictKey& KeyAt(int32_t index) const;
  const std::string& ItemAt(int32_t index) const;

  void RemoveAll();

  // Names the dictionary's state: it changes with every entry added,
  // replaced or removed, and no two states in the process share one (a copy
  // shares its original's until either changes). 0 is the fresh, empty
  // dictionary. Lets a reader keep work derived from the entries until they
  // change.
  uint64_t Revision() const { return revision_; }

  // Makes room for `count` entries, so that filling a dictionary of known
  // size (a member's lines) moves no entry. Changes nothing visible.
  void Reserve(int32_t count) {
    entries_.reserve(static_cast<size_t>(count < shared_count_ ? 0 : count - shared_count_));
  }

 private:
  struct Entry {
    DictKey key;
    std::string item;
  };
  // Position of `key`, -1 when absent.
  int32_t Find(const DictKey& key) const;
  // Appends an entry for a key that Find() did not find.
  void Append(const DictKey& key, std::string item);
  // The item at a position below Count().
  const std::string& ItemAtPosition(int32_t position) const {
    return position < shared_count_ ? (*shared_)[shared_first_ + static_cast<size_t>(position)]
                                    : entries_[static_cast<size_t>(position - shared_count_)].item;
  }
  // Copies the shared lines into entries_, before one of them changes.
  void Unshare();

  // Positions 0 .. shared_count_ - 1 are the shared lines (Long keys 1 ..
  // shared_count_); position p beyond them is entries_[p - shared_count_].
  SharedLines shared_;
  size_t shared_first_ = 0;
  int32_t shared_count_ = 0;
  std::vector<Entry> entries_;
  // Line dictionaries are keyed 1..n in order. Such a dense prefix is found
  // by position alone: positions 0 .. dense_count_ - 1 hold the Long keys
  // 1 .. dense_count_ and are not in index_; every later entry is.
  int32_t dense_count_ = 0;
  std::unordered_map<DictKey, int32_t, DictKey::Hash> index_;
  uint64_t revision_ = 0;
};

}  // namespace vb

#endif  // FOLIOSCOPE_INFRA_DICTIONARY_H_
