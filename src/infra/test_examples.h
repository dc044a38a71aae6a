// For tests: cases kept as data in tests/examples/*.txt, one example after
// the other, each an input and what the code must make of it:
//
//   ## <title>              starts an example; prose before the first one
//   <name>: <value>         an attribute of the example
//   --- <name>              starts a section, whose lines run up to the next
//                           "---" or "##" line, byte for byte
//
// The files are UTF-8 and read as Windows-1252 text, the system's own
// encoding; "␣" stands for a blank (for the blanks at a line's end that an
// editor would drop) and "→" for a tab. Empty lines at the end of a section
// only separate it from what follows. A runner reports each failing example
// by file:line.
#ifndef FOLIOSCOPE_INFRA_TEST_EXAMPLES_H_
#define FOLIOSCOPE_INFRA_TEST_EXAMPLES_H_

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "infra/text_encoding.h"

namespace folioscope {

struct Example {
  std::string where;  // file:line of the "##" line
  std::string title;
  std::map<std::string, std::string> attributes;
  std::map<std::string, std::vector<std::string>> sections;

  bool Has(const std::string& name) const { return sections.count(name) > 0; }
  std::string Attribute(const std::string& name, const std::string& fallback = "") const {
    auto it = attributes.find(name);
    return it == attributes.end() ? fallback : it->second;
  }
  // The lines of a section; none when the example has no such section.
  std::vector<std::string> Lines(const std::string& name) const {
    auto it = sections.find(name);
    return it == sections.end() ? std::vector<std::string>{} : it->second;
  }
  // The lines of a section joined with `separator`.
  std::string Text(const std::string& name, const std::string& separator = "\n") const {
    std::string text;
    for (const std::string& line : Lines(name)) text += (text.empty() ? "" : separator) + line;
    return text;
  }
};

inline std::string ExampleText(std::string line) {
  for (const auto& [mark, byte] : {std::pair<std::string, char>{"\xE2\x90\xA3", ' '},
                                   std::pair<std::string, char>{"\xE2\x86\x92", '\t'}}) {
    for (size_t p; (p = line.find(mark)) != std::string::npos;)
      line.replace(p, mark.size(), 1, byte);
  }
  return Utf8ToCp1252(line);
}

// Reads tests/examples/<name>; a file without examples fails the test.
inline std::vector<Example> ReadExamples(const std::string& name) {
  const std::string path = std::string(FOLIOSCOPE_SOURCE_DIR) + "/tests/examples/" + name;
  std::ifstream in(path, std::ios::binary);
  std::vector<Example> examples;
  std::vector<std::string>* section = nullptr;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind("## ", 0) == 0) {
      examples.push_back({name + ":" + std::to_string(number), line.substr(3), {}, {}});
      section = nullptr;
    } else if (examples.empty()) {
      continue;
    } else if (line.rfind("--- ", 0) == 0) {
      section = &examples.back().sections[line.substr(4)];
    } else if (section != nullptr) {
      section->push_back(ExampleText(line));
    } else if (size_t colon = line.find(": "); colon != std::string::npos) {
      examples.back().attributes[line.substr(0, colon)] = ExampleText(line.substr(colon + 2));
    }
  }
  for (Example& example : examples) {
    for (auto& [name, lines] : example.sections) {
      while (!lines.empty() && lines.back().empty()) lines.pop_back();
    }
  }
  EXPECT_FALSE(examples.empty()) << "no examples in " << path;
  return examples;
}

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_TEST_EXAMPLES_H_
