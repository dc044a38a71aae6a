#include "cli/doc_coverage.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

// True when the page would show something: not only blanks and tabs.
bool ShowsText(const std::string& text) {
  return text.find_first_not_of(" \t") != std::string::npos;
}

CoverageCounts CountMember(const SourceMember& member, const MemberPage& page) {
  CoverageCounts c;
  c.members = 1;
  c.with_summary = ShowsText(page.summary) ? 1 : 0;
  c.parameters = member.Parameters.Count();
  for (const SourceParameter* p : DescribedParameters(member)) {
    if (ShowsText(p->Description)) ++c.described;
  }
  if (HasReturnValue(member)) {
    c.returning = 1;
    c.with_returns = ShowsText(page.returns) ? 1 : 0;
  }
  c.incomplete = page.read_to_end ? 0 : 1;
  return c;
}

}  // namespace

double CoverageCounts::Share() const {
  if (Documentable() == 0) return 100.0;
  return 100.0 * static_cast<double>(Documented()) / static_cast<double>(Documentable());
}

void CoverageCounts::Add(const CoverageCounts& more) {
  members += more.members;
  with_summary += more.with_summary;
  parameters += more.parameters;
  described += more.described;
  returning += more.returning;
  with_returns += more.with_returns;
  incomplete += more.incomplete;
}

ProjectCoverage MeasureProject(SourceProject& project, const ListedScopes& scopes) {
  ProjectCoverage result;
  result.name = project.Name;
  std::unordered_map<std::string, size_t> by_name;
  for (int32_t i = 1; i <= project.Modules.Count(); ++i) {
    ModuleCoverage module;
    module.name = project.Modules.Item(i).Name;
    module.file = vb::Replace(project.Components.Item(i).RelativePath, "\\", "/");
    by_name[module.name] = result.modules.size();
    result.modules.push_back(std::move(module));
  }
  // Only the errors: a member whose reading fails shows less than its
  // comment holds, which is what the figures must not hide.
  LintOptions options;
  options.scopes = scopes;
  options.warnings = false;
  options.each_member = [&](const SourceModule& module, const SourceMember& member,
                            const MemberPage& page) {
    result.modules[by_name.at(module.Name)].counts.Add(CountMember(member, page));
  };
  for (LintFinding& f : LintProject(project, options)) {
    result.modules[by_name.at(f.module)].findings.push_back(std::move(f));
  }
  for (const ModuleCoverage& m : result.modules) result.total.Add(m.counts);
  return result;
}

std::vector<size_t> WorstFirst(const ProjectCoverage& coverage) {
  std::vector<size_t> order(coverage.modules.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
    return coverage.modules[a].counts.Share() < coverage.modules[b].counts.Share();
  });
  return order;
}

}  // namespace folioscope
