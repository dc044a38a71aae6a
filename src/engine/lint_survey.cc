#include "engine/lint_survey.h"

#include <vector>

#include "doccomments/tag_block.h"
#include "engine/doc_lint.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

using doccomments::TagPair;

const TagPair* const kAllTags[] = {&doccomments::kSummaryTags, &doccomments::kRemarksTags,
                                   &doccomments::kReturnsTags, &doccomments::kParamTags,
                                   &doccomments::kCodeTags};
constexpr int kReturnsIndex = 2;
constexpr int kParamIndex = 3;

// A documentation line and the tags on it, one bit per entry of kAllTags.
struct DocLine {
  int32_t key;
  unsigned opens;
  unsigned closes;
  bool has_text;  // more than the prefix
};

std::vector<DocLine> DocLines(const SourceMember& m, const std::vector<bool>& skip) {
  std::vector<DocLine> lines;
  for (int32_t k = 1; k <= m.LineCount; ++k) {
    const std::string& line = MemberLine(m, k);
    if (!doccomments::IsDocumentationLine(line) ||
        (k < static_cast<int32_t>(skip.size()) && skip[k]))
      continue;
    DocLine d{k, 0, 0, !vb::Trim(vb::Trim(line).substr(doccomments::kDocPrefix.size())).empty()};
    for (unsigned t = 0; t < std::size(kAllTags); ++t) {
      if (vb::InStrLCase(line, kAllTags[t]->open) > 0) d.opens |= 1u << t;
      if (vb::InStrLCase(line, kAllTags[t]->close) > 0) d.closes |= 1u << t;
    }
    lines.push_back(d);
  }
  return lines;
}

std::string TagName(const TagPair& tags) { return "<" + vb::LCase(std::string(tags.word)) + ">"; }

std::string KindText(const SourceMember& m) {
  if (m.Kind.empty()) return "the declarations section";
  if (m.Kind == "OutEvent") return "an Event";
  if (m.Kind == "Property") return "a Property " + vb::Trim(m.PropertyForm);
  return "a " + m.Kind;
}

// Every block but a parameter's is read once: the ones behind it never.
void NoteSecondBlocks(const SourceMember& m, const std::vector<DocLine>& lines,
                      const SurveyFinding& add) {
  for (unsigned t = 0; t < std::size(kAllTags); ++t) {
    if (t == kParamIndex) continue;
    bool seen = false;
    for (const DocLine& d : lines) {
      if (!(d.opens & (1u << t))) continue;
      if (seen) {
        add(m, d.key, "duplicate-block",
            "another " + TagName(*kAllTags[t]) + " block: the report reads only the first");
      }
      seen = true;
    }
  }
}

void NoteIgnoredReturns(const SourceMember& m, const std::vector<DocLine>& lines,
                        const SurveyFinding& add) {
  if (HasReturnValue(m)) return;
  for (const DocLine& d : lines) {
    if (d.opens & (1u << kReturnsIndex)) {
      // The returns reader reads Property Let and Set (they are properties)
      // and skips everything else that is no Function.
      const bool shown = m.Kind == "Property";
      return add(
          m, d.key, "returns-ignored",
          "<returns> on " + KindText(m) + ", which returns nothing: " +
              (shown ? "the page describes a value there is none of" : "the report ignores it"));
    }
  }
}

// Lines with text outside every block, once per run of such lines.
void NoteStrayLines(const SourceMember& m, const std::vector<DocLine>& lines,
                    const SurveyFinding& add) {
  unsigned open = 0;
  int32_t last_stray = -1;
  for (const DocLine& d : lines) {
    const bool covered = d.opens != 0 || d.closes != 0 || open != 0;
    open = (open | d.opens) & ~d.closes;
    if (covered || !d.has_text) continue;
    if (d.key != last_stray + 1) {
      add(m, d.key, "stray-doc-line",
          "documentation line outside every block: the report shows it nowhere");
    }
    last_stray = d.key;
  }
}

void SurveyMember(const SourceMember& m, const std::vector<bool>& skip, const SurveyFinding& add) {
  const std::vector<DocLine> lines = DocLines(m, skip);
  if (lines.empty()) return;
  NoteSecondBlocks(m, lines, add);
  NoteIgnoredReturns(m, lines, add);
  NoteStrayLines(m, lines, add);
}

}  // namespace

const std::string& MemberLine(const SourceMember& member, int32_t key) {
  static const std::string kEmpty;
  // Keys 1 .. LineCount stand first, in order; later reads only append.
  if (key < 1 || key > member.LineCount || key > member.CodeLines.Count()) return kEmpty;
  return member.CodeLines.ItemAt(key - 1);
}

int32_t DeclarationKey(const SourceMember& member) {
  for (int32_t k = 1; k <= member.LineCount; ++k) {
    const std::string code = vb::Trim(MemberLine(member, k));
    if (!code.empty() && code.front() != '\'') return k;
  }
  return 1;
}

void SurveyModule(const SourceModule& module, const ListedScopes& scopes,
                  const SurveyFinding& add) {
  const SourceMember& header = module.Members.Item(1);
  std::vector<bool> event_lines(static_cast<size_t>(header.LineCount) + 1, false);
  for (const auto& m : module.Members) {
    if (m->Kind != "OutEvent") continue;
    for (int32_t k = m->FirstLine; k < m->FirstLine + m->LineCount && k <= header.LineCount; ++k)
      event_lines[static_cast<size_t>(k)] = true;
  }
  SurveyMember(header, event_lines, add);
  for (const auto& m : module.Members) {
    if (CountsForReport(*m, scopes)) SurveyMember(*m, {}, add);
  }
}

}  // namespace folioscope
