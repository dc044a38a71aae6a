// CFolioscope: the report object through which a caller documents a project:
// a whole web report (SaveReport), a compiled help file
// (SaveCHMReportSystem), or single pages for preview (GetProjektSite,
// GetModulContentSite, GetMemberContentSite).
//
// Every public method first runs the readiness check CheckOfReady(), which
// re-reads all settings through CRegistry and makes sure a report set is
// loaded; a method whose check fails returns "" or 0 and writes nothing.
// Faults are trapped per procedure and reported to CErrorHandler with the
// class name "CFolioscope".
//
// The object runs the report and keeps its side effects: files written and
// their record, progress events, fault reports. The texts come from the page
// builders in pages/ and the help-project writers in chm/, which it hands a
// ReportContext. The object and its check are in engine/folioscope.cc, the
// web report driver in engine/web_report.cc, the page writers in
// engine/report_pages.cc, the help-file build in engine/help_file_report.cc.
#ifndef FOLIOSCOPE_ENGINE_FOLIOSCOPE_H_
#define FOLIOSCOPE_ENGINE_FOLIOSCOPE_H_

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "infra/file_system.h"
#include "infra/page_writer.h"
#include "infra/registry.h"
#include "model/source_model.h"
#include "pages/report_context.h"
#include "reportsets/ressource.h"

namespace folioscope {

class SearchIndex;

class CFolioscope {
 public:
  CFolioscope();
  ~CFolioscope();

  // Properties (plain stores).
  std::string PlainPath;
  std::string FolderName;
  SourceProject* Projekt = nullptr;  // not owned
  std::string ProjektName;
  std::string ModuleName;
  std::string MemberName;
  bool Ready() const { return ready_; }

  // Public methods.
  int32_t SaveCHMReportSystem(int32_t SaveMode);
  int32_t SaveReport(int32_t SaveMode);
  std::string GetProjektSite();
  std::string GetModulContentSite(const std::string& ModulName);
  std::string GetMemberContentSite(SourceMember& MemberContent, const std::string& ProjektName,
                                   const std::string& ModulName);

  // The save mode of the running save (-1 when none); tests read it.
  int32_t save_mode() const { return save_mode_; }
  // The resource-file prefix (ReportSetPath).
  const std::string& report_set_path() const { return report_set_path_; }
  // The help-file working texts (tests read them).
  const std::string& chm_file_list() const { return chm_file_list_; }
  const std::string& chm_toc_text() const { return chm_toc_text_; }
  bool chm_mode() const { return chm_mode_; }
  CRessource* resources() { return resources_.get(); }

 private:
  // The class name under which every trapped fault is reported.
  static constexpr const char* kClass = "CFolioscope";

  // engine/folioscope.cc
  void CheckOfReady();
  // The readiness check before a page of a save: the full check, unless the
  // last check passed and no code of the caller or the host has run since;
  // then its outcome stands as it was.
  void CheckOfReadyForPage();
  // The steps of CheckOfReady, in its order. The chosen report set and
  // language; returns the ReportPath setting as read.
  std::string ReadReportSetChoice(CRegistry& reg);
  // The display switches and titles; returns the reload request (LNR).
  int32_t ReadReportSwitches(CRegistry& reg);
  // Why the chosen report set cannot be used, or "" when it can.
  std::string MissingReportSetMessage(const std::string& report_path) const;
  // Loads the templates when none are loaded, again when a reload is
  // requested (which clears the request); false when a reload fails.
  bool LoadReportSet(CRegistry& reg, int32_t reload_request);
  // What the page builders work from now, with `file_prefix` in front of
  // resource-file names.
  ReportContext Context(const std::string& file_prefix) const;
  // The prefix of a module or member page: none while pages are written.
  std::string PagePrefix() const;
  void WriteTextFile(const std::string& FileName, const std::string& Text, bool Append);
  // Module and member pages: handed to the page writer while a whole
  // project is saved, written at once otherwise. `Procedure` is the one a
  // failed write is reported for.
  void WritePageFile(const char* Procedure, const std::string& FileName, std::string Text,
                     bool Append);
  void ReportPageWriteFailures(const std::vector<PageWriteFailure>& failures);
  // Waits for the page writer and reports what it could not write.
  void FinishPageWriter();
  // Appends a line to the help project's file list.
  void ListHelpFile(const std::string& name);

