#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "chm/chm_project_files.h"
#include "pages/page_test_support.h"

namespace folioscope {
namespace {

class ChmProjectFilesTest : public ::testing::Test {
 protected:
  ChmProjectFilesTest() {
    project_.Name = "Kasse";
    AddModule("Kasse Haupt", {{"Buche Beleg", "Public", 1010}, {"Storno", "Private", 1020}});
    AddModule("Drucker", {{"Druck", "Friend", 2010}, {"Leer", "Public", 0}});
  }

  // A module whose Header has a context number too, and one Sub per
  // (name, scope, context number).
  struct MemberSpec {
    std::string name;
    std::string scope;
    int32_t context;
  };
  void AddModule(const std::string& name, const std::vector<MemberSpec>& members) {
    SourceModule& module = report_testing::AddEmptyModule(project_, name, "Module");
    report_testing::AddMember(module, "Header", "", "", {"Option Explicit"}).HelpContextId = 99;
    for (const MemberSpec& m : members) {
      report_testing::AddMember(module, m.name, "Sub", m.scope,
                                {m.scope + " Sub " + m.name + "()", "End Sub"})
          .HelpContextId = m.context;
    }
  }
  // "map text | alias text" of a save.
  std::string HeaderFiles(int32_t mode, const std::string& member, const ListedScopes& scopes) {
    const std::vector<HelpTopic> topics =
        TopicsOfSave(project_, static_cast<SaveMode>(mode), "Kasse Haupt", member, scopes);
    return MapFileText(topics) + "|" + AliasFileText(topics);
  }

  SourceProject project_;
};

TEST_F(ChmProjectFilesTest, ProjectFileNamesTheDefaultTopicOfEachSaveMode) {
  struct Case {
    int32_t save_mode;
    std::string title;
    std::string default_topic;
    std::string title_line;
  } cases[] = {
      {0, "", "Projekt.htm", "Title=Hilfe"},
      {1, "   ", "Kasse_Haupt.htm", "Title=Hilfe"},
      {2, "  Kasse Hilfe ", "Kasse_Haupt_Buche_Beleg.htm", "Title=Kasse Hilfe"},
      {7, "", "Projekt.htm", "Title=Hilfe"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.save_mode);
    EXPECT_EQ(ProjectFileText(project_, static_cast<SaveMode>(c.save_mode), "Kasse Haupt",
                              "Buche Beleg", c.title, "[FILES]\r\nstyle.css\r\nProjekt.htm\r\n"),
              "[Options]\r\n"
              "Compatibility = 1.1 Or later\r\n"
              "Compiled File = Kasse.chm\r\n"
              "Contents file=Table of Contents.hhc\r\n"
              "Default topic = " +
                  c.default_topic +
                  "\r\n"
                  "Display compile progress=No\r\n"
                  "Language=0x407 Deutsch (Deutschland)\r\n" +
                  c.title_line +
                  "\r\n"
                  "\r\n"
                  "[FILES]\r\nstyle.css\r\nProjekt.htm\r\n"
                  "\r\n\r\n\r\n"
                  "[Alias]\r\n#include alias_Test.h\r\n\r\n"
                  "[MAP]\r\n#include Map_Test.h");
  }
  // A default topic that is not in the project is a fault of the caller's.
  EXPECT_THROW(ProjectFileText(project_, SaveMode::kOneModule, "Fehlt", "", "", ""),
               std::exception);
}

TEST_F(ChmProjectFilesTest, TableOfContentsClosesTheListsOfEachSaveMode) {
  const std::string header =
      "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\"><HTML><HEAD><meta name=\"GENERATOR\" "
      "content=\"Microsoft&reg; HTML Help Workshop 4.1\"><!-- Sitemap 1.0 --></HEAD><BODY>"
      "<OBJECT type=\"text/site properties\"><param name=\"ImageType\" value=\"Folder\">"
      "</OBJECT>";
  const std::string items = "<LI>a\r\n<ul><LI>b\r\n";
  const std::pair<int32_t, std::string> cases[] = {
      {0, "</ul></ul></ul>"}, {1, "</ul></ul>"}, {2, ""}, {7, ""}};
  for (const auto& [save_mode, closing] : cases) {
    SCOPED_TRACE(save_mode);
    EXPECT_EQ(ContentsFileText(items, static_cast<SaveMode>(save_mode)),
              header + items + closing + "</body></html>");
  }
}

TEST_F(ChmProjectFilesTest, HeaderFilesTieListedMembersToTheirPages) {
  // Whole project, every scope listed: Header (no scope) and the member
  // without a context number stay out; blanks become "_".
  EXPECT_EQ(HeaderFiles(0, "", {true, true, true}),
            "#define Kasse_Haupt_Buche_Beleg  1010\r\n"
            "#define Kasse_Haupt_Storno  1020\r\n"
            "#define Drucker_Druck  2010\r\n|"
            "Kasse_Haupt_Buche_Beleg = Kasse_Haupt_Buche_Beleg.htm\r\n"
            "Kasse_Haupt_Storno = Kasse_Haupt_Storno.htm\r\n"
            "Drucker_Druck = Drucker_Druck.htm\r\n");
  // Only what the module pages list, one module.
  EXPECT_EQ(HeaderFiles(1, "", {true, false, false}),
            "#define Kasse_Haupt_Buche_Beleg  1010\r\n|"
            "Kasse_Haupt_Buche_Beleg = Kasse_Haupt_Buche_Beleg.htm\r\n");
  // A one-member save names that member whatever the switches say.
  EXPECT_EQ(HeaderFiles(2, "Storno", {}),
            "#define Kasse_Haupt_Storno  1020\r\n|Kasse_Haupt_Storno = Kasse_Haupt_Storno.htm\r\n");
  EXPECT_EQ(HeaderFiles(7, "", {true, true, true}), "|");
}

TEST_F(ChmProjectFilesTest, ProjectWithoutContextNumbersGivesEmptyHeaderFiles) {
  for (int32_t i = 1; i <= project_.Modules.Count(); ++i) {
    for (int32_t j = 1; j <= project_.Modules.Item(i).Members.Count(); ++j) {
      project_.Modules.Item(i).Members.Item(j).HelpContextId = (j % 2 == 0) ? 0 : -5;
    }
  }
  EXPECT_EQ(HeaderFiles(0, "", {true, true, true}), "|");
}

}  // namespace
}  // namespace folioscope
