#include <gtest/gtest.h>

#include <string>

#include "pages/component_menu.h"
#include "pages/frame_pages.h"
#include "pages/page_test_support.h"

namespace folioscope {
namespace {

using report_testing::AddModule;

class FramePagesTest : public report_testing::MiniSetTest {
 protected:
  static std::string EmptyNode(int n, const std::string& caption) {
    const std::string id = std::to_string(n);
    return "<node Element" + id + " MenuIcon" + id + ">" + caption + "<DIV></DIV>\r\n";
  }
};

TEST_F(FramePagesTest, IndexAndLogo) {
  // The frame page gets the name everywhere but no language texts.
  EXPECT_EQ(IndexPageText(Mini(), project_),
            "I[Kasse Version 2.1.7|Kasse Version 2.1.7|style.css|&&&FS_Logo_CodeFolioscope&&&]");
  // The user's title wins over the language text.
  EXPECT_EQ(LogoPageText(Mini(), "Mein Titel"), "L[Mein Titel|#336699]");
  EXPECT_EQ(LogoPageText(Mini(), ""), "L[Quelltext-Dokumentation|#336699]");
}

TEST_F(FramePagesTest, MenuWithClassesOnlyHasAllFiveNodeHeads) {
  AddModule(project_, "CZahlung", "Class");
  AddModule(project_, "CBon", "Class");
  EXPECT_EQ(ComponentMenuText(Mini(), project_),
            "<menu>Kasse"
            "<node Element1 MenuIcon1>Klassen<DIV>"
            "<a CZahlung.htm #336699>CZahlung</a><a CBon.htm #336699>CBon</a></DIV>\r\n" +
                EmptyNode(2, "Formulare") + EmptyNode(3, "Module") +
                EmptyNode(4, "Steuerelemente") + EmptyNode(5, "Eigenschaftsseiten") + "</menu>");
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
  EXPECT_EQ(ComponentMenuText(Mini(), project_),
            "<menu>Kasse" + EmptyNode(1, "Klassen") +
                "<node Element2 MenuIcon2>Formulare<DIV>"
                "<a frmB.htm #336699>frmB</a><a frmA.htm #336699>frmA</a></DIV>\r\n"
                "<node Element3 MenuIcon3>Module<DIV><a modM.htm #336699>modM</a></DIV>\r\n"
                "<node Element4 MenuIcon4>Steuerelemente<DIV>"
                "<a ucZiffer.htm #336699>ucZiffer</a></DIV>\r\n"
                "<node Element5 MenuIcon5>Eigenschaftsseiten<DIV>"
                "<a ppOpt.htm #336699>ppOpt</a></DIV>\r\n"
                "</menu>");
}

}  // namespace
}  // namespace folioscope
