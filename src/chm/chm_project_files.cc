// The help project next to the written pages: the project file
// "Project.hhp", the header files "Map_Test.h" (topic numbers) and
// "alias_test.h" (topic names to page files), and the table of contents
// "Table of Contents.hhc". All four go through the page-file writer, so each
// ends with its CR LF.
//
// Topics of the header files are member pages: the symbol of a member is
// module & "_" & member (blanks made "_"), the same text as its page's file
// name without ".htm". Module pages are not topics: a module's help context
// id has no page of the "module_member.htm" form, and giving it one would
// invent a page name the report never writes.
#include <string>

#include "chm/help_topics.h"
#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/vb_runtime.h"

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

}  // namespace

// The contents item that the page writers fill for each page of a help-file
// build; CreateCHMTableOfContens frames what they collect.
std::string CFolioscope::GetTOCItem() {
  return "<LI> <OBJECT type=\"text/sitemap\">\r\n"
         "<param name=\"Name\" value=\"&&&TOCCaption&&&\">\r\n"
         "<param name=\"Local\" value=\"&&&TOCFile&&&\">\r\n"
         "</OBJECT>\r\n";
}

int32_t CFolioscope::CreateCHMTableOfContens(SaveMode Mode) {
  Trap(kClass, "CreateCHMTableOfContens", [&] {
    const std::string text =
        kContentsHeader + chm_toc_text_ + ClosingLists(Mode) + "</body></html>";
    WriteTextFile(PlainPath + kPathSeparatorText + "Table of Contents.hhc", text, false);
  });
  return 0;
}

int32_t CFolioscope::CreateCHMProjektFile(SaveMode Mode) {
  Trap(kClass, "CreateCHMProjektFile", [&] {
    SourceProject& project = RequireProject(Projekt);
    std::string default_topic = "Projekt.htm";
    if (Mode == SaveMode::kOneModule) {
      default_topic = ModulePageFileName(project.Modules.Item(ModuleName).Name);
    } else if (Mode == SaveMode::kOneMember) {
      const SourceMember& member = project.Modules.Item(ModuleName).Members.Item(MemberName);
      default_topic = MemberPageFileName(ModuleName, member.Name);
    }
    std::string text;
    text += "[Options]" + std::string(kCrLf);
    text += "Compatibility = 1.1 Or later" + std::string(kCrLf);
    text += "Compiled File = " + project.Name + ".chm" + kCrLf;
    text += "Contents file=Table of Contents.hhc" + std::string(kCrLf);
    text += "Default topic = " + default_topic + kCrLf;
    text += "Display compile progress=No" + std::string(kCrLf);
    text += "Language=0x407 Deutsch (Deutschland)" + std::string(kCrLf);
    const std::string title = vb::Trim(CHMReportTitle);
    text += (title.empty() ? std::string("Title=Hilfe") : "Title=" + title) + kCrLf;
    text += kCrLf;
    text += chm_file_list_;
    text += std::string(kCrLf) + kCrLf + kCrLf;
    text += "[Alias]" + std::string(kCrLf) + "#include alias_Test.h" + kCrLf + kCrLf;
    text += "[MAP]" + std::string(kCrLf) + "#include Map_Test.h";
    WriteTextFile(PlainPath + kPathSeparatorText + "Project.hhp", text, false);
  });
  return 0;
}

int32_t CFolioscope::CreateCHMMapAndAlias(SaveMode Mode) {
  Trap(kClass, "CreateCHMMapAndAlias", [&] {
    SourceProject& project = RequireProject(Projekt);
    const ListedScopes scopes{ToolBarPublicValue == 1, ToolBarFriendValue == 1,
                              ToolBarPrivateValue == 1};
    std::vector<HelpTopic> topics;
    if (Mode == SaveMode::kWholeProject) {
      topics = ProjectTopics(project, scopes);
    } else if (Mode == SaveMode::kOneModule) {
      topics = ModuleTopics(project.Modules.Item(ModuleName), scopes);
    } else if (Mode == SaveMode::kOneMember) {
      const SourceMember& member = project.Modules.Item(ModuleName).Members.Item(MemberName);
      topics = MemberTopic(ModuleName, member);
    }
    std::string map_text;
    chm_alias_text_.clear();
    for (const HelpTopic& topic : topics) {
      map_text += MapLine(topic);
      chm_alias_text_ += AliasLine(topic);
    }
    WriteTextFile(PlainPath + kPathSeparatorText + "Map_Test.h", map_text, false);
    WriteTextFile(PlainPath + kPathSeparatorText + "alias_test.h", chm_alias_text_, false);
  });
  return 0;
}

}  // namespace folioscope
