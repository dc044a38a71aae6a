// Module and member pages: what each placeholder receives, which members a
// module page lists, the syntax line, the parameter notes, file names, the
// help-file entries, and preview pages against written pages.
#include <gtest/gtest.h>

#include <string>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"

namespace folioscope {
namespace {

using report_testing::AddEmptyModule;
using report_testing::AddMember;
using report_testing::AddParameter;
using report_testing::ReportTest;

class PagesTest : public ReportTest {
 protected:
  PagesTest() {
    SourceModule& cls = AddEmptyModule(project_, "Kasse Buch", "Class");
    cls.HelpContextId = 77;
    cls.Description = "Buchungen";
    for (int32_t i = 1; i <= 5; ++i) cls.CodeLines.Add(i, "' Zeile");
    AddMember(cls, "Header", "", "",
              {"'/// <summary>Das Kassenbuch.</summary>", "'/// <remarks>Nur lesen.</remarks>",
               "Option Explicit"});
    SourceMember& rechne = AddMember(
        cls, "Rechne", "Function", "Private",
        {"'/// <summary>Rechnet.</summary>", "'/// <param name=\"a\">Der erste.</param>",
         "'/// <remarks>Bemerkung.</remarks>", "'/// <returns>Die Summe.</returns>",
         "Private Function Rechne(ByVal a As Long, Optional b As Long = 0, ParamArray rest()) "
         "As Long",
         "End Function"});
    rechne.ReturnType = "Long";
    rechne.HelpContextId = 12;
    rechne.Description = "intern";
    AddParameter(rechne, "a", "Long", "ByVal");
    SourceParameter& b = AddParameter(rechne, "b", "Long", "ByRef");
    b.Optional = true;
    b.HasDefault = true;
    b.Default = "0";
    AddParameter(rechne, "rest", "Variant()", "ByRef").ParamArray = true;
    SourceMember& wert = AddMember(cls, "Let Wert", "Property", "Public", {"Public Property Let"});
    wert.PropertyForm = "Let ";
    AddParameter(wert, "RHS", "Long", "ByVal");
    AddMember(cls, "Tu Es", "Sub", "Friend", {"Friend Sub TuEs()"});
    AddMember(cls, "Geaendert", "OutEvent", "Public", {"Public Event Geaendert()"});

    SourceModule& std_module = AddEmptyModule(project_, "Werkzeug", "Module");
    AddMember(std_module, "Header", "", "", {"Option Explicit"});
    SourceMember& get = AddMember(std_module, "Get Eintrag", "Property", "Public");
    get.PropertyForm = "Get ";
    AddParameter(get, "Index", "Long", "ByVal").Optional = true;
    AddParameter(get, "Name", "String", "ByRef");
  }