  // engine/web_report.cc
  int32_t WriteFileRessources();
  // The steps of WriteFileRessources. A failed copy leaves both paths in
  // `hint` for the fault report.
  void CopyResourceFiles(CRessource& res, std::string& hint);
  void CopyHelpCompiler(std::string& hint);
  void CopyReportFile(const std::string& source, const std::string& target, std::string& hint);
  // The search index of a whole-project save, when the report set asks for
  // one: collected while the pages are built, written after them.
  bool WantsSearchIndex();
  int32_t WriteSearchIndex();

  // engine/report_pages.cc
  int32_t WriteProjekt(int32_t SaveMode);
  int32_t WriteIndex();
  int32_t WriteLogo();
  int32_t WriteComponentMenu();
  int32_t WriteModulContentSite(SourceModule& Module, int32_t SaveMode, int32_t Position);
  // The help-file entries of a module page.
  void ListModulePage(const SourceModule& Module, const std::string& module_file, int32_t save_mode,
                      int32_t Position);
  std::string GetMemberForModuleContent(int32_t MemberIndex, const std::string& ModulName,
                                        bool Link);
  int32_t WriteMemberContentSite(SourceMember& Member, const std::string& ModulName, bool Append);
  // GetMemberContentSite, with the page check of a save when `page_of_save`.
  std::string MemberContentSite(SourceMember& MemberContent, const std::string& ProjektName,
                                const std::string& ModulName, bool page_of_save);

  // engine/help_file_report.cc
  int32_t CreateCHMProjektFile(SaveMode Mode);
  int32_t CreateCHMMapAndAlias(SaveMode Mode);
  int32_t CreateCHMTableOfContens(SaveMode Mode);
  int32_t RunAndWait(const std::string& CommandLine, int32_t WindowStyle,
                     bool DoEventsWhileWaiting);
  // The help compiler run of SaveCHMReportSystem over the help project in
  // `folder`, with the files it needs written first.
  void RunHelpCompiler(const std::string& folder);
  // Removes what the run wrote only for the compile (the intermediate
  // files too when DelFilesAfterCHMCompiling is 1).
  void DeleteCompileFiles(const std::string& folder);

  // Fields.
  std::unique_ptr<CRessource> resources_;
  std::unique_ptr<CFileSystem> file_system_;
  std::unique_ptr<CRegistry> registry_;
  std::string report_set_path_;
  int32_t save_mode_ = -1;
  bool ready_ = false;
  ReportSettings settings_;  // as the last readiness check read them
  // What the last readiness check left when it passed, and how far the
  // caller's listeners and the host's code had run when it ended.
  struct PassedCheck {
    bool valid = false;
    uint64_t listener_calls = 0;
    uint64_t host_code_runs = 0;
    std::string report_set_path;
  };
  PassedCheck passed_check_;

  // Help-file build state.
  bool chm_mode_ = false;
  std::string chm_file_list_;  // "[FILES]" CR LF, then one file per line
  std::string chm_toc_text_;
  int32_t progress_total_ = 0;  // the total announced with OnReportStart
  // Every file this object wrote or copied since the last save began (paths
  // as written); the clean-up after a help-file compile deletes only these.
  std::set<std::string> written_files_;
  // Writes the module and member pages of a whole-project save.
  std::unique_ptr<PageWriter> page_writer_;
  // Collects modules and members for the search index; set only while a
  // whole-project web report is saved with a report set that asks for it.
  std::unique_ptr<SearchIndex> search_index_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_FOLIOSCOPE_H_
