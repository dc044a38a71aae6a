// docs/lint.md, the lint's rule reference, read as data: the host takes each
// rule's help from it for SARIF, and the tests take its examples as their
// fixture. One section per rule:
//
//   ### rule-id
//   Description paragraphs (the first sentence is the short description).
//   Bad:      a ```vb block, then "Lint says:" and a ``` block of findings
//   Good:     a ```vb block
#ifndef FOLIOSCOPE_CLI_LINT_DOC_H_
#define FOLIOSCOPE_CLI_LINT_DOC_H_

#include <string>
#include <string_view>
#include <vector>

namespace folioscope {

struct LintDocEntry {
  std::string id;
  std::string description;  // the paragraphs before "Bad:", as written
  std::string bad;          // module text, lines ended by '\n'
  std::string expected;     // the findings lint prints for `bad`
  std::string good;
  // The first sentence of the description.
  std::string ShortDescription() const;
};

// The sections of a rule reference in document order.
std::vector<LintDocEntry> ParseLintDoc(std::string_view markdown);

// docs/lint.md as built into the program.
std::string_view BuiltInLintDoc();

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_LINT_DOC_H_
