#include "chm/help_topics.h"

#include "infra/path_guard.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

std::string Underscored(const std::string& name) { return vb::Replace(name, " ", "_"); }

void AddTopic(std::vector<HelpTopic>& topics, const std::string& module_name,
              const SourceMember& member) {
  if (member.HelpContextId < 1) return;
  // A page the writers refuse to write is no topic either.
  if (!IsSafeFileName(MemberPageFileName(module_name, member.Name))) return;
  topics.push_back({Underscored(module_name), Underscored(member.Name), member.HelpContextId});
}

}  // namespace

std::vector<HelpTopic> ModuleTopics(const SourceModule& module, const ListedScopes& scopes) {
  std::vector<HelpTopic> topics;
  for (const auto& member : module.Members) {
    if (IsListed(member->Scope, scopes)) AddTopic(topics, module.Name, *member);
  }
  return topics;
}

std::vector<HelpTopic> ProjectTopics(const SourceProject& project, const ListedScopes& scopes) {
  std::vector<HelpTopic> topics;
  for (const auto& module : project.Modules) {
    std::vector<HelpTopic> more = ModuleTopics(*module, scopes);
    topics.insert(topics.end(), more.begin(), more.end());
  }
  return topics;
}

std::vector<HelpTopic> MemberTopic(const std::string& module_name, const SourceMember& member) {
  std::vector<HelpTopic> topics;
  AddTopic(topics, module_name, member);
  return topics;
}

std::string MapLine(const HelpTopic& topic) {
  return "#define " + topic.module_part + "_" + topic.member_part + "  " +
         std::to_string(topic.context) + "\r\n";
}

std::string AliasLine(const HelpTopic& topic) {
  const std::string p3 = "_" + topic.member_part;
  return topic.module_part + p3 + " = " + topic.module_part + "_" + topic.member_part + ".htm\r\n";
}

}  // namespace folioscope
