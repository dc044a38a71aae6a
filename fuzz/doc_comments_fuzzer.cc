// The doc-comment readers on a member whose code lines come from the input,
// with the parameters of the declaration among them (a fixed list when
// there is none), in the order the member page calls them: CParam, CSummary, CCode
// (pre-formatted), CRemarks, CReturns; then CCode joined on a fresh copy.
// The first input byte chooses the member kind and whether the readers run
// in diagnostic mode; the rest are the lines.
#include <memory>
#include <string>

#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "fuzz_support.h"
#include "model/vb6_declaration.h"

namespace folioscope::fuzzing {
namespace {

const char* const kKinds[] = {"Function", "Sub", "Property", "OutEvent"};
const char* const kParameters[] = {"Wert", "Name", "x", "Text"};

void AddParameter(SourceMember& member, const std::string& name) {
  auto parameter = std::make_unique<SourceParameter>();
  parameter->Name = name;
  const bool keyed = !name.empty() && !member.Parameters.Exists(name);
  member.Parameters.Add(std::move(parameter), keyed ? name : "");
}

std::unique_ptr<SourceMember> MakeMember(uint8_t choice, const std::string& text) {
  auto member = std::make_unique<SourceMember>();
  member->Kind = kKinds[choice & 3];
  member->Name = (choice & 4) ? "Header" : "Berechne";
  int32_t count = 0;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    size_t cut = end;
    if (cut > start && text[cut - 1] == '\r') --cut;
    member->CodeLines.Add(++count, text.substr(start, cut - start));
    start = end + 1;
  }
  member->LineCount = count;
  // The parameters of the first declaration among the lines, as the
  // reader would give them; without one, a fixed list.
  for (int32_t k = 1; k <= count; ++k) {
    const ParsedStatement parsed = ParseStatement(member->CodeLines.Item(k));
    if (parsed.kind != StatementKind::kProcedure && parsed.kind != StatementKind::kEvent) continue;
    for (const ParsedParameter& p : parsed.parameters) AddParameter(*member, p.name);
    return member;
  }
  for (const char* name : kParameters) AddParameter(*member, name);
  return member;
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const uint8_t choice = size > 0 ? data[0] : 0;
  const std::string text = size > 0 ? AsText(data + 1, size - 1) : std::string();
  environment.platform().in_ide = (choice & 8) != 0;

  environment.BeginInput();
  {
    std::unique_ptr<SourceMember> member = MakeMember(choice, text);
    CSummary summary;
    CRemarks remarks;
    CParam params;
    CReturns returns;
    CCode code;
    params.GetParam(*member);
    summary.GetSummary(*member);
    code.SetGetAsPraeformated(true);
    code.GetCode(*member);
    remarks.GetRemarks(*member);
    returns.GetReturns(*member);
    Touch(summary.SumaryContent());
    Touch(remarks.RemarksContent());
    Touch(returns.ReturnsContent());
    Touch(params.ParamContent());
    Touch(code.CodeContent());
    for (int32_t p = 1; p <= member->Parameters.Count(); ++p) {
      Touch(member->Parameters.Item(p).Description);
    }
  }
  {
    std::unique_ptr<SourceMember> member = MakeMember(choice, text);
    CCode code;
    code.GetCode(*member);
    Touch(code.CodeContent());
  }
  environment.EndInput();
  return 0;
}
