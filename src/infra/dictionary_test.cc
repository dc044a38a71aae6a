// Line dictionaries keyed 1..n are looked up by position; every other key
// through the hash index. These tests cross that boundary in every way the
// component does (key 0 after the lines, keys out of order, string keys,
// RemoveAll) and compare with a plain list that searches linearly. Lines
// shared with other dictionaries must behave as lines added one by one.
#include "infra/dictionary.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "infra/vb_runtime.h"

namespace vb {
namespace {

// The reference: insertion-ordered pairs, found by linear search.
class ListModel {
 public:
  int Find(const DictKey& key) const {
    for (size_t i = 0; i < entries_.size(); ++i) {
      if (entries_[i].first == key) return static_cast<int>(i);
    }
    return -1;
  }
  const std::string& Item(const DictKey& key) {
    int i = Find(key);
    if (i >= 0) return entries_[static_cast<size_t>(i)].second;
    entries_.emplace_back(key, "");
    return entries_.back().second;
  }
  void SetItem(const DictKey& key, const std::string& item) {
    int i = Find(key);
    if (i >= 0) {
      entries_[static_cast<size_t>(i)].second = item;
    } else {
      entries_.emplace_back(key, item);
    }
  }
  bool Add(const DictKey& key, const std::string& item) {
    if (Find(key) >= 0) return false;
    entries_.emplace_back(key, item);
    return true;
  }
  void RemoveAll() { entries_.clear(); }
  const std::vector<std::pair<DictKey, std::string>>& entries() const { return entries_; }

 private:
  std::vector<std::pair<DictKey, std::string>> entries_;
};

// The run-time error number F raises, 0 when none.
template <class F>
int32_t ErrorOf(F f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.number();
  }
  return 0;
}

void ExpectSame(const Dictionary& d, const ListModel& m) {
  ASSERT_EQ(d.Count(), static_cast<int32_t>(m.entries().size()));
  for (int32_t i = 0; i < d.Count(); ++i) {
    EXPECT_EQ(d.KeyAt(i), m.entries()[static_cast<size_t>(i)].first) << "position " << i;
    EXPECT_EQ(d.ItemAt(i), m.entries()[static_cast<size_t>(i)].second) << "position " << i;
  }
}

TEST(DictionaryKeys, LineDictionaryThenScanKeys) {
  Dictionary d;
  for (int32_t k = 1; k <= 5; ++k) d.Add(k, "line " + std::to_string(k));
  EXPECT_EQ(d.Item(0), "");  // the scans' key 0 goes behind the lines
  EXPECT_EQ(d.Count(), 6);
  EXPECT_EQ(d.KeyAt(5).long_value(), 0);
  EXPECT_EQ(d.Item(5), "line 5");
  EXPECT_EQ(d.Item(7), "");  // past the end: added, not confused with position 7
  EXPECT_EQ(d.Count(), 7);
  d.Add(6, "six");  // a later Long key after the dense run still works
  EXPECT_EQ(d.Item(6), "six");
  EXPECT_EQ(d.KeyAt(7).long_value(), 6);
  EXPECT_TRUE(d.Exists(DictKey::Long(6)));
  EXPECT_FALSE(d.Exists(DictKey::Long(8)));
  EXPECT_FALSE(d.Exists(DictKey::String("1")));
  EXPECT_EQ(ErrorOf([&] { d.Add(3, "again"); }), kKeyAlreadyAssociated);
  EXPECT_EQ(ErrorOf([&] { d.Add(0, "again"); }), kKeyAlreadyAssociated);
  EXPECT_EQ(ErrorOf([&] { d.Add(6, "again"); }), kKeyAlreadyAssociated);
  d.Add(std::string("1"), "string");  // a text key is another key
  EXPECT_EQ(d.Item(std::string("1")), "string");
  EXPECT_EQ(d.Item(1), "line 1");

  d.RemoveAll();
  EXPECT_EQ(d.Count(), 0);
  EXPECT_FALSE(d.Exists(DictKey::Long(1)));
  d.Add(2, "two");  // not dense from the start
  d.Add(1, "one");
  EXPECT_EQ(d.Item(1), "one");
  EXPECT_EQ(d.ItemAt(0), "two");
  EXPECT_EQ(d.Item(-1), "");
  EXPECT_EQ(d.Count(), 3);
  EXPECT_EQ(ErrorOf([] { Dictionary().KeyAt(0); }), kSubscriptOutOfRange);
}

// Random operations over a small key space, so that present and absent,
// dense and sparse, Long and String keys all meet.
TEST(DictionaryKeys, BehavesLikeAnOrderedList) {
  uint64_t state = 12345;
  auto next = [&state](int n) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    return static_cast<int>((state >> 33) % static_cast<uint64_t>(n));
  };
  for (int round = 0; round < 200; ++round) {
    Dictionary d;
    ListModel m;
    int dense = next(8);
    // Every other round the lines are shared: a slice of a module's store
    // held by a second dictionary too, which no change to `d` may reach.
    const bool shared = round % 2 == 1;
    auto store = std::make_shared<std::vector<std::string>>();
    store->push_back("before");
    for (int32_t k = 1; k <= dense; ++k) {
      if (!shared) d.Add(k, "l" + std::to_string(k));
      store->push_back("l" + std::to_string(k));
      m.Add(DictKey::Long(k), "l" + std::to_string(k));
    }
    store->push_back("after");
    if (shared) d.ShareLines(store, 1, dense);
    const Dictionary twin = d;
    const ListModel twin_model = m;
    for (int op = 0; op < 40; ++op) {
      DictKey key =
          next(4) == 0 ? DictKey::String(std::to_string(next(10))) : DictKey::Long(next(14) - 2);
      std::string item = "v" + std::to_string(op);
      // Readers keep derived work while the revision stands: every change
      // of state must move it, and nothing else may.
      const uint64_t revision = d.Revision();
      bool changes = false;
      switch (next(5)) {
        case 0:
          changes = m.Find(key) < 0;
          EXPECT_EQ(d.Item(key), m.Item(key));
          break;
        case 1:
          changes = true;
          d.SetItem(key, item);
          m.SetItem(key, item);
          break;
        case 2: {
          bool added = m.Add(key, item);
          changes = added;
          EXPECT_EQ(ErrorOf([&] { d.Add(key, item); }), added ? 0 : kKeyAlreadyAssociated);
          break;
        }
        case 3:
          EXPECT_EQ(d.Exists(key), m.Find(key) >= 0);
          break;
        default:
          if (next(10) == 0) {
            changes = true;
            d.RemoveAll();
            m.RemoveAll();
          }
          break;
      }
      EXPECT_EQ(d.Revision() != revision, changes);
    }
    ExpectSame(d, m);
    ExpectSame(twin, twin_model);
  }
}

}  // namespace
}  // namespace vb
