#include "infra/hive_file_settings.h"

#include <fstream>
#include <sstream>

#include "infra/file_stamp.h"
#include "infra/file_system.h"
#include "infra/os_path.h"
#include "infra/registry_hive.h"

namespace folioscope {

HiveFileSettings::HiveFileSettings(std::string path) : path_(std::move(path)) {}

bool HiveFileSettings::LoadForRead() {
  if (read_group_depth_ > 0) {
    if (checked_in_group_ && loaded_) return load_error_.empty();
    checked_in_group_ = true;
  }
  return Load();
}

bool HiveFileSettings::Load() {
  const FileStamp now = StampOfFile(path_);
  if (loaded_ && now == stamp_) return load_error_.empty();
  loaded_ = true;
  stamp_ = now;
  tree_ = RegistryTree();
  load_error_.clear();
  if (!now.exists) return true;
  std::ifstream in(OsPath(path_), std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  if (!in) {
    load_error_ = path_ + ": cannot be read";
    return false;
  }
  ++parse_count_;
  RegistryTree parsed;
  if (!ParseHive(bytes.str(), path_, &parsed, &load_error_)) return false;
  tree_ = parsed;
  return true;
}

bool HiveFileSettings::Store(const RegistryTree& changed) {
  if (!load_error_.empty()) return false;  // never replace a file we could not read
  const std::string parent = ParentFolder(path_);
  if (!parent.empty()) CreateFolders(parent);
  if (!WriteFileAtomically(path_, SerializeHive(changed))) return false;
  tree_ = changed;
  stamp_ = StampOfFile(path_);
  return true;
}

bool HiveFileSettings::CreateKey(uint32_t root, const std::string& path) {
  Load();
  if (tree_.KeyExists(root, path)) return true;
  RegistryTree changed = tree_;
  return changed.CreateKey(root, path) && Store(changed);
}

bool HiveFileSettings::KeyExists(uint32_t root, const std::string& path) {
  LoadForRead();
  return tree_.KeyExists(root, path);
}

std::optional<RegValue> HiveFileSettings::QueryValue(uint32_t root, const std::string& path,
                                                     const std::string& name) {
  LoadForRead();
  return tree_.QueryValue(root, path, name);
}

bool HiveFileSettings::SetValue(uint32_t root, const std::string& path, const std::string& name,
                                const RegValue& value) {
  Load();
  RegistryTree changed = tree_;
  return changed.SetValue(root, path, name, value) && Store(changed);
}

bool HiveFileSettings::DeleteKey(uint32_t root, const std::string& path) {
  Load();
  RegistryTree changed = tree_;
  return changed.DeleteKey(root, path) && Store(changed);
}

bool HiveFileSettings::DeleteValue(uint32_t root, const std::string& path,
                                   const std::string& name) {
  Load();
  RegistryTree changed = tree_;
  return changed.DeleteValue(root, path, name) && Store(changed);
}

std::optional<std::string> HiveFileSettings::EnumKey(uint32_t root, const std::string& path,
                                                     uint32_t index) {
  LoadForRead();
  return tree_.EnumKey(root, path, index);
}

std::optional<std::pair<std::string, RegValue>> HiveFileSettings::EnumValue(uint32_t root,
                                                                            const std::string& path,
                                                                            uint32_t index) {
  LoadForRead();
  return tree_.EnumValue(root, path, index);
}

std::optional<RegValue> HiveFileSettings::ReadValue(uint32_t root, const std::string& path,
                                                    const std::string& name, bool* key_exists) {
  LoadForRead();
  return tree_.ReadValue(root, path, name, key_exists);
}

void HiveFileSettings::BeginReadGroup() {
  if (read_group_depth_++ == 0) checked_in_group_ = false;
}

void HiveFileSettings::EndReadGroup() {
  if (read_group_depth_ > 0) --read_group_depth_;
}

}  // namespace folioscope
