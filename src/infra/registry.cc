#include "infra/registry.h"

#include "infra/platform.h"

namespace folioscope {

namespace {

constexpr size_t kEnumBufferChars = 255;

std::string CutAtNul(const std::string& s) {
  size_t p = s.find('\0');
  return p == std::string::npos ? s : s.substr(0, p);
}

std::string EnumName(const std::string& name) {
  return CutAtNul(name).substr(0, kEnumBufferChars - 1);
}

}  // namespace

CRegistry::CRegistry() : backend_(nullptr) {}
CRegistry::CRegistry(SettingsBackend* backend) : backend_(backend) {}

CRegistry::ReadGroup::ReadGroup(CRegistry& registry) : backend_(registry.Backend()) {
  backend_.BeginReadGroup();
}

CRegistry::ReadGroup::~ReadGroup() { backend_.EndReadGroup(); }

SettingsBackend& CRegistry::Backend() {
  return backend_ ? *backend_ : CurrentPlatform().Settings();
}

bool CRegistry::CreateRegKey(uint32_t hKey, const std::string& KeyName) {
  return Backend().CreateKey(hKey, KeyName);
}

std::string CRegistry::ReadRegString(uint32_t hKey, const std::string& KeyName,
                                     const std::string& ValueName, const std::string& Default) {
  std::string result;
  bool key_exists = false;
  auto value = Backend().ReadValue(hKey, KeyName, ValueName, &key_exists);
  if (value && value->type == kRegSz) result = CutAtNul(value->data);
  return result.empty() ? Default : result;
}

void CRegistry::SaveRegString(uint32_t hKey, const std::string& KeyName,
                              const std::string& ValueName, const std::string& Value) {
  SettingsBackend& b = Backend();
  if (!b.CreateKey(hKey, KeyName)) return;
  b.SetValue(hKey, KeyName, ValueName, RegValue{kRegSz, Value});
}

int32_t CRegistry::ReadRegWord(uint32_t hKey, const std::string& KeyName,
                               const std::string& ValueName, int32_t Default) {
  bool key_exists = false;
  auto value = Backend().ReadValue(hKey, KeyName, ValueName, &key_exists);
  if (!key_exists) return 0;
  if (!value) return Default;
  // The query reads into a 4-byte buffer: a larger value fails the query.
  if (value->data.size() > 4) return Default;
  if (value->type != kRegDword) return 0;
  uint32_t n = 0;
  for (size_t i = 0; i < value->data.size(); ++i)
    n |= static_cast<uint32_t>(static_cast<unsigned char>(value->data[i])) << (8 * i);
  return static_cast<int32_t>(n);
}

void CRegistry::SaveRegWord(uint32_t hKey, const std::string& KeyName, const std::string& ValueName,
                            int32_t Value) {
  SettingsBackend& b = Backend();
  if (!b.CreateKey(hKey, KeyName)) return;
  uint32_t n = static_cast<uint32_t>(Value);
  std::string data;
  for (int i = 0; i < 4; ++i) data += static_cast<char>((n >> (8 * i)) & 0xFF);
  b.SetValue(hKey, KeyName, ValueName, RegValue{kRegDword, data});
}

void CRegistry::DeleteRegKey(uint32_t hKey, const std::string& KeyName) {
  Backend().DeleteKey(hKey, KeyName);
}

void CRegistry::DeleteRegValue(uint32_t hKey, const std::string& KeyName,
                               const std::string& ValueName) {
  SettingsBackend& b = Backend();
  if (b.KeyExists(hKey, KeyName)) b.DeleteValue(hKey, KeyName, ValueName);
}

namespace {

// The registry enumerations: `enumerate(i)` gives the entry at 0-based i or
// nothing past the end; pending messages run after each successful step.
template <typename Enumerate>
int32_t CountEntries(Enumerate enumerate) {
  int32_t count = 0;
  while (enumerate(static_cast<uint32_t>(count))) {
    ++count;
    CurrentPlatform().PumpMessages();
  }
  return count;
}

// The entry at 1-based `Index`, walking from the first as RegEnum* callers
// do; nothing for Index < 1 or past the end.
template <typename Enumerate>
auto EntryAt(Enumerate enumerate, int32_t Index) -> decltype(enumerate(0u)) {
  if (Index < 1) return std::nullopt;
  for (int32_t counter = 1;; ++counter) {
    auto entry = enumerate(static_cast<uint32_t>(counter - 1));
    if (!entry) return std::nullopt;
    CurrentPlatform().PumpMessages();
    if (counter == Index) return entry;
  }
}

}  // namespace

int32_t CRegistry::SubKeyCount(uint32_t hKey, const std::string& KeyName) {
  SettingsBackend& b = Backend();
  if (!b.KeyExists(hKey, KeyName)) return 0;
  return CountEntries([&](uint32_t i) { return b.EnumKey(hKey, KeyName, i); });
}

std::string CRegistry::SubKeyName(uint32_t hKey, const std::string& KeyName, int32_t Index) {
  SettingsBackend& b = Backend();
  if (Index < 1 || !b.KeyExists(hKey, KeyName)) return "";
  auto name = EntryAt([&](uint32_t i) { return b.EnumKey(hKey, KeyName, i); }, Index);
  return name ? EnumName(*name) : "";
}

int32_t CRegistry::SubValueCount(uint32_t hKey, const std::string& KeyName) {
  SettingsBackend& b = Backend();
  if (!b.KeyExists(hKey, KeyName)) return 0;
  return CountEntries([&](uint32_t i) { return b.EnumValue(hKey, KeyName, i); });
}

std::string CRegistry::SubValueName(uint32_t hKey, const std::string& KeyName, int32_t Index) {
  SettingsBackend& b = Backend();
  if (Index < 1 || !b.KeyExists(hKey, KeyName)) return "";
  auto entry = EntryAt([&](uint32_t i) { return b.EnumValue(hKey, KeyName, i); }, Index);
  return entry ? EnumName(entry->first) : "";
}

std::string CRegistry::SubValueType(uint32_t hKey, const std::string& KeyName, int32_t Index) {
  SettingsBackend& b = Backend();
  if (Index < 1 || !b.KeyExists(hKey, KeyName)) return "";
  auto entry = EntryAt([&](uint32_t i) { return b.EnumValue(hKey, KeyName, i); }, Index);
  if (!entry) return "";
  switch (entry->second.type) {
    case kRegSz:
      return "UNI";
    case kRegBinary:
      return "BIN";
    case kRegDword:
      return "WRD";
    default:
      return "";
  }
}

}  // namespace folioscope
