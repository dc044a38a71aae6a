// Registry hive files: the text format that Windows' registry editor
// exports and imports (.reg), read into and written from a RegistryTree.
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_CURRENT_USER\Software\Quillon\Config]
//   "ShowHelpContextID"=dword:00000001
//   @="default value"
//
// Reading accepts UTF-16LE files with a byte-order mark (what the registry
// editor writes), UTF-8 with or without a mark, and 8-bit Windows-1252
// files; the "REGEDIT4" header too (its string-type hex data is 8-bit).
// Key and value deletions ("[-Key]", "Name"=-) are applied to the tree.
//
// Strings in the tree are Windows-1252 bytes. Every value round-trips
// exactly through ParseHive(SerializeHive(tree)): type and data bytes,
// embedded NULs, strings with or without a terminating NUL.
#ifndef FOLIOSCOPE_INFRA_REGISTRY_HIVE_H_
#define FOLIOSCOPE_INFRA_REGISTRY_HIVE_H_

#include <string>
#include <string_view>

#include "infra/registry_tree.h"

namespace folioscope {

// Parses the file content `bytes` into `tree` (on top of what it holds).
// On a malformed line returns false and sets `error` to
// "<file_name>:<line>: <reason>"; the tree may then hold a part of the file.
bool ParseHive(std::string_view bytes, const std::string& file_name, RegistryTree* tree,
               std::string* error);

// The whole tree as file content (CR LF line ends).
std::string SerializeHive(const RegistryTree& tree);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_REGISTRY_HIVE_H_
