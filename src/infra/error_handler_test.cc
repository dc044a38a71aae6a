#include "infra/error_handler.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "infra/recording_platform.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

class ErrorHandlerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder_ / "app");
    platform_.application_folder = (folder_ / "app").string();
    platform_.fallback_log_folder = (folder_ / "state").string();
    platform_.last_system_error = 87;
  }
  void TearDown() override { fs::permissions(folder_ / "app", fs::perms::owner_all); }
  TestFolder scratch_;
  const fs::path folder_ = scratch_.path();
  RecordingPlatform platform_;
};

TEST_F(ErrorHandlerTest, ReportTextLogAndDialog) {
  ScopedPlatform scoped(&platform_);
  CErrorHandler& h = CErrorHandler::Instance();
  int32_t choice = h.Report(vb::RuntimeError(5, vb::ErrorDescription(5), "VBFolioscope"), "GetCode",
                            12, "", "CCode");
  EXPECT_EQ(choice, kChoiceIgnore);
  const std::string app = platform_.application_folder;
  const std::string expected =
      "Anwendung folioscope, Version 1.0.0  verursachte folgenden Fehler:\r\n"
      "Ung\xFCltiger Prozeduraufruf oder ung\xFCltiges Argument.\r\n\r\n"
      "\r\n\r\nDer Fehler wird in Datei " +
      app +
      " /ErrorLog.txt protokolliert.\r\n\r\n"
      " [Nummer]  \t5\r\n [DLL Nummer] \t87\r\n [Modul]      \tCCode\r\n"
      " [Funktion]   \tGetCode\r\n [Zeile]      \t12\r\n [Quelle]     \tVBFolioscope";
  EXPECT_EQ(h.ReportText(), expected);
  ASSERT_EQ(platform_.error_dialogs.size(), 1u);
  EXPECT_EQ(platform_.error_dialogs[0], expected);
  EXPECT_EQ(h.Member(), "   Prozedur: GetCode");
  EXPECT_EQ(h.Zeit(), "Datum/Zeit: 23.11.2026 12:00:00");

  // The log grows by appending; a second fault never truncates the first.
  h.Report(vb::RuntimeError(6), "GetProjektSite", 0, "Hinweistext", "CFolioscope");
  std::string log = TestFolder::Read(fs::path(app) / "ErrorLog.txt");
  std::string first_entry =
      "Anwendung folioscope, Version 1.0.0  verursachte folgenden Fehler:\r\n"
      "Datum/Zeit: 23.11.2026 12:00:00\r\n\r\n" +
      expected + "\r\n\r\n\r\n\r\n";
  EXPECT_EQ(log.substr(0, first_entry.size()), first_entry);
  EXPECT_NE(log.find("Hinweistext\r\n\r\nDer Fehler"), std::string::npos);
  EXPECT_EQ(h.LogPath(), (fs::path(app) / "ErrorLog.txt").string());
}

TEST_F(ErrorHandlerTest, FallbackLogAndMailAddress) {
  if (::geteuid() == 0) GTEST_SKIP() << "root writes into read-only folders";
  ScopedPlatform scoped(&platform_);
  fs::permissions(folder_ / "app", fs::perms::owner_read | fs::perms::owner_exec);
  CErrorHandler& h = CErrorHandler::Instance();
  h.Report(vb::RuntimeError(53), "ReadFileText", 0, "", "CRessource");
  EXPECT_EQ(h.LogPath(), (folder_ / "state" / "ErrorLog.txt").string());
  EXPECT_FALSE(fs::exists(folder_ / "app" / "ErrorLog.txt"));
}

TEST_F(ErrorHandlerTest, SendMailEncodesLineBreaksOnly) {
  ScopedPlatform scoped(&platform_);
  CErrorHandler& h = CErrorHandler::Instance();
  h.Report(vb::RuntimeError(9), "Item", 3, "a & b", "CReportSets");
  h.SendMail();
  ASSERT_EQ(platform_.opened_addresses.size(), 1u);
  const std::string& a = platform_.opened_addresses[0];
  EXPECT_EQ(a.rfind(std::string("mailto:") + kSupportMailbox +
                        "?subject=Fehlerbericht Anwendung folioscope , Version 1.0.0  "
                        "verursachte folgenden Fehler:&body=23.11.2026 12:00:00%0D%0A",
                    0),
            0u);
  EXPECT_EQ(a.find("\r\n"), std::string::npos);
  EXPECT_NE(a.find("a & b%0D%0A%0D%0ADer Fehler"), std::string::npos);
  h.PrintBericht();
  ASSERT_EQ(platform_.printed_texts.size(), 1u);
  EXPECT_EQ(platform_.printed_texts[0], h.ReportText());
}

TEST_F(ErrorHandlerTest, TrapReportsAndReturnsFalse) {
  ScopedPlatform scoped(&platform_);
  bool ran_after = false;
  EXPECT_FALSE(Trap("CSummary", "GetSummary", [&] {
    vb::Left("abc", -1);
    ran_after = true;
  }));
  EXPECT_FALSE(ran_after);
  EXPECT_EQ(CErrorHandler::Instance().Modul(), "CSummary");
  EXPECT_EQ(CErrorHandler::Instance().FehlerNummer(), "Fehlernummer: 5");
  EXPECT_TRUE(Trap("CSummary", "GetSummary", [] {}));
  EXPECT_EQ(platform_.error_dialogs.size(), 1u);
}

}  // namespace
}  // namespace folioscope
