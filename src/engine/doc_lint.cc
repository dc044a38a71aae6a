#include "engine/doc_lint.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "doccomments/code_reader.h"
#include "doccomments/doc_findings.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_block.h"
#include "doccomments/tag_readers.h"
#include "engine/lint_survey.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/vb_runtime.h"

namespace folioscope {

using doccomments::DocFinding;
using doccomments::DocRule;
using doccomments::TagPair;

namespace {

const std::vector<LintRule> kRules = {
    {"unknown-param", LintSeverity::kError},         {"unclosed-tag", LintSeverity::kError},
    {"unopened-tag", LintSeverity::kError},          {"reader-fault", LintSeverity::kError},
    {"unquoted-param-name", LintSeverity::kWarning}, {"param-tag-unended", LintSeverity::kWarning},
    {"duplicate-param", LintSeverity::kWarning},     {"duplicate-block", LintSeverity::kWarning},
    {"code-on-tag-line", LintSeverity::kWarning},    {"code-one-line", LintSeverity::kWarning},
    {"raw-markup", LintSeverity::kWarning},          {"returns-ignored", LintSeverity::kWarning},
    {"stray-doc-line", LintSeverity::kWarning},      {"missing-summary", LintSeverity::kNote},
    {"missing-param", LintSeverity::kNote},          {"missing-returns", LintSeverity::kNote},
};

// The classes whose trapped faults are a member's doc-comment faults.
bool IsReaderClass(const char* module) {
  for (const char* name : {"CSummary", "CRemarks", "CReturns", "CParam", "CCode", "CCodeFormat"}) {
    if (std::strcmp(module, name) == 0) return true;
  }
  return false;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

// "did you mean 'Value'?" when a parameter matches `name` but for case.
std::string DidYouMean(const SourceMember& member, const std::string& name) {
  const std::string wanted = vb::LCase(name);
  for (const auto& p : member.Parameters) {
    if (vb::LCase(p->Name) == wanted) return "; did you mean " + Quoted(p->Name) + "?";
  }
  return "";
}

LintSeverity SeverityOf(std::string_view rule) {
  const auto found =
      std::find_if(kRules.begin(), kRules.end(), [&](const LintRule& r) { return r.id == rule; });
  return found->severity;
}

// A finding before it knows its file: member, line key, rule, message.
struct PendingFinding {
  const SourceMember* member;
  int32_t key;
  std::string_view rule;
  std::string message;
};

}  // namespace

std::string_view SeverityName(LintSeverity severity) {
  switch (severity) {
    case LintSeverity::kError:
      return "error";
    case LintSeverity::kWarning:
      return "warning";
    case LintSeverity::kNote:
      break;
  }
  return "note";
}

const std::vector<LintRule>& LintRules() { return kRules; }

std::string LintFinding::ToText() const {
  return file + "(" + vb::CStr(line) + "): " + std::string(SeverityName(severity)) + ": " +
         message + " [" + rule + "]";
}

// Turns what the readers tell into pending findings: a findings sink for the
// readers and a fault observer for their traps.
class LintRecorder::Collector : public doccomments::DocFindingSink, public FaultObserver {
 public:
  Collector(SourceProject& project, bool warnings, bool keep_faults)
      : project_(project), warnings_(warnings), keep_faults_(keep_faults) {
    previous_observer_ = SetFaultObserver(this);
  }
  ~Collector() override { SetFaultObserver(previous_observer_); }

  void StartReading(const SourceMember& member, const TagPair& tags) override {
    member_ = &member;
    tags_ = tags;
    AtTagLine(0);
  }
  void AtTagLine(int32_t key) override {
    key_ = key;
    explained_ = false;
  }
  bool WantsWarnings() const override { return warnings_; }
  void Add(DocFinding finding) override;
  bool OnFault(const vb::RuntimeError& error, const char* module, const char* procedure) override;

  void AddPending(const SourceMember& member, int32_t key, std::string_view rule,
                  std::string message) {
    if (SeverityOf(rule) == LintSeverity::kError) ++errors_;
    pending_.push_back({&member, key, rule, std::move(message)});
  }
  // The errors found so far.
  int64_t ErrorCount() const { return errors_; }
  std::vector<LintFinding> Resolve() const;

 private:
  static std::string TagName(const TagPair& tags) {
    return "<" + vb::LCase(std::string(tags.word)) + ">";
  }
  int32_t RawMarkupKey(int32_t from) const;