  SourceMember& Member(const std::string& module, const std::string& name) {
    return project_.Modules.Item(module).Members.Item(name);
  }
  std::string Preview(CFolioscope& r, const std::string& module, const std::string& name) {
    return r.GetMemberContentSite(Member(module, name), "Kasse", module);
  }
};

TEST_F(PagesTest, MemberPageWithParameterRowsAndNotes) {
  SetWord("ShowHelpContextID", 1);
  SetWord("ShowVBInternDescription", 1);
  auto report = MakeReport();
  const std::string css = SetPrefix() + "style.css";
  EXPECT_EQ(Preview(*report, "Kasse Buch", "Rechne"),
            "T[Rechne|Kasse|Kasse Buch|Function|privat|Rechne|objekt.Rechne(a, [b], rest)|"
            "Rechnet.||Long|intern|Hilfe-ID: 12|" +
                css +
                "]"
                "R[a&nbsp;|Long|Der erste.|ja|Wert|keine|#336699]"
                "R[b&nbsp;|Long||nein|Verweis|Standard:0|#336699]"
                "R[rest&nbsp;|Variant()||ja|Verweis|Feld|#336699]"
                "B[Long|Bemerkung.|Die Summe.|" +
                css + "]");
  // Both switches count as on only above zero.
  SetWord("ShowHelpContextID", -1);
  SetWord("ShowVBInternDescription", -1);
  EXPECT_NE(Preview(*report, "Kasse Buch", "Rechne").find("|Long|||" + css), std::string::npos);
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(PagesTest, SyntaxLineForms) {
  auto report = MakeReport();
  struct Case {
    const char* module;
    const char* member;
    const char* top_fields;  // kind | scope | name | syntax
  };
  const Case cases[] = {
      // Assignment forms take " = " and no closing bracket.
      {"Kasse Buch", "Let Wert", "|Property|offen|Let Wert|objekt.Wert = RHS|"},
      // No parameters: the name alone; every member of a class-like module
      // gets the object prefix, whatever its scope.
      {"Kasse Buch", "Tu Es", "|Sub|freund|Tu Es|objekt.Tu Es|"},
      {"Kasse Buch", "Geaendert", "|Ereignis|offen|Geaendert|objekt.Geaendert|"},
      // A standard module has no object prefix; Get keeps its brackets.
      {"Werkzeug", "Get Eintrag", "|Property|offen|Get Eintrag|Eintrag([Index], Name)|"},
      // The declarations section: no kind, name or syntax.
      {"Werkzeug", "Header", "||Deklaration|||"},
  };
  for (const Case& c : cases) {
    const std::string page = Preview(*report, c.module, c.member);
    EXPECT_NE(page.find(c.top_fields), std::string::npos) << c.member << ": " << page;
  }
}

TEST_F(PagesTest, ModulePagePreviewListsMembersBySwitchInSourceOrder) {
  SetWord("ToolBarFriendValue", 2);  // only exactly 1 lists
  SetWord("ShowHelpContextID", 2);   // any positive value shows
  SetWord("ShowLOCForModuls", 2);    // only exactly 1 shows
  SetWord("ShowModulePath", 1);
  SetWord("ShowModuleRelativePath", 3);
  SetWord("ShowVBInternDescription", 1);
  auto report = MakeReport();
  const std::string css = SetPrefix() + "style.css";
  EXPECT_EQ(report->GetModulContentSite("Kasse Buch"),
            "H[Kasse Buch|Klassenmodul|Kasse Buch|Kasse|Datei: Kasse Buch.cls|Buchungen|"
            "Kontext: 77||Pfad: /src/Kasse Buch.cls|Das Kassenbuch.|" +
                css +
                "]"
                "M[<a href='Rechne'>Rechne</a>~<br><br>~Rechnet.|style.css]"
                "M[<a href='Let Wert'>Let Wert</a>~~|style.css]"
                "M[<a href='Geaendert'>Geaendert</a>~~|style.css]"
                "F[Anmerkungen|Nur lesen.|" +
                css + "]");

  SetWord("ToolBarPublicValue", 0);
  SetWord("ToolBarPrivateValue", 0);
  SetWord("ToolBarFriendValue", 1);
  SetWord("ShowLOCForModuls", 1);
  const std::string page = report->GetModulContentSite("Kasse Buch");
  EXPECT_NE(page.find("|Zeilen: 5|"), std::string::npos);
  EXPECT_NE(page.find("]M[<a href='Tu Es'>Tu Es</a>~~|style.css]F["), std::string::npos);
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(PagesTest, WrittenModulePageWritesListedMemberPagesWithoutPrefix) {
  auto report = MakeWriter();
  CFolioscopeTestPeer peer(*report);
  peer.SetSaveMode(1);
  peer.WriteModulContentSite(project_.Modules.Item("Kasse Buch"), 1, 0);
  EXPECT_EQ(Out("Kasse_Buch.htm"),
            "H[Kasse Buch|Klassenmodul|Kasse Buch|Kasse||||||Das Kassenbuch.|style.css]"
            "M[<a href='Kasse_Buch_Rechne.htm' TARGET = 'FrameRechts'>Rechne</a>~<br><br>~"
            "Rechnet.|style.css]"
            "M[<a href='Kasse_Buch_Let_Wert.htm' TARGET = 'FrameRechts'>Let Wert</a>~~|style.css]"
            "M[<a href='Kasse_Buch_Tu_Es.htm' TARGET = 'FrameRechts'>Tu Es</a>~~|style.css]"
            "M[<a href='Kasse_Buch_Geaendert.htm' TARGET = 'FrameRechts'>Geaendert</a>~~|"
            "style.css]"
            "F[Anmerkungen|Nur lesen.|style.css]\r\n");
  EXPECT_EQ(Out("Kasse_Buch_Tu_Es.htm"),
            "T[Tu Es|Kasse|Kasse Buch|Sub|freund|Tu Es|objekt.Tu Es||||||style.css]"
            "B[|||style.css]\r\n");
  for (const char* name :
       {"Kasse_Buch_Rechne.htm", "Kasse_Buch_Let_Wert.htm", "Kasse_Buch_Geaendert.htm"}) {
    EXPECT_TRUE(OutHas(name)) << name;
  }
  EXPECT_FALSE(OutHas("Kasse_Buch_Header.htm"));
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(PagesTest, HelpFileModeAddsListAndContentsEntries) {
  SetWord("ToolBarPrivateValue", 0);
  SetWord("ToolBarFriendValue", 0);
  auto report = MakeWriter();
  CFolioscopeTestPeer peer(*report);
  const std::string item = peer.GetTOCItem();
  EXPECT_EQ(item,
            "<LI> <OBJECT type=\"text/sitemap\">\r\n"
            "<param name=\"Name\" value=\"&&&TOCCaption&&&\">\r\n"
            "<param name=\"Local\" value=\"&&&TOCFile&&&\">\r\n"
            "</OBJECT>\r\n");
  auto entry = [&](const std::string& caption, const std::string& file) {
    std::string e = item;
    e.replace(e.find("&&&TOCCaption&&&"), 16, caption);
    e.replace(e.find("&&&TOCFile&&&"), 13, file);
    return e;
  };
  peer.StartHelpFileMode();
  peer.SetSaveMode(0);
  peer.WriteModulContentSite(project_.Modules.Item("Kasse Buch"), 0, 1);
  peer.WriteModulContentSite(project_.Modules.Item("Werkzeug"), 0, 2);
  EXPECT_EQ(report->chm_file_list(), "[FILES]\r\nKasse_Buch.htm\r\nWerkzeug.htm\r\n");
  EXPECT_EQ(report->chm_toc_text(), entry("Kasse Buch", "Kasse_Buch.htm") + "<ul>" +
                                        entry("Let Wert", "Kasse_Buch_Let_Wert.htm") + "\r\n" +
                                        entry("Geaendert", "Kasse_Buch_Geaendert.htm") + "\r\n" +
                                        "</ul>" + entry("Werkzeug", "Werkzeug.htm") + "<ul>" +
                                        entry("Get Eintrag", "Werkzeug_Get_Eintrag.htm") + "\r\n");
  // Help pages open links in place.
  EXPECT_NE(Out("Werkzeug.htm").find("<a href='Werkzeug_Get_Eintrag.htm'>"), std::string::npos);

  // A one-module save opens its own list.
  peer.StartHelpFileMode();
  peer.WriteModulContentSite(project_.Modules.Item("Werkzeug"), 1, 0);
  EXPECT_EQ(report->chm_toc_text().substr(0, 8), "<ul><LI>");
}

TEST_F(PagesTest, MemberWriterAppendsOrReplaces) {
  auto report = MakeWriter();
  CFolioscopeTestPeer peer(*report);
  peer.SetSaveMode(2);
  SourceMember& member = Member("Kasse Buch", "Tu Es");
  peer.WriteMemberContentSite(member, "Kasse Buch", false);
  const std::string once = Out("Kasse_Buch_Tu_Es.htm");
  EXPECT_EQ(once.find(SetPrefix()), std::string::npos);
  peer.WriteMemberContentSite(member, "Kasse Buch", true);
  EXPECT_EQ(Out("Kasse_Buch_Tu_Es.htm"), once + once);
  peer.WriteMemberContentSite(member, "Kasse Buch", false);
  EXPECT_EQ(Out("Kasse_Buch_Tu_Es.htm"), once);
}

TEST_F(PagesTest, UnknownModuleIsAFaultAndGivesNothing) {
  auto report = MakeReport();
  EXPECT_EQ(report->GetModulContentSite("Fehlt"), "");
  EXPECT_EQ(NewFaults(), 1);
}

}  // namespace
}  // namespace folioscope
