#include "cli/doc_coverage.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>

#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "engine/fs_communicator.h"
#include "infra/error_handler.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

// Keeps the missing-tag messages the readers send (icon 3); progress and
// diagnostics are not about the member.
class MessageCollector : public CFSCommunicatorEvents {
 public:
  void Message(std::string& Desc, int32_t& IconIndex) override {
    if (IconIndex == kIconFailure) texts.push_back(Desc);
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}
  std::vector<std::string> texts;
};

std::shared_ptr<CFSCommunicator> ChannelTo(CFSCommunicatorEvents* listener) {
  auto channel = std::make_shared<CFSCommunicator>();
  channel->AddListener(listener);
  return channel;
}

// For its lifetime the readers talk to a collector instead of the host:
// their messages go to its own channel and their faults to its list.
class QuietReading {
 public:
  QuietReading() : channel_(ChannelTo(&collector_)), scoped_channel_(channel_) {
    previous_ = CErrorHandler::Instance().DivertFaults([this](const vb::RuntimeError& error,
                                                              const std::string& procedure,
                                                              const std::string& module) {
      collector_.texts.push_back(error.description() + " (" + vb::CStr(error.number()) + ", " +
                                 module + "." + procedure + ")");
    });
  }
  ~QuietReading() {
    CErrorHandler::Instance().DivertFaults(std::move(previous_));
    channel_->RemoveListener(&collector_);
  }
  QuietReading(const QuietReading&) = delete;
  QuietReading& operator=(const QuietReading&) = delete;

  // What was collected since the last call.
  std::vector<std::string> Take() { return std::exchange(collector_.texts, {}); }

 private:
  MessageCollector collector_;
  std::shared_ptr<CFSCommunicator> channel_;
  ScopedProgressChannel scoped_channel_;
  CErrorHandler::FaultDiversion previous_;
};

// True when the page would show something: not only blanks and tabs.
bool ShowsText(const std::string& text) {
  return text.find_first_not_of(" \t") != std::string::npos;
}

bool ExpectsReturns(const SourceMember& member) {
  return member.Kind == "Function" || (member.Kind == "Property" && member.PropertyForm == "Get ");
}

// Reads one listed member as a report run does: the module page's member
// line reads its summary, then its own page reads parameters, summary and
// returns. The first read may add key 0 to the member's lines, which
// widens every later scan, so the order matters.
CoverageCounts ReadMember(SourceMember& member) {
  CSummary line_summary;
  line_summary.GetSummary(member);
  CParam params;
  params.GetParam(member);
  CSummary summary;
  summary.GetSummary(member);
  CReturns returns;
  returns.GetReturns(member);

  CoverageCounts c;
  c.members = 1;
  c.with_summary = ShowsText(summary.SumaryContent()) ? 1 : 0;
  for (const auto& p : member.Parameters) {
    ++c.parameters;
    if (ShowsText(p->Description)) ++c.described;
  }
  if (ExpectsReturns(member)) {
    c.returning = 1;
    c.with_returns = ShowsText(returns.ReturnsContent()) ? 1 : 0;
  }
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

ModuleCoverage MeasureModule(SourceModule& module, const ListedScopes& scopes) {
  ModuleCoverage result;
  result.name = module.Name;
  QuietReading quiet;
  for (const auto& member : module.Members) {
    if (!IsListed(member->Scope, scopes)) continue;
    CoverageCounts counts = ReadMember(*member);
    std::vector<std::string> texts = quiet.Take();
    if (!texts.empty()) counts.incomplete = 1;
    // The summary is read twice (member line and page): one note each.
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    for (std::string& text : texts) result.notes.push_back({member->Name, std::move(text)});
    result.counts.Add(counts);
  }
  return result;
}

ProjectCoverage MeasureProject(SourceProject& project, const ListedScopes& scopes) {
  ProjectCoverage result;
  result.name = project.Name;
  for (int32_t i = 1; i <= project.Modules.Count(); ++i) {
    ModuleCoverage module = MeasureModule(project.Modules.Item(i), scopes);
    module.file = vb::Replace(project.Components.Item(i).RelativePath, "\\", "/");
    result.total.Add(module.counts);
    result.modules.push_back(std::move(module));
  }
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
