// CRegistry: the twelve settings operations, with the registry's defaults
// and asymmetries. It holds no state: every call goes to the settings
// backend of CurrentPlatform() (or the backend given to the constructor).
// No operation raises; failures turn into the documented default results.
#ifndef FOLIOSCOPE_INFRA_REGISTRY_H_
#define FOLIOSCOPE_INFRA_REGISTRY_H_

#include <cstdint>
#include <string>

#include "infra/settings_backend.h"

namespace folioscope {

// Registry keys of the system's settings.
inline constexpr const char* kConfigKey = "Software\\Quillon\\Config";
inline constexpr const char* kCurrentReportKey = "Software\\Quillon\\Config\\CurrentReport";

class CRegistry {
 public:
  CRegistry();                                   // uses CurrentPlatform().Settings()
  explicit CRegistry(SettingsBackend* backend);  // not owned

  // True when the key exists or was created.
  bool CreateRegKey(uint32_t hKey, const std::string& KeyName);
  // A REG_SZ value cut before its first NUL; Default for a missing key or
  // value, another type, or a stored empty string.
  std::string ReadRegString(uint32_t hKey, const std::string& KeyName, const std::string& ValueName,
                            const std::string& Default);
  // Creates the key; stores REG_SZ without a terminating NUL.
  void SaveRegString(uint32_t hKey, const std::string& KeyName, const std::string& ValueName,
                     const std::string& Value);
  // 0 for a missing key (not Default); Default for a missing value; the
  // number for a REG_DWORD; 0 for any other type.
  int32_t ReadRegWord(uint32_t hKey, const std::string& KeyName, const std::string& ValueName,
                      int32_t Default);
  void SaveRegWord(uint32_t hKey, const std::string& KeyName, const std::string& ValueName,
                   int32_t Value);
  void DeleteRegKey(uint32_t hKey, const std::string& KeyName);
  void DeleteRegValue(uint32_t hKey, const std::string& KeyName, const std::string& ValueName);
  // Enumerations; indexes are 1-based; names are cut before a NUL and at
  // 254 characters (the 255-character buffers). Each successful step lets
  // pending messages run.
  int32_t SubKeyCount(uint32_t hKey, const std::string& KeyName);
  std::string SubKeyName(uint32_t hKey, const std::string& KeyName, int32_t Index);
  int32_t SubValueCount(uint32_t hKey, const std::string& KeyName);
  std::string SubValueName(uint32_t hKey, const std::string& KeyName, int32_t Index);
  // "UNI" (REG_SZ), "BIN" (REG_BINARY), "WRD" (REG_DWORD) or "".
  std::string SubValueType(uint32_t hKey, const std::string& KeyName, int32_t Index);

  // Keeps a read group (see SettingsBackend::BeginReadGroup) open on the
  // registry's backend for its lifetime: the reads made meanwhile look for
  // outside changes of the store once.
  class ReadGroup {
   public:
    explicit ReadGroup(CRegistry& registry);
    ~ReadGroup();
    ReadGroup(const ReadGroup&) = delete;
    ReadGroup& operator=(const ReadGroup&) = delete;

   private:
    SettingsBackend& backend_;
  };

 private:
  SettingsBackend& Backend();
  SettingsBackend* backend_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_REGISTRY_H_