  SourceProject& project_;
  const bool warnings_;
  const bool keep_faults_;
  FaultObserver* previous_observer_ = nullptr;
  doccomments::ScopedFindingSink sink_scope_{this};
  const SourceMember* member_ = nullptr;
  TagPair tags_{};
  int32_t key_ = 0;
  bool explained_ = false;  // the fault to come is a finding already
  std::vector<PendingFinding> pending_;
  int64_t errors_ = 0;
};

void LintRecorder::Collector::Add(DocFinding f) {
  if (member_ == nullptr) return;
  const SourceMember& m = *member_;
  const std::string tag = TagName(f.tags);
  const std::string close = "</" + tag.substr(1);
  switch (f.rule) {
    case DocRule::kUnclosedTag:
      return AddPending(m, f.key, "unclosed-tag", tag + " is never closed by " + close);
    case DocRule::kUnopenedTag:
      return AddPending(m, f.key, "unopened-tag", close + " closes no " + tag);
    case DocRule::kUnknownParameter:
      explained_ = true;
      return AddPending(m, f.key, "unknown-param",
                        "<param name=\"" + f.detail + "\"> names no parameter of " + m.Name +
                            DidYouMean(m, f.detail));
    case DocRule::kUnquotedName:
      return AddPending(
          m, f.key, "unquoted-param-name",
          "parameter name not in quotation marks: the report reads " + Quoted(f.detail));
    case DocRule::kParamTagUnended:
      return AddPending(m, f.key, "param-tag-unended",
                        f.detail.empty() ? "<param name has no '>': its text is dropped"
                                         : "<param name has no '>': its text goes to parameter " +
                                               Quoted(f.detail));
    case DocRule::kParameterTwice:
      return AddPending(m, f.key, "duplicate-param",
                        "parameter " + Quoted(f.detail) +
                            " is documented twice: the page shows the last description");
    case DocRule::kCodeOnTagLine:
      return AddPending(
          m, f.key, "code-on-tag-line",
          "text on a <code> tag line is left out of the example: " + Quoted(f.detail));
    case DocRule::kCodeOneLine:
      return AddPending(m, f.key, "code-one-line",
                        "<code> and </code> on one line: the example shows none of it");
    case DocRule::kRawMarkup:
      return AddPending(m, RawMarkupKey(f.key), "raw-markup",
                        Quoted(f.detail.substr(0, 1)) + " in " + tag +
                            " text starts no HTML element or entity and breaks the page; write " +
                            (f.detail[0] == '<' ? "&lt;" : "&amp;"));
  }
}

bool LintRecorder::Collector::OnFault(const vb::RuntimeError& error, const char* module,
                                      const char* procedure) {
  (void)procedure;
  if (member_ == nullptr || !IsReaderClass(module)) return false;
  if (!explained_) {
    AddPending(*member_, key_, "reader-fault",
               "the report's " + TagName(tags_) + " reader fails here: " + error.description() +
                   " (error " + vb::CStr(error.number()) + ")");
  }
  explained_ = true;
  return !keep_faults_;
}

// The block's line that holds the markup: the first from `from` on whose
// text has some.
int32_t LintRecorder::Collector::RawMarkupKey(int32_t from) const {
  for (int32_t k = from; k >= 1 && k <= member_->LineCount; ++k) {
    if (doccomments::FindRawMarkup(MemberLine(*member_, k)) != std::string_view::npos) return k;
  }
  return from;
}

std::vector<LintFinding> LintRecorder::Collector::Resolve() const {
  if (pending_.empty()) return {};
  struct Place {
    const SourceModule* module;
    const SourceComponent* component;
  };
  std::unordered_map<const SourceMember*, Place> places;
  for (int32_t i = 1; i <= project_.Modules.Count(); ++i) {
    const SourceModule& module = project_.Modules.Item(i);
    const SourceComponent* component = &project_.Components.Item(module.Name);
    for (const auto& m : module.Members) places[m.get()] = {&module, component};
  }
  std::vector<LintFinding> findings;
  for (const PendingFinding& p : pending_) {
    auto place = places.find(p.member);
    if (place == places.end()) continue;
    const int32_t key = p.key >= 1 ? p.key : DeclarationKey(*p.member);
    LintFinding f;
    f.file = place->second.component->FilePath;
    f.relative_path = vb::Replace(place->second.component->RelativePath, "\\", "/");
    f.line = place->second.module->FileLines.FileLine(p.member->FirstLine + key - 1);
    f.severity = SeverityOf(p.rule);
    f.rule = std::string(p.rule);
    f.message = p.message;
    f.module = place->second.module->Name;
    f.member = p.member->Name;
    findings.push_back(std::move(f));
  }
  auto order = [](const LintFinding& f) { return std::tie(f.file, f.line); };
  std::stable_sort(findings.begin(), findings.end(),
                   [&](const LintFinding& a, const LintFinding& b) { return order(a) < order(b); });
  // The readers run more than once per member (module page and member
  // page), so the same finding can come twice.
  std::set<std::tuple<std::string, int32_t, std::string, std::string>> seen;
  std::vector<LintFinding> once;
  for (LintFinding& f : findings) {
    if (seen.insert({f.file, f.line, f.rule, f.message}).second) once.push_back(std::move(f));
  }
  return once;
}

bool CountsForReport(const SourceMember& member, const ListedScopes& scopes) {
  return IsListed(member.Scope, scopes);
}

bool HasReturnValue(const SourceMember& member) {
  return member.Kind == "Function" || (member.Kind == "Property" && member.PropertyForm == "Get ");
}

std::vector<const SourceParameter*> DescribedParameters(const SourceMember& member) {
  std::vector<const SourceParameter*> described;
  for (const auto& p : member.Parameters) {
    if (!p->Description.empty()) described.push_back(p.get());
  }
  return described;
}

namespace {

// The readers of one member page, in the page's order.
MemberPage ReadMemberPage(SourceMember& member) {
  CSummary summary;
  CRemarks remarks;
  CParam params;
  CReturns returns;
  CCode code;
  params.GetParam(member);
  summary.GetSummary(member);
  code.SetGetAsPraeformated(true);
  code.GetCode(member);
  remarks.GetRemarks(member);
  returns.GetReturns(member);
  return {summary.SumaryContent(), returns.ReturnsContent(), true};
}

void NoteMissing(LintRecorder::Collector& c, const SourceMember& m, const MemberPage& texts) {
  if (texts.summary.empty()) c.AddPending(m, 0, "missing-summary", m.Name + " has no <summary>");
  for (const auto& p : m.Parameters) {
    if (p->Description.empty()) {
      c.AddPending(m, 0, "missing-param",
                   "parameter " + Quoted(p->Name) + " of " + m.Name + " has no description");
    }
  }
  if (HasReturnValue(m) && texts.returns.empty()) {
    c.AddPending(m, 0, "missing-returns", m.Name + " has no <returns>");
  }
}

// One module as a whole-project report reads it: the module summary, then
// per listed member its line on the module page and its own page, then the
// module remarks.
void LintModule(SourceModule& module, const LintOptions& options, LintRecorder::Collector& c) {
  SourceMember& header = module.Members.Item(1);
  CSummary().GetSummary(header);
  const int32_t count = module.Members.Count();
  for (int32_t i = 1; i <= count; ++i) {
    SourceMember& member = module.Members.Item(i);
    if (!CountsForReport(member, options.scopes)) continue;
    const int64_t errors_before = c.ErrorCount();
    CSummary().GetSummary(member);
    MemberPage page = ReadMemberPage(member);
    page.read_to_end = c.ErrorCount() == errors_before;
    if (options.missing) NoteMissing(c, member, page);
    if (options.each_member) options.each_member(module, member, page);
  }
  CRemarks().GetRemarks(header);
  if (!options.warnings) return;
  SurveyModule(module, options.scopes,
               [&](const SourceMember& m, int32_t key, std::string_view rule, std::string message) {
                 c.AddPending(m, key, rule, std::move(message));
               });
}

}  // namespace

std::vector<LintFinding> LintProject(SourceProject& project, const LintOptions& options) {
  // The readers' own messages name no line; the findings replace them.
  const ScopedProgressChannel quiet(nullptr);
  LintRecorder::Collector collector(project, options.warnings, /*keep_faults=*/false);
  for (int32_t i = 1; i <= project.Modules.Count(); ++i) {
    LintModule(project.Modules.Item(i), options, collector);
  }
  return collector.Resolve();
}

LintRecorder::LintRecorder(SourceProject& project)
    : collector_(std::make_unique<Collector>(project, /*warnings=*/false, /*keep_faults=*/true)) {}

LintRecorder::~LintRecorder() = default;

std::vector<LintFinding> LintRecorder::Findings() const { return collector_->Resolve(); }

}  // namespace folioscope
