// An in-memory registry: the SettingsBackend that tests use directly and
// that the hive file and the layered host store are built on.
//
// Keys keep the spelling of their first creation and enumerate in creation
// order; lookups ignore ASCII case.
#ifndef FOLIOSCOPE_INFRA_REGISTRY_TREE_H_
#define FOLIOSCOPE_INFRA_REGISTRY_TREE_H_

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "infra/settings_backend.h"

namespace folioscope {

class RegistryTree : public SettingsBackend {
 public:
  struct Node {
    std::string name;
    std::vector<std::pair<std::string, RegValue>> values;  // insertion order
    std::vector<std::unique_ptr<Node>> children;           // creation order
  };

  RegistryTree();
  RegistryTree(const RegistryTree& other);
  RegistryTree& operator=(const RegistryTree& other);

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

  // The root nodes ("HKEY_CURRENT_USER", ...), for serialisers.
  const Node* Root(uint32_t root) const;
  Node* MutableRoot(uint32_t root);
  // Text name of a root handle ("HKEY_CURRENT_USER"), empty when unknown.
  static std::string RootName(uint32_t root);
  // Handle of a root name, long or short form ("HKCU"); 0 when unknown.
  static uint32_t RootHandle(const std::string& name);

 private:
  Node* Find(uint32_t root, const std::string& path);
  std::map<uint32_t, std::unique_ptr<Node>> roots_;
};

// ASCII case-insensitive equality, the registry's name comparison.
bool EqualsIgnoreCase(const std::string& a, const std::string& b);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_REGISTRY_TREE_H_
