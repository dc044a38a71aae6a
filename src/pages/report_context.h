// What the page builders and the help-project writers work from: the
// settings as the readiness check read them, the loaded report set, the
// project and how resource files are named. The report object makes one per
// page; the builders read it and return text, and leave writing files,
// progress and fault reports to the report object.
#ifndef FOLIOSCOPE_PAGES_REPORT_CONTEXT_H_
#define FOLIOSCOPE_PAGES_REPORT_CONTEXT_H_

#include <cstdint>
#include <string>

#include "model/source_model.h"
#include "pages/page_names.h"
#include "reportsets/ressource.h"

namespace folioscope {

class SearchIndex;

// What SaveReport and SaveCHMReportSystem write: the whole project, the
// module named by ModuleName, or the member MemberName of that module.
// Callers pass the number; a number outside these writes only what all
// modes share.
enum class SaveMode : int32_t {
  kWholeProject = 0,
  kOneModule = 1,
  kOneMember = 2,
};

// The settings one readiness check reads, under their setting names.
struct ReportSettings {
  std::string ReportLanguage;
  int32_t DelFilesAfterCHMCompiling = 0;
  int32_t ShowModulePath = 0;
  int32_t ShowModuleRelativePath = 0;
  int32_t ShowLOCForModuls = 0;
  int32_t ShowLOCForProjects = 0;
  int32_t ShowHelpContextID = 0;
  int32_t ShowVBInternDescription = 0;
  int32_t ToolBarPublicValue = 0;
  int32_t ToolBarFriendValue = 0;
  int32_t ToolBarPrivateValue = 0;
  std::string ReportStdTitle;
  std::string CHMReportTitle;
};

// The member scopes the module pages list under these settings.
inline ListedScopes ListedScopesOf(const ReportSettings& settings) {
  return {settings.ToolBarPublicValue == 1, settings.ToolBarFriendValue == 1,
          settings.ToolBarPrivateValue == 1};
}

struct ReportContext {
  CRessource* resources = nullptr;   // the loaded report set; none raises error 91
  SourceProject* project = nullptr;  // likewise
  ReportSettings settings;
  // Put in front of resource-file names: the report-set folder for a
  // preview, empty for pages written next to their resource copies.
  std::string file_prefix;
  // Pages of a help-file build link without a target frame.
  bool chm_mode = false;
  // Collects what the written pages show, when a search index is built.
  SearchIndex* search_index = nullptr;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_REPORT_CONTEXT_H_
