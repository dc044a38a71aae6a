#include "chm/chm_project_files.h"

#include <string>

#include "infra/vb_runtime.h"
#include "pages/page_names.h"

namespace folioscope {

namespace {

constexpr const char* kCrLf = "\r\n";

const char kContentsHeader[] =
    "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\"><HTML><HEAD><meta name=\"GENERATOR\" "
    "content=\"Microsoft&reg; HTML Help Workshop 4.1\"><!-- Sitemap 1.0 --></HEAD><BODY>"
    "<OBJECT type=\"text/site properties\"><param name=\"ImageType\" value=\"Folder\"></OBJECT>";

// The lists that the page builders leave open, closed per save mode.
std::string ClosingLists(SaveMode mode) {
  if (mode == SaveMode::kWholeProject) return "</ul></ul></ul>";
  if (mode == SaveMode::kOneModule) return "</ul></ul>";
  return "";
}

std::string DefaultTopic(SourceProject& project, SaveMode mode, const std::string& module_name,
                         const std::string& member_name) {
  if (mode == SaveMode::kOneModule) {
    return ModulePageFileName(project.Modules.Item(module_name).Name);
  }
  if (mode == SaveMode::kOneMember) {
    const SourceMember& member = project.Modules.Item(module_name).Members.Item(member_name);
    return MemberPageFileName(module_name, member.Name);
  }
  return kProjectPageFile;
}

}  // namespace

std::string TocItemTemplate() {
  return "<LI> <OBJECT type=\"text/sitemap\">\r\n"
         "<param name=\"Name\" value=\"&&&TOCCaption&&&\">\r\n"
         "<param name=\"Local\" value=\"&&&TOCFile&&&\">\r\n"
         "</OBJECT>\r\n";
}

std::string ContentsFileText(const std::string& toc_text, SaveMode mode) {
  return kContentsHeader + toc_text + ClosingLists(mode) + "</body></html>";
}

std::string ProjectFileText(SourceProject& project, SaveMode mode, const std::string& module_name,
                            const std::string& member_name, const std::string& title,
                            const std::string& file_list) {
  const std::string default_topic = DefaultTopic(project, mode, module_name, member_name);
  std::string text;
  text += "[Options]" + std::string(kCrLf);
  text += "Compatibility = 1.1 Or later" + std::string(kCrLf);
  text += "Compiled File = " + project.Name + ".chm" + kCrLf;
  text += "Contents file=Table of Contents.hhc" + std::string(kCrLf);
  text += "Default topic = " + default_topic + kCrLf;
  text += "Display compile progress=No" + std::string(kCrLf);
  text += "Language=0x407 Deutsch (Deutschland)" + std::string(kCrLf);
  const std::string trimmed = vb::Trim(title);
  text += (trimmed.empty() ? std::string("Title=Hilfe") : "Title=" + trimmed) + kCrLf;
  text += kCrLf;
  text += file_list;
  text += std::string(kCrLf) + kCrLf + kCrLf;
  text += "[Alias]" + std::string(kCrLf) + "#include alias_Test.h" + kCrLf + kCrLf;
  text += "[MAP]" + std::string(kCrLf) + "#include Map_Test.h";
  return text;
}

std::vector<HelpTopic> TopicsOfSave(SourceProject& project, SaveMode mode,
                                    const std::string& module_name, const std::string& member_name,
                                    const ListedScopes& scopes) {
  if (mode == SaveMode::kWholeProject) return ProjectTopics(project, scopes);
  if (mode == SaveMode::kOneModule) return ModuleTopics(project.Modules.Item(module_name), scopes);
  if (mode == SaveMode::kOneMember) {
    const SourceMember& member = project.Modules.Item(module_name).Members.Item(member_name);
    return MemberTopic(module_name, member);
  }
  return {};
}

std::string MapFileText(const std::vector<HelpTopic>& topics) {
  std::string text;
  for (const HelpTopic& topic : topics) text += MapLine(topic);
  return text;
}

std::string AliasFileText(const std::vector<HelpTopic>& topics) {
  std::string text;
  for (const HelpTopic& topic : topics) text += AliasLine(topic);
  return text;
}

}  // namespace folioscope
