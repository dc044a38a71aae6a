// Documentation coverage: how much of what the web report shows for a
// project's members is documented.
//
// The members counted are those the report writes pages for: the members
// whose scope the module pages list (ListedScopes, the same switches). Each
// is read with the report's own tag readers in the order a report run reads
// it, so a block counts exactly when the member's page shows it.
//
// The share is the documented items over the documentable items, in
// percent. Every counted member has one item, its summary; each of its
// parameters one, its description; a Function or Property Get one more, its
// <returns> block. A text that holds nothing but blanks and tabs counts as
// missing, since its place on the page stays empty.
#ifndef FOLIOSCOPE_CLI_DOC_COVERAGE_H_
#define FOLIOSCOPE_CLI_DOC_COVERAGE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "chm/help_topics.h"
#include "model/source_model.h"

namespace folioscope {

struct CoverageCounts {
  int64_t members = 0;  // members counted
  int64_t with_summary = 0;
  int64_t parameters = 0;    // parameters of the counted members
  int64_t described = 0;     // ... with a description
  int64_t returning = 0;     // counted Functions and Property Gets
  int64_t with_returns = 0;  // ... with a <returns> block
  int64_t incomplete = 0;    // members whose blocks could not be read to the end

  int64_t Documentable() const { return members + parameters + returning; }
  int64_t Documented() const { return with_summary + described + with_returns; }
  // The documented share in percent; 100 when nothing is documentable.
  double Share() const;
  void Add(const CoverageCounts& more);
};

// A member whose reading stopped early: a tag without its partner or a
// fault of a reader. The report run shows such a member's page with less
// than its comment holds.
struct ReadingNote {
  std::string member;
  std::string text;  // the reader's message or the fault, Windows-1252
};

struct ModuleCoverage {
  std::string name;
  std::string file;  // relative to the .vbp's folder, with "/" separators
  CoverageCounts counts;
  std::vector<ReadingNote> notes;
};

struct ProjectCoverage {
  std::string name;
  std::vector<ModuleCoverage> modules;  // in project order
  CoverageCounts total;
};

// Measures one module. The readers' messages and faults become the
// module's notes: nothing reaches the progress channel or the error
// reporter meanwhile. Parameter descriptions are written into the model, as
// a report run writes them. `file` stays empty.
ModuleCoverage MeasureModule(SourceModule& module, const ListedScopes& scopes);

// Measures every module of `project`, in project order.
ProjectCoverage MeasureProject(SourceProject& project, const ListedScopes& scopes);

// Indexes into `coverage.modules`, the lowest share first; equal shares in
// project order.
std::vector<size_t> WorstFirst(const ProjectCoverage& coverage);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_DOC_COVERAGE_H_
