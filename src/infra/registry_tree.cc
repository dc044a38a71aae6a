#include "infra/registry_tree.h"

#include <string_view>

#include "infra/text_encoding.h"

namespace folioscope {

bool EqualsIgnoreCase(const std::string& a, const std::string& b) {
  return EqualsIgnoringAsciiCase(a, b);
}

namespace {

std::vector<std::string> PathParts(const std::string& path) {
  std::vector<std::string> parts;
  std::string cur;
  for (char c : path) {
    if (c == '\\') {
      if (!cur.empty()) parts.push_back(cur);
      cur.clear();
    } else {
      cur += c;
    }
  }
  if (!cur.empty()) parts.push_back(cur);
  return parts;
}

RegistryTree::Node* Child(RegistryTree::Node* node, const std::string& name) {
  for (auto& c : node->children)
    if (EqualsIgnoreCase(c->name, name)) return c.get();
  return nullptr;
}

std::unique_ptr<RegistryTree::Node> Clone(const RegistryTree::Node& n) {
  auto copy = std::make_unique<RegistryTree::Node>();
  copy->name = n.name;
  copy->values = n.values;
  for (const auto& c : n.children) copy->children.push_back(Clone(*c));
  return copy;
}

}  // namespace

RegistryTree::RegistryTree() = default;

RegistryTree::RegistryTree(const RegistryTree& other) { *this = other; }

RegistryTree& RegistryTree::operator=(const RegistryTree& other) {
  if (this == &other) return *this;
  roots_.clear();
  for (const auto& [h, n] : other.roots_) roots_[h] = Clone(*n);
  return *this;
}

std::string RegistryTree::RootName(uint32_t root) {
  switch (root) {
    case 0x80000000u:
      return "HKEY_CLASSES_ROOT";
    case kHkeyCurrentUser:
      return "HKEY_CURRENT_USER";
    case kHkeyLocalMachine:
      return "HKEY_LOCAL_MACHINE";
    case 0x80000003u:
      return "HKEY_USERS";
    case 0x80000005u:
      return "HKEY_CURRENT_CONFIG";
    default:
      return "";
  }
}

uint32_t RegistryTree::RootHandle(const std::string& name) {
  static const std::pair<const char*, uint32_t> kNames[] = {
      {"HKEY_CLASSES_ROOT", 0x80000000u},
      {"HKCR", 0x80000000u},
      {"HKEY_CURRENT_USER", kHkeyCurrentUser},
      {"HKCU", kHkeyCurrentUser},
      {"HKEY_LOCAL_MACHINE", kHkeyLocalMachine},
      {"HKLM", kHkeyLocalMachine},
      {"HKEY_USERS", 0x80000003u},
      {"HKU", 0x80000003u},
      {"HKEY_CURRENT_CONFIG", 0x80000005u},
      {"HKCC", 0x80000005u}};
  for (const auto& [n, h] : kNames)
    if (EqualsIgnoreCase(name, n)) return h;
  return 0;
}

const RegistryTree::Node* RegistryTree::Root(uint32_t root) const {
  auto it = roots_.find(root);
  return it == roots_.end() ? nullptr : it->second.get();
}

RegistryTree::Node* RegistryTree::MutableRoot(uint32_t root) {
  if (RootName(root).empty()) return nullptr;
  auto& slot = roots_[root];
  if (!slot) {
    slot = std::make_unique<Node>();
    slot->name = RootName(root);
  }
  return slot.get();
}

// Lookups walk the path in place: a settings read makes several of them,
// and the parts need no copies to be compared.
RegistryTree::Node* RegistryTree::Find(uint32_t root, const std::string& path) {
  auto it = roots_.find(root);
  if (it == roots_.end()) return nullptr;
  Node* node = it->second.get();
  const std::string_view rest(path);
  size_t start = 0;
  while (start <= rest.size()) {
    size_t end = rest.find('\\', start);
    if (end == std::string_view::npos) end = rest.size();
    const std::string_view part = rest.substr(start, end - start);
    start = end + 1;
    if (part.empty()) continue;
    Node* next = nullptr;
    for (auto& c : node->children) {
      if (EqualsIgnoringAsciiCase(c->name, part)) {
        next = c.get();
        break;
      }
    }
    if (!next) return nullptr;
    node = next;
  }
  return node;
}

bool RegistryTree::CreateKey(uint32_t root, const std::string& path) {
  Node* node = MutableRoot(root);
  if (!node) return false;
  for (const auto& part : PathParts(path)) {
    Node* next = Child(node, part);
    if (!next) {
      node->children.push_back(std::make_unique<Node>());
      next = node->children.back().get();
      next->name = part;
    }
    node = next;
  }
  return true;
}

bool RegistryTree::KeyExists(uint32_t root, const std::string& path) {
  return Find(root, path) != nullptr;
}

std::optional<RegValue> RegistryTree::QueryValue(uint32_t root, const std::string& path,
                                                 const std::string& name) {
  bool key_exists = false;
  return ReadValue(root, path, name, &key_exists);
}

std::optional<RegValue> RegistryTree::ReadValue(uint32_t root, const std::string& path,
                                                const std::string& name, bool* key_exists) {
  Node* node = Find(root, path);
  *key_exists = node != nullptr;
  if (!node) return std::nullopt;
  for (const auto& [n, v] : node->values)
    if (EqualsIgnoreCase(n, name)) return v;
  return std::nullopt;
}

bool RegistryTree::SetValue(uint32_t root, const std::string& path, const std::string& name,
                            const RegValue& value) {
  Node* node = Find(root, path);
  if (!node) return false;
  for (auto& [n, v] : node->values) {
    if (EqualsIgnoreCase(n, name)) {
      v = value;
      return true;
    }
  }
  node->values.emplace_back(name, value);
  return true;
}

bool RegistryTree::DeleteKey(uint32_t root, const std::string& path) {
  auto parts = PathParts(path);
  if (parts.empty()) return false;
  std::string last = parts.back();
  parts.pop_back();
  std::string parent_path;
  for (const auto& p : parts) parent_path += p + "\\";
  Node* parent = Find(root, parent_path);
  if (!parent) return false;
  for (auto it = parent->children.begin(); it != parent->children.end(); ++it) {
    if (EqualsIgnoreCase((*it)->name, last)) {
      if (!(*it)->children.empty()) return false;
      parent->children.erase(it);
      return true;
    }
  }
  return false;
}

bool RegistryTree::DeleteValue(uint32_t root, const std::string& path, const std::string& name) {
  Node* node = Find(root, path);
  if (!node) return false;
  for (auto it = node->values.begin(); it != node->values.end(); ++it) {
    if (EqualsIgnoreCase(it->first, name)) {
      node->values.erase(it);
      return true;
    }
  }
  return false;
}

std::optional<std::string> RegistryTree::EnumKey(uint32_t root, const std::string& path,
                                                 uint32_t index) {
  Node* node = Find(root, path);
  if (!node || index >= node->children.size()) return std::nullopt;
  return node->children[index]->name;
}

std::optional<std::pair<std::string, RegValue>> RegistryTree::EnumValue(uint32_t root,
                                                                        const std::string& path,
                                                                        uint32_t index) {
  Node* node = Find(root, path);
  if (!node || index >= node->values.size()) return std::nullopt;
  return node->values[index];
}

}  // namespace folioscope
