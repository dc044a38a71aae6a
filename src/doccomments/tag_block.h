// The block scan shared by the doc-comment readers (CSummary, CRemarks,
// CReturns, CParam, CCode): finding a tag's line among a member's '/// lines,
// the text behind an opening tag and in front of a closing tag, and joining
// a block's lines with blanks.
//
// All tag arguments are the lower-case tag texts ("<summary>", "</param>");
// lines are searched in lower case, their text keeps its case.
#ifndef FOLIOSCOPE_DOCCOMMENTS_TAG_BLOCK_H_
#define FOLIOSCOPE_DOCCOMMENTS_TAG_BLOCK_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "infra/dictionary.h"

namespace folioscope {
namespace doccomments {

// The comment prefix of a documentation line.
inline constexpr std::string_view kDocPrefix = "'///";

// The tags of one block kind and the word naming it in messages
// ("Summary" gives "Summary-Tag").
struct TagPair {
  std::string_view open;
  std::string_view close;
  std::string_view word;
};

// The five blocks the readers read.
inline constexpr TagPair kSummaryTags{"<summary>", "</summary>", "Summary"};
inline constexpr TagPair kRemarksTags{"<remarks>", "</remarks>", "Remarks"};
inline constexpr TagPair kReturnsTags{"<returns>", "</returns>", "Returns"};
inline constexpr TagPair kParamTags{"<param name", "</param>", "Param"};
inline constexpr TagPair kCodeTags{"<code>", "</code>", "Code"};

// True when the blank-trimmed line begins with "'///".
bool IsDocumentationLine(std::string_view line);

// Key of the first documentation line among keys 0 .. Count-1 (Count read
// once, before the loop) whose lower-cased text contains `tag`; 0 when none.
// Each key is read through Dictionary::Item, so reading the absent key 0
// adds it and widens every later scan of `lines` by one.
// A scan may start at `first_key` instead of 0 when the caller knows that
// no line below it can match (repeated scans of lines that are only ever
// emptied); its result is then the same as a scan from 0 after the first.
int32_t FindTagLine(vb::Dictionary& lines, std::string_view tag, int32_t first_key = 0);

// The trimmed text behind `open_tag` on `line`, its case unchanged.
std::string TextBehindTag(std::string_view line, std::string_view open_tag);

// The text in front of `close_tag` on `line`, less its first four characters
// (the comment prefix, not checked), trimmed. Raises error 5 when fewer than
// four characters stand in front of the tag.
std::string TextBeforeTag(std::string_view line, std::string_view close_tag);

// The text behind the ">" that closes an opening tag such as
// "<param name="x">": `rest` is the trimmed text behind `open_tag`; without a
// ">" in it the result is empty and `*inner` is not touched. Otherwise
// `*inner` gets the blank-free tag remainder without its first two and last
// two characters (the quoted name, taken by position) and the result is the
// trimmed text behind the ">". A lint passes `tag_end` to see how the tag was
// written: it gets the blank-free remainder up to and including the ">"
// (such as `="Value">`), empty when no ">" follows.
std::string TextBehindTagEnd(std::string_view line, std::string_view open_tag, std::string* inner,
                             std::string* tag_end = nullptr);

// Reads line `key` of a block. With `consume` set, the line is emptied in
// `lines` right after it is read.
std::string TakeLine(vb::Dictionary& lines, int32_t key, bool consume);

using LineText = std::function<std::string(const std::string& trimmed_line)>;

// Joins the block b .. e of `lines` with single blanks into `content`, each
// line taken trimmed: a one-line block is the begin text less the length of
// the closing tag at its end; otherwise the begin text, the inner lines less
// their first four characters, and the end text. `content` grows step by
// step, so after a fault it holds what was joined until then.
void JoinBlockWithBlanks(vb::Dictionary& lines, int32_t b, int32_t e, std::string_view close_tag,
                         const LineText& begin_text, const LineText& end_text, bool consume,
                         std::string& content);

// Copies keys 1 .. Count of `from` into the empty `to`.
void CopyCodeLines(vb::Dictionary& from, vb::Dictionary& to);
// CopyCodeLines for a reader whose scans look for `open` and `close` only:
// copies and returns true when one of the lines is a documentation line
// holding either tag; otherwise copies nothing (every scan of the copy would
// find nothing) and returns false. `from` is read as CopyCodeLines reads it,
// absent keys included. Lines before the first and after the last
// documentation line are copied empty: the readers' scans match
// documentation lines only and their blocks run from one tag line to
// another, so nothing ever reads those lines' text, and a member's code
// below its comment is not copied for nothing.
bool CopyCodeLinesIfTagged(vb::Dictionary& from, vb::Dictionary& to, std::string_view open,
                           std::string_view close);

// The messages after a block scan of `member_name`: success (diagnostic mode
// only) when both tags were found, else the missing closing or opening tag.
void ReportBlockScan(const TagPair& tags, const std::string& member_name, int32_t b, int32_t e,
                     bool diagnostic_mode);

// The readers' diagnostic switch, fixed when a reader is created.
bool DiagnosticModeNow();

}  // namespace doccomments
}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_TAG_BLOCK_H_
