#include "infra/windows_registry_settings.h"

#include <windows.h>

#include <vector>

namespace folioscope {

namespace {

// The predefined key of a root number; nullptr for anything else.
HKEY RootKey(uint32_t root) {
  switch (root) {
    case 0x80000000u:
      return HKEY_CLASSES_ROOT;
    case 0x80000001u:
      return HKEY_CURRENT_USER;
    case 0x80000002u:
      return HKEY_LOCAL_MACHINE;
    case 0x80000003u:
      return HKEY_USERS;
    case 0x80000005u:
      return HKEY_CURRENT_CONFIG;
    default:
      return nullptr;
  }
}

// An opened key, closed when it goes out of scope.
class OpenKey {
 public:
  OpenKey(uint32_t root, const std::string& path) {
    HKEY parent = RootKey(root);
    if (parent && ::RegOpenKeyA(parent, path.c_str(), &key_) != ERROR_SUCCESS) key_ = nullptr;
  }
  ~OpenKey() {
    if (key_) ::RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  explicit operator bool() const { return key_ != nullptr; }
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// RegQueryValueExA until the buffer is large enough (another writer may
// grow the value between the size query and the read).
std::optional<RegValue> Query(HKEY key, const std::string& name) {
  DWORD type = 0;
  DWORD size = 0;
  if (::RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  for (int attempt = 0; attempt < 4; ++attempt) {
    std::vector<BYTE> buffer(size + 1);
    DWORD got = size;
    LONG rc = ::RegQueryValueExA(key, name.c_str(), nullptr, &type, buffer.data(), &got);
    if (rc == ERROR_SUCCESS) {
      return RegValue{static_cast<uint32_t>(type),
                      std::string(reinterpret_cast<const char*>(buffer.data()), got)};
    }
    if (rc != ERROR_MORE_DATA) return std::nullopt;
    size = got;
  }
  return std::nullopt;
}

}  // namespace

bool WindowsRegistrySettings::CreateKey(uint32_t root, const std::string& path) {
  HKEY parent = RootKey(root);
  HKEY key = nullptr;
  if (!parent || ::RegCreateKeyA(parent, path.c_str(), &key) != ERROR_SUCCESS) return false;
  ::RegCloseKey(key);
  return true;
}

bool WindowsRegistrySettings::KeyExists(uint32_t root, const std::string& path) {
  return static_cast<bool>(OpenKey(root, path));
}

std::optional<RegValue> WindowsRegistrySettings::QueryValue(uint32_t root, const std::string& path,
                                                            const std::string& name) {
  OpenKey key(root, path);
  if (!key) return std::nullopt;
  return Query(key.get(), name);
}

std::optional<RegValue> WindowsRegistrySettings::ReadValue(uint32_t root, const std::string& path,
                                                           const std::string& name,
                                                           bool* key_exists) {
  OpenKey key(root, path);
  *key_exists = static_cast<bool>(key);
  if (!key) return std::nullopt;
  return Query(key.get(), name);
}

bool WindowsRegistrySettings::SetValue(uint32_t root, const std::string& path,
                                       const std::string& name, const RegValue& value) {
  OpenKey key(root, path);
  if (!key) return false;
  return ::RegSetValueExA(key.get(), name.c_str(), 0, value.type,
                          reinterpret_cast<const BYTE*>(value.data.data()),
                          static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
}

bool WindowsRegistrySettings::DeleteKey(uint32_t root, const std::string& path) {
  HKEY parent = RootKey(root);
  // RegDeleteKeyA refuses a key that still has sub-keys.
  return parent && !path.empty() && ::RegDeleteKeyA(parent, path.c_str()) == ERROR_SUCCESS;
}

bool WindowsRegistrySettings::DeleteValue(uint32_t root, const std::string& path,
                                          const std::string& name) {
  OpenKey key(root, path);
  return key && ::RegDeleteValueA(key.get(), name.c_str()) == ERROR_SUCCESS;
}

std::optional<std::string> WindowsRegistrySettings::EnumKey(uint32_t root, const std::string& path,
                                                            uint32_t index) {
  OpenKey key(root, path);
  if (!key) return std::nullopt;
  char name[MAX_PATH + 1] = {};
  if (::RegEnumKeyA(key.get(), index, name, sizeof name) != ERROR_SUCCESS) return std::nullopt;
  return std::string(name);
}

std::optional<std::pair<std::string, RegValue>> WindowsRegistrySettings::EnumValue(
    uint32_t root, const std::string& path, uint32_t index) {
  OpenKey key(root, path);
  if (!key) return std::nullopt;
  // Buffers as large as the key's longest name and data, so that every
  // entry is returned whole.
  DWORD max_name = 0;
  DWORD max_data = 0;
  if (::RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         &max_name, &max_data, nullptr, nullptr) != ERROR_SUCCESS)
    return std::nullopt;
  std::vector<char> name(max_name + 2);
  std::vector<BYTE> data(max_data + 2);
  DWORD name_size = static_cast<DWORD>(name.size());
  DWORD data_size = static_cast<DWORD>(data.size());
  DWORD type = 0;
  if (::RegEnumValueA(key.get(), index, name.data(), &name_size, nullptr, &type, data.data(),
                      &data_size) != ERROR_SUCCESS)
    return std::nullopt;
  return std::make_pair(
      std::string(name.data(), name_size),
      RegValue{static_cast<uint32_t>(type),
               std::string(reinterpret_cast<const char*>(data.data()), data_size)});
}

}  // namespace folioscope
