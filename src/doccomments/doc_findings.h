// A side channel from the doc-comment readers to a lint. While a sink is
// installed on the calling thread, the readers tell it, as they read, which
// member and tag line they work on and what goes wrong there: the same
// decisions that make them send a failure message or stop, and the places
// where a page silently shows something else than the comment says.
//
// With no sink installed the readers do exactly what they do without this
// header: one null test per reader call, nothing else.
#ifndef FOLIOSCOPE_DOCCOMMENTS_DOC_FINDINGS_H_
#define FOLIOSCOPE_DOCCOMMENTS_DOC_FINDINGS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "doccomments/tag_block.h"
#include "model/source_model.h"

namespace folioscope {
namespace doccomments {

enum class DocRule : uint8_t {
  // The reader sends a failure message (icon 3) or faults.
  kUnclosedTag,       // opening tag, no closing tag; detail: none
  kUnopenedTag,       // closing tag, no opening tag
  kUnknownParameter,  // detail: the name read
  // What a page shows differently from what the comment seems to say.
  kUnquotedName,     // detail: the name read
  kParamTagUnended,  // "<param name" without ">"; detail: the name the text goes to
  kParameterTwice,   // detail: the name
  kCodeOnTagLine,    // detail: the text dropped
  kCodeOneLine,      // "<code>" and "</code>" on one line
  kRawMarkup,        // detail: the character and what follows it
};

struct DocFinding {
  int32_t key = 0;  // the member's code-line key of the tag line
  DocRule rule = DocRule::kUnclosedTag;
  TagPair tags;        // the block's tags
  std::string detail;  // see DocRule
};

class DocFindingSink {
 public:
  virtual ~DocFindingSink() = default;
  // A reader starts on `member`; what follows is about it until the next call.
  virtual void StartReading(const SourceMember& member, const TagPair& tags) = 0;
  // The reader works on the block whose tag stands on line `key`: a fault
  // trapped from here on belongs to that line.
  virtual void AtTagLine(int32_t key) = 0;
  virtual void Add(DocFinding finding) = 0;
  // False when only the failures are wanted (the warnings cost scans).
  virtual bool WantsWarnings() const = 0;
};

// The calling thread's sink, null when none is installed.
DocFindingSink* FindingSink();

// Installs a sink on the calling thread for its lifetime (not owned).
class ScopedFindingSink {
 public:
  explicit ScopedFindingSink(DocFindingSink* sink);
  ~ScopedFindingSink();
  ScopedFindingSink(const ScopedFindingSink&) = delete;
  ScopedFindingSink& operator=(const ScopedFindingSink&) = delete;

 private:
  DocFindingSink* previous_;
};

// The calls the readers make. Each does nothing when no sink is installed.
//
// A reader starts on `member`.
void NoteReaderStart(const SourceMember& member, const TagPair& tags);
// Its scan found the block b .. e of `tags` (0 for a tag not found): the
// line it works on from here, and a missing tag.
void NoteBlockScan(const TagPair& tags, int32_t b, int32_t e);
// A finding of the reader's own (warnings only when the sink wants them).
void NoteFinding(DocFinding finding);
// True when a sink wants warnings, so the reader may spend work on them.
bool WarningsWanted();
// The block's text as the page takes it: each "<" and "&" that starts no
// HTML element, comment or entity is a finding on line `b`.
void NoteBlockText(const TagPair& tags, int32_t b, std::string_view text);

// The first "<" or "&" of `text` that a browser would not take as the
// element, comment or entity it looks like; npos when none.
size_t FindRawMarkup(std::string_view text);

}  // namespace doccomments
}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_DOC_FINDINGS_H_
