// The catalogue of installed report sets: CReportSets (of CReportSet) and
// CLanguages (of CLanguage), read once from <app>/Res/IndexComment.ini.
//
// Both collections keep an object store keyed by a string and a position
// index that maps the decimal text of a running number (0, 1, ...) to the
// object key, so the k-th object added is reachable by its key and by k.
// Item() with a number, or a string that reads as one, goes through the
// position index; anything else is an object key. A missing key or number
// raises run-time error 5 to the caller.
#ifndef FOLIOSCOPE_REPORTSETS_REPORT_SETS_H_
#define FOLIOSCOPE_REPORTSETS_REPORT_SETS_H_

#include <cstdint>
#include <memory>
#include <string>

#include "infra/collection.h"

namespace folioscope {

// The object store plus position index shared by both collections.
template <typename T>
class KeyedCollection {
 public:
  int32_t Count() const { return store_.Count(); }
  T& Item(int32_t index) const;
  T& Item(const std::string& index) const;

 protected:
  // Adds a new object under `key` (or under its number when `key` is empty).
  // A present key raises error 457 and leaves the counter unchanged.
  T& Add(const std::string& key);

 private:
  vb::Collection<T> store_;
  vb::Collection<std::string> positions_;
  int32_t sequence_ = 0;
};

class CLanguage {
 public:
  const std::string& Name() const { return name_; }
  void SetName(const std::string& value) { name_ = value; }

 private:
  std::string name_;
};

class CLanguages : public KeyedCollection<CLanguage> {
  friend class CReportSets;
};

class CReportSet {
 public:
  CReportSet() : languages_(std::make_shared<CLanguages>()) {}
  const std::string& Name() const { return name_; }
  void SetName(const std::string& value) { name_ = value; }
  const std::string& QuellPath() const { return quell_path_; }
  void SetQuellPath(const std::string& value) { quell_path_ = value; }
  CLanguages& Languages() const { return *languages_; }
  void SetLanguages(std::shared_ptr<CLanguages> value) { languages_ = std::move(value); }
  // The languages as shared with wrappers that may outlive a later
  // SetLanguages (the COM server's CLanguages objects).
  const std::shared_ptr<CLanguages>& SharedLanguages() const { return languages_; }

 private:
  std::string name_;
  std::string quell_path_;
  std::shared_ptr<CLanguages> languages_;
};

class CReportSets : public KeyedCollection<CReportSet> {
 public:
  // Loads the catalogue; a missing IndexComment.ini leaves it empty.
  CReportSets();

 private:
  void GetReportSetValues();
};

// <app>/Res/IndexComment.ini, the file of the catalogue and the template lists.
std::string IndexCommentIniPath();

// The value of `key` in `section` as the report-set files are read: a
// 200-character blank buffer, default "Unbekannt", trimmed, and (when
// `drop_last` is set) the final character - the NUL after the value - dropped.
std::string ReadIniKey(const std::string& section, const std::string& key,
                       const std::string& ini_file, bool drop_last = true);

// Logged when a set's folder is missing below Res.
std::string MissingSetMessage(const std::string& set_name, const std::string& folder);
// Logged when a set's "Path" leads out of Res; the set is left out.
std::string RefusedSetMessage(const std::string& set_name, const std::string& set_path,
                              const std::string& res_folder);

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_REPORT_SETS_H_
