// The documentation lint: the doc-comment faults of a project with file and
// line, found by the readers themselves. LintProject runs the readers over
// every module in the order a whole-project report runs them, with a
// findings sink (doccomments/doc_findings.h) and a fault observer installed,
// so a member has an error here exactly when a report run sends a failure
// message or an error report for it. LintRecorder lets a report run collect
// the same failures as it goes.
#ifndef FOLIOSCOPE_ENGINE_DOC_LINT_H_
#define FOLIOSCOPE_ENGINE_DOC_LINT_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "chm/help_topics.h"
#include "model/source_model.h"

namespace folioscope {

// Ordered: a finding fails a run when its severity is at or above the
// threshold.
enum class LintSeverity { kNote, kWarning, kError };

std::string_view SeverityName(LintSeverity severity);

struct LintRule {
  std::string_view id;
  LintSeverity severity;
};

// Every rule, errors first.
const std::vector<LintRule>& LintRules();

struct LintFinding {
  std::string file;           // the module file as the project reader opened it
  std::string relative_path;  // the module file as the .vbp names it, with '/'
  int32_t line = 0;           // file line as an editor counts it
  LintSeverity severity = LintSeverity::kError;
  std::string rule;
  std::string message;  // Windows-1252
  std::string module;
  std::string member;

  // "file(line): severity: message [rule]".
  std::string ToText() const;
};

// What the page of a counted member shows, as the lint's reading found it.
struct MemberPage {
  std::string summary;  // the summary block's text
  std::string returns;  // the returns block's text
  bool read_to_end;     // no error was found reading the member
};

using MemberPageVisitor = std::function<void(const SourceModule& module, const SourceMember& member,
                                             const MemberPage& page)>;

struct LintOptions {
  ListedScopes scopes;   // the members that count, as the module pages list them
  bool missing = false;  // notes on what is not documented
  bool warnings = true;  // false: only the errors, which cost no scans of their own
  MemberPageVisitor each_member = nullptr;  // called after each counted member is read
};

// Reads every module of `project` as SaveReport(0) would and returns the
// findings sorted by file and line, each once. The model changes as a report
// changes it (parameter descriptions, key 0). Writes nothing: faults go to
// the findings, not to CErrorHandler, and the readers' messages go nowhere.
std::vector<LintFinding> LintProject(SourceProject& project, const LintOptions& options);

// Collects the readers' failures on the calling thread for its lifetime,
// while the faults still reach CErrorHandler: a report run tells where it
// went wrong.
class LintRecorder {
 public:
  explicit LintRecorder(SourceProject& project);
  ~LintRecorder();
  LintRecorder(const LintRecorder&) = delete;
  LintRecorder& operator=(const LintRecorder&) = delete;

  // The failures so far, sorted by file and line, each once.
  std::vector<LintFinding> Findings() const;

  class Collector;  // the sink and fault observer, also LintProject's

 private:
  std::unique_ptr<Collector> collector_;
};

// Pieces a documentation measure shares with the lint.
//
// True when the module page lists `member` (never the declarations section).
bool CountsForReport(const SourceMember& member, const ListedScopes& scopes);
// True for the members whose page shows a returns block: Functions and
// Property Gets.
bool HasReturnValue(const SourceMember& member);
// The parameters of `member` that CParam gave a description.
std::vector<const SourceParameter*> DescribedParameters(const SourceMember& member);

}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_DOC_LINT_H_
