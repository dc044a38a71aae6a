#include <string>
#include <vector>

#include "engine/report_test_support.h"

namespace folioscope {
namespace {

class ChmProjectFilesTest : public report_testing::ReportTest {
 protected:
  ChmProjectFilesTest() {
    AddModule("Kasse Haupt", {{"Buche Beleg", "Public", 1010}, {"Storno", "Private", 1020}});
    AddModule("Drucker", {{"Druck", "Friend", 2010}, {"Leer", "Public", 0}});
    report_ = MakeWriter();
    report_->ModuleName = "Kasse Haupt";
    report_->MemberName = "Buche Beleg";
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

  std::unique_ptr<CFolioscope> report_;
};

TEST_F(ChmProjectFilesTest, ProjectFileNamesTheDefaultTopicOfEachSaveMode) {
  const std::string files = "[FILES]\r\nstyle.css\r\nProjekt.htm\r\n";
  struct Case {
    int32_t save_mode;
    std::string title;
    std::string default_topic;
    std::string title_line;
  } cases[] = {
      {0, "", "Projekt.htm", "Title=Hilfe"},
      {1, "   ", "Kasse_Haupt.htm", "Title=Hilfe"},
      {2, "  Kasse Hilfe ", "Kasse_Haupt_Buche_Beleg.htm", "Title=Kasse Hilfe"},
  };
  CFolioscopeTestPeer peer(*report_);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.save_mode);
    peer.SetHelpTexts(files, "");
    peer.SetTitle(c.title);
    peer.CreateCHMProjektFile(c.save_mode);
    EXPECT_EQ(Out("Project.hhp"),
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
                  "[MAP]\r\n#include Map_Test.h\r\n");
  }
}

TEST_F(ChmProjectFilesTest, TableOfContentsClosesTheListsOfEachSaveMode) {
  const std::string header =
      "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\"><HTML><HEAD><meta name=\"GENERATOR\" "
      "content=\"Microsoft&reg; HTML Help Workshop 4.1\"><!-- Sitemap 1.0 --></HEAD><BODY>"
      "<OBJECT type=\"text/site properties\"><param name=\"ImageType\" value=\"Folder\">"
      "</OBJECT>";
  const std::string items = "<LI>a\r\n<ul><LI>b\r\n";
  CFolioscopeTestPeer peer(*report_);
  const std::pair<int32_t, std::string> cases[] = {
      {0, "</ul></ul></ul>"}, {1, "</ul></ul>"}, {2, ""}, {7, ""}};
  for (const auto& [save_mode, closing] : cases) {
    SCOPED_TRACE(save_mode);
    peer.SetHelpTexts("[FILES]\r\n", items);
    peer.CreateCHMTableOfContens(save_mode);
    EXPECT_EQ(Out("Table of Contents.hhc"), header + items + closing + "</body></html>\r\n");
  }
}

TEST_F(ChmProjectFilesTest, HeaderFilesTieListedMembersToTheirPages) {
  CFolioscopeTestPeer peer(*report_);
  // Whole project, every scope listed: Header (no scope) and the member
  // without a context number stay out; blanks become "_".
  peer.CreateCHMMapAndAlias(0);
  EXPECT_EQ(Out("Map_Test.h"),
            "#define Kasse_Haupt_Buche_Beleg  1010\r\n"
            "#define Kasse_Haupt_Storno  1020\r\n"
            "#define Drucker_Druck  2010\r\n"
            "\r\n");
  EXPECT_EQ(Out("alias_test.h"),
            "Kasse_Haupt_Buche_Beleg = Kasse_Haupt_Buche_Beleg.htm\r\n"
            "Kasse_Haupt_Storno = Kasse_Haupt_Storno.htm\r\n"
            "Drucker_Druck = Drucker_Druck.htm\r\n"
            "\r\n");

  // Only what the module pages list: Private and Friend switched off (2 is
  // not "on"), one module.
  peer.SetListed(1, 2, 0);
  peer.CreateCHMMapAndAlias(1);
  EXPECT_EQ(Out("Map_Test.h"), "#define Kasse_Haupt_Buche_Beleg  1010\r\n\r\n");
  EXPECT_EQ(Out("alias_test.h"), "Kasse_Haupt_Buche_Beleg = Kasse_Haupt_Buche_Beleg.htm\r\n\r\n");

  // A one-member save names that member whatever the switches say.
  report_->MemberName = "Storno";
  peer.CreateCHMMapAndAlias(2);
  EXPECT_EQ(Out("Map_Test.h"), "#define Kasse_Haupt_Storno  1020\r\n\r\n");
}

TEST_F(ChmProjectFilesTest, ProjectWithoutContextNumbersGivesEmptyHeaderFiles) {
  for (int32_t i = 1; i <= project_.Modules.Count(); ++i) {
    for (int32_t j = 1; j <= project_.Modules.Item(i).Members.Count(); ++j) {
      project_.Modules.Item(i).Members.Item(j).HelpContextId = (j % 2 == 0) ? 0 : -5;
    }
  }
  CFolioscopeTestPeer peer(*report_);
  peer.CreateCHMMapAndAlias(0);
  EXPECT_EQ(Out("Map_Test.h"), "\r\n");
  EXPECT_EQ(Out("alias_test.h"), "\r\n");
}

}  // namespace
}  // namespace folioscope
