#include "pages/page_names.h"

#include "infra/vb_runtime.h"
#include "model/source_model.h"

namespace folioscope {

namespace {

std::string Underscored(const std::string& name) { return vb::Replace(name, " ", "_"); }

}  // namespace

std::string ModulePageFileName(const std::string& module_name) {
  return Underscored(module_name) + ".htm";
}

std::string MemberPageFileName(const std::string& module_name, const std::string& member_name) {
  return Underscored(module_name) + "_" + Underscored(member_name) + ".htm";
}

bool IsListed(const std::string& scope, const ListedScopes& scopes) {
  return (scope == kScopePublic && scopes.public_members) ||
         (scope == kScopeFriend && scopes.friend_members) ||
         (scope == kScopePrivate && scopes.private_members);
}

}  // namespace folioscope
