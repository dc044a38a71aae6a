// A SettingsBackend kept in a registry hive file (see registry_hive.h).
//
// The file is read lazily and the parsed tree is cached while the file's
// size, modification time and inode stay the same, so repeated reads cost
// no parse. Every change rewrites the whole file atomically (temporary file
// and rename), keeping every other key and value, and creates the file's
// folder first. A missing file is an empty registry. A file that cannot be
// parsed reads as empty and is never overwritten; LoadError() tells why.
// Every read and every change looks at the file's stamp once; inside a
// read group only the group's first read does.
#ifndef FOLIOSCOPE_INFRA_HIVE_FILE_SETTINGS_H_
#define FOLIOSCOPE_INFRA_HIVE_FILE_SETTINGS_H_

#include <string>

#include "infra/file_stamp.h"
#include "infra/registry_tree.h"
#include "infra/settings_backend.h"

namespace folioscope {

class HiveFileSettings : public SettingsBackend {
 public:
  // `path` is Windows-1252, like every path the component hands to the OS.
  explicit HiveFileSettings(std::string path);

  const std::string& path() const { return path_; }

  // Brings the cache up to date; false when the file exists but cannot be
  // read or parsed (the reason is in LoadError()).
  bool Load();
  const std::string& LoadError() const { return load_error_; }
  // Number of times the file was parsed (the cache's effect is testable).
  int parse_count() const { return parse_count_; }

  bool CreateKey(uint32_t root, const std::string& path) override;
  bool KeyExists(uint32_t root, const std::string& path) override;
  std::optional<RegValue> QueryValue(uint32_t root, const std::string& path,
                                     const std::string& name) override;
  bool SetValue(uint32_t root, const std::string& path, const std::string& name,
                const RegValue& value) override;
  bool DeleteKey(uint32_t root, const std::string& path) override;
  bool DeleteValue(uint32_t root, const std::string& path, const std::string& name) override;
  std::optional<std::string> EnumKey(uint32_t root, const std::string& path,
                                     uint32_t index) override;
  std::optional<std::pair<std::string, RegValue>> EnumValue(uint32_t root, const std::string& path,
                                                            uint32_t index) override;
  std::optional<RegValue> ReadValue(uint32_t root, const std::string& path, const std::string& name,
                                    bool* key_exists) override;
  void BeginReadGroup() override;
  void EndReadGroup() override;

 private:
  // Load() for a read: inside a read group only the group's first read
  // looks at the file. Changes always start from a fresh Load(), so that
  // they never write back a stale copy over another program's change.
  bool LoadForRead();
  // Writes `changed` to the file and makes it the cache; false on failure.
  bool Store(const RegistryTree& changed);

  std::string path_;
  RegistryTree tree_;
  FileStamp stamp_;
  bool loaded_ = false;
  std::string load_error_;
  int parse_count_ = 0;
  int read_group_depth_ = 0;
  bool checked_in_group_ = false;  // the open group has looked at the file
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_HIVE_FILE_SETTINGS_H_
