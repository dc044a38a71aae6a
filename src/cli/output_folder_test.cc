#include "cli/output_folder.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/host.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

class OutputFolderTest : public ::testing::Test {
 protected:
  // Runs the folioscope command line in this process (as main does) with
  // the build tree as application folder and a settings file of its own;
  // returns the exit status and keeps what went to stderr.
  int Run(std::vector<std::string> args) {
    Host host;
    CLI::App app{"folioscope"};
    app.require_subcommand(1);
    app.fallthrough();
    app.add_option("--app-dir", host.options.app_dir);
    app.add_option("--registry", host.options.registry);
    app.add_flag("--quiet", host.options.quiet);
    app.add_flag("--no-progress", host.options.no_progress);
    for (auto setup : CommandRegistration::All()) setup(app, host);
    args.insert(args.begin(), {"folioscope", "--app-dir", FOLIOSCOPE_BUILD_DIR, "--registry",
                               (root_ / "registry.reg").string(), "--quiet", "--no-progress"});
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    ::testing::internal::CaptureStderr();
    int status = 0;
    try {
      app.parse(static_cast<int>(argv.size()), argv.data());
      status = host.FinalStatus();
    } catch (const CLI::ParseError& e) {
      status = app.exit(e) == 0 ? 0 : kExitUsage;
    }
    stderr_ = ::testing::internal::GetCapturedStderr();
    return status;
  }

  TestFolder folder_;
  const fs::path root_ = folder_.path();
  std::string stderr_;
};

TEST_F(OutputFolderTest, FolderStatesAndTheFirstForeignEntry) {
  struct Case {
    const char* folder;
    OutputFolderState::Kind kind;
    const char* first_foreign;
  };
  folder_.Write(std::string("marked/") + kReportMarkerName, "x");
  folder_.Write("marked/Projekt.htm", "x");
  folder_.Write(std::string("marker-only/") + kReportMarkerName, "x");
  folder_.Write("foreign/thesis.tex", "x");
  folder_.Write("foreign/Projekt.htm", "x");
  folder_.Write("foreign/zz.txt", "x");
  fs::create_directories(root_ / "subfolder-only" / "src");
  folder_.Write("dotfile-only/.git", "x");
  fs::create_directories(root_ / "empty");
  folder_.Write("a-file", "x");
  const Case cases[] = {
      {"missing", OutputFolderState::kFree, ""},
      {"empty", OutputFolderState::kFree, ""},
      {"marker-only", OutputFolderState::kReport, ""},
      {"marked", OutputFolderState::kReport, ""},
      {"foreign", OutputFolderState::kForeign, "Projekt.htm"},
      {"subfolder-only", OutputFolderState::kForeign, "src"},
      {"dotfile-only", OutputFolderState::kForeign, ".git"},
      {"a-file", OutputFolderState::kNotAFolder, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.folder);
    const OutputFolderState state = InspectOutputFolder((root_ / c.folder).string());
    EXPECT_EQ(state.kind, c.kind);
    EXPECT_EQ(state.first_foreign, c.first_foreign);
  }
  // Marking: an existing folder gets the marker once; a missing one is
  // left alone (the run creates it and marks it afterwards).
  EXPECT_TRUE(MarkReportFolder((root_ / "empty").string()));
  EXPECT_EQ(InspectOutputFolder((root_ / "empty").string()).kind, OutputFolderState::kReport);
  EXPECT_TRUE(MarkReportFolder((root_ / "missing").string()));
  EXPECT_FALSE(fs::exists(root_ / "missing"));
}

// The writing commands refuse a foreign folder (status 2, nothing written,
// the folder and the first foreign file named, --force suggested), write
// into it with --force, and leave the marker in every folder they wrote.
TEST_F(OutputFolderTest, WritingCommandsRefuseForeignFoldersUnlessForced) {
  const std::string project = std::string(FOLIOSCOPE_SOURCE_DIR) + "/examples/Kontor/Kontor.vbp";
  const std::string out = (root_ / "out").string();
  folder_.Write("out/Projekt.htm", "my own page");
  folder_.Write("out/notes.txt", "mine");

  for (const char* command : {"report", "chm"}) {
    SCOPED_TRACE(command);
    EXPECT_EQ(Run({command, project, "-o", out}), kExitUsage);
    EXPECT_NE(stderr_.find("'" + out + "'"), std::string::npos) << stderr_;
    EXPECT_NE(stderr_.find("'Projekt.htm'"), std::string::npos) << stderr_;
    EXPECT_NE(stderr_.find("--force"), std::string::npos) << stderr_;
  }
  EXPECT_EQ(TestFolder::Read(root_ / "out" / "Projekt.htm"), "my own page");
  EXPECT_FALSE(fs::exists(root_ / "out" / kReportMarkerName));

  EXPECT_EQ(Run({"report", project, "-o", out, "--force"}), kExitDone) << stderr_;
  EXPECT_TRUE(fs::exists(root_ / "out" / "_Index.htm"));
  EXPECT_TRUE(fs::exists(root_ / "out" / "notes.txt"));
  EXPECT_TRUE(fs::exists(root_ / "out" / kReportMarkerName));
  // Marked now: the next run needs no --force.
  EXPECT_EQ(Run({"report", project, "-o", out + "/"}), kExitDone) << stderr_;

  // A new folder is created, written and marked; a path naming a file is
  // refused even with --force.
  EXPECT_EQ(Run({"report", project, "-o", (root_ / "new").string()}), kExitDone) << stderr_;
  EXPECT_TRUE(fs::exists(root_ / "new" / kReportMarkerName));
  EXPECT_TRUE(fs::exists(root_ / "new" / "Projekt.htm"));
  folder_.Write("plain-file", "x");
  EXPECT_EQ(Run({"report", project, "-o", (root_ / "plain-file").string(), "--force"}), kExitUsage);
  EXPECT_NE(stderr_.find("is not a folder"), std::string::npos) << stderr_;

  for (const char* command : {"report", "chm"}) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(Run({command, "--help"}), kExitDone);
    EXPECT_NE(::testing::internal::GetCapturedStdout().find("--force"), std::string::npos);
  }
}

}  // namespace
}  // namespace folioscope
