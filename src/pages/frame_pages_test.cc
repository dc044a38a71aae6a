#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"

namespace folioscope {
namespace {

using report_testing::AddModule;
using report_testing::ReportTest;

class FramePagesTest : public ReportTest {
 protected:
  static std::string EmptyNode(int n, const std::string& caption) {
    const std::string id = std::to_string(n);
    return "<node Element" + id + " MenuIcon" + id + ">" + caption + "<DIV></DIV>\r\n";
  }
};

TEST_F(FramePagesTest, IndexFillsTheNameEverywhereButNoLanguageTexts) {
  auto report = MakeWriter();
  CFolioscopeTestPeer(*report).WriteIndex();
  EXPECT_EQ(Out("_Index.htm"),
            "I[Kasse Version 2.1.7|Kasse Version 2.1.7|style.css|"
            "&&&FS_Logo_CodeFolioscope&&&]\r\n");
}

TEST_F(FramePagesTest, LogoPrefersTheUsersTitleOverTheLanguageText) {
  struct Case {
    std::string title;
    std::string shown;
  };
  const Case cases[] = {
      {"Mein Titel", "Mein Titel"},
      {"  Kasse  ", "Kasse"},
      {"   ", "Quelltext-Dokumentation"},
      {"", "Quelltext-Dokumentation"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("'" + c.title + "'");
    SetString("ReportStdTitle", c.title);
    auto report = MakeWriter();
    CFolioscopeTestPeer(*report).WriteLogo();
    EXPECT_EQ(Out("Logo.htm"), "L[" + c.shown + "|#336699]\r\n");
  }
}

TEST_F(FramePagesTest, MenuWithClassesOnlyHasAllFiveNodeHeads) {
  AddModule(project_, "CZahlung", "Class");
  AddModule(project_, "CBon", "Class");
  auto report = MakeWriter();
  CFolioscopeTestPeer(*report).WriteComponentMenu();
  EXPECT_EQ(Out("Menu.htm"),
            "<menu>Kasse"
            "<node Element1 MenuIcon1>Klassen<DIV>"
            "<a CZahlung.htm #336699>CZahlung</a><a CBon.htm #336699>CBon</a></DIV>\r\n" +
                EmptyNode(2, "Formulare") + EmptyNode(3, "Module") +
                EmptyNode(4, "Steuerelemente") + EmptyNode(5, "Eigenschaftsseiten") +
                "</menu>\r\n");
}

TEST_F(FramePagesTest, MenuGroupsByKindInProjectOrderAndLeavesOtherKindsOut) {
  AddModule(project_, "ucZiffer", "UserControl");
  AddModule(project_, "frmB", "Form");
  AddModule(project_, "DataEnv", "Designer");
  AddModule(project_, "frmA", "Form");
  AddModule(project_, "udDok", "UserDocument");
  AddModule(project_, "ppOpt", "PropertyPage");
  AddModule(project_, "modM", "Module");
  AddModule(project_, "Cclass", "class");  // kinds compare case-sensitively
  auto report = MakeWriter();
  CFolioscopeTestPeer(*report).WriteComponentMenu();
  EXPECT_EQ(Out("Menu.htm"),
            "<menu>Kasse" + EmptyNode(1, "Klassen") +
                "<node Element2 MenuIcon2>Formulare<DIV>"
                "<a frmB.htm #336699>frmB</a><a frmA.htm #336699>frmA</a></DIV>\r\n"
                "<node Element3 MenuIcon3>Module<DIV><a modM.htm #336699>modM</a></DIV>\r\n"
                "<node Element4 MenuIcon4>Steuerelemente<DIV>"
                "<a ucZiffer.htm #336699>ucZiffer</a></DIV>\r\n"
                "<node Element5 MenuIcon5>Eigenschaftsseiten<DIV>"
                "<a ppOpt.htm #336699>ppOpt</a></DIV>\r\n"
                "</menu>\r\n");
}

TEST_F(FramePagesTest, HelpFileListGetsIndexAndMenuButNotLogo) {
  auto report = MakeWriter();
  CFolioscopeTestPeer peer(*report);
  peer.StartHelpFileMode();
  peer.WriteLogo();
  peer.WriteIndex();
  peer.WriteComponentMenu();
  EXPECT_EQ(report->chm_file_list(), "[FILES]\r\n_Index.htm\r\nMenu.htm\r\n");
}

}  // namespace
}  // namespace folioscope
