// The store behind CRegistry: keys and typed values, shaped after the narrow
// Windows registry functions (RegCreateKeyA, RegOpenKeyA, RegQueryValueExA,
// RegSetValueExA, RegDeleteKeyA, RegDeleteValueA, RegEnumKeyA, RegEnumValueA).
//
// Key paths are backslash-separated and relative to a root key handle; key
// and value names compare case-insensitively (ASCII), as in the registry.
// Value data are raw bytes: a REG_SZ value holds exactly the bytes written
// (with or without a terminating NUL), a REG_DWORD value four little-endian
// bytes. Implementations never throw; failures are reported by results.
#ifndef FOLIOSCOPE_INFRA_SETTINGS_BACKEND_H_
#define FOLIOSCOPE_INFRA_SETTINGS_BACKEND_H_

#include <cstdint>
#include <optional>
#include <string>

namespace folioscope {

constexpr uint32_t kHkeyCurrentUser = 0x80000001u;
constexpr uint32_t kHkeyLocalMachine = 0x80000002u;

enum RegType : uint32_t {
  kRegNone = 0,
  kRegSz = 1,
  kRegExpandSz = 2,
  kRegBinary = 3,
  kRegDword = 4,
  kRegDwordBigEndian = 5,
  kRegLink = 6,
  kRegMultiSz = 7,
  kRegQword = 11,
};

struct RegValue {
  uint32_t type = kRegNone;
  std::string data;  // raw bytes
};

class SettingsBackend {
 public:
  virtual ~SettingsBackend() = default;

  // RegCreateKeyA: true when the key exists afterwards (parents created too).
  virtual bool CreateKey(uint32_t root, const std::string& path) = 0;
  // RegOpenKeyA: true when the key exists.
  virtual bool KeyExists(uint32_t root, const std::string& path) = 0;
  // RegQueryValueExA: the value, or nothing when key or value are missing.
  virtual std::optional<RegValue> QueryValue(uint32_t root, const std::string& path,
                                             const std::string& name) = 0;
  // RegSetValueExA on an existing key; false when the key does not exist or
  // the store cannot be written.
  virtual bool SetValue(uint32_t root, const std::string& path, const std::string& name,
                        const RegValue& value) = 0;
  // RegDeleteKeyA: deletes a key without sub-keys; false otherwise.
  virtual bool DeleteKey(uint32_t root, const std::string& path) = 0;
  // RegDeleteValueA.
  virtual bool DeleteValue(uint32_t root, const std::string& path, const std::string& name) = 0;
  // RegEnumKeyA at 0-based `index`: the sub-key's name, nothing past the end.
  virtual std::optional<std::string> EnumKey(uint32_t root, const std::string& path,
                                             uint32_t index) = 0;
  // RegEnumValueA at 0-based `index`: name and value, nothing past the end.
  virtual std::optional<std::pair<std::string, RegValue>> EnumValue(uint32_t root,
                                                                    const std::string& path,
                                                                    uint32_t index) = 0;

  // RegOpenKeyA and RegQueryValueExA in one step: the value (nothing when
  // key or value are missing) and, in `key_exists`, whether the key is
  // there. A store that costs something per call answers both at once.
  virtual std::optional<RegValue> ReadValue(uint32_t root, const std::string& path,
                                            const std::string& name, bool* key_exists) {
    *key_exists = KeyExists(root, path);
    if (!*key_exists) return std::nullopt;
    return QueryValue(root, path, name);
  }

  // A group of reads that belong together, such as the settings of one
  // readiness check. Inside a group a store kept outside the process may
  // look for outside changes once, at the group's first read, rather than
  // at every read; the next group looks again. Groups nest; changes made
  // through the backend itself are always seen.
  virtual void BeginReadGroup() {}
  virtual void EndReadGroup() {}
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_SETTINGS_BACKEND_H_
