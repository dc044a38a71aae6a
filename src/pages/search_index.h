// SearchIndex: the modules and members that a whole-project report writes
// pages for, kept while the pages are built and written afterwards as two
// script files beside them, so that a report opened straight from disk can
// search and link without a server (a browser lets a page load a script
// from its folder, but not read any other file there).
//
// The names script assigns one global:
//
//   var FolioscopeNames={k:["Class","Function",...],m:[
//   ["CKonto",0,"Buchen",1,"Get Saldo",2],
//   ...]};
//
// `k` lists each kind word once; `m` holds one array per module: its name
// and kind index, then name and kind index of each member, in page order.
// Page file names are not stored: the script derives them the way the
// report names its pages (blanks made "_", module and member joined by
// "_", ".htm"). The texts script holds the first sentence of each summary,
// plain text, in the same shape without the kinds:
//
//   var FolioscopeTexts=[["Ein Sachkonto.","Bucht einen Betrag.",""],...];
//
// Both files are ASCII: every other character is a \u escape of its
// Unicode code point, so the scripts read the same whatever character set
// the page that loads them declares.
#ifndef FOLIOSCOPE_PAGES_SEARCH_INDEX_H_
#define FOLIOSCOPE_PAGES_SEARCH_INDEX_H_

#include <map>
#include <string>
#include <vector>

namespace folioscope {

class SearchIndex {
 public:
  // The report set's placeholder value that asks for an index; it names
  // the files, "<value>.js" and "<value>-text.js".
  static constexpr const char* kPlaceholderKey = "&&&FS_Allgemein_Suchindex&&&";

  // Names and summaries are Windows-1252 text; a summary is the content of
  // its <summary> block as the pages show it.
  void AddModule(const std::string& name, const std::string& kind, const std::string& summary);
  // Adds a member to the module added last; ignored before the first one.
  void AddMember(const std::string& name, const std::string& kind, const std::string& summary);

  std::string NamesScript() const;
  std::string TextsScript() const;

 private:
  struct Entry {
    std::string name;
    int kind;
    std::string sentence;
  };
  int KindIndex(const std::string& kind);

  std::vector<std::string> kinds_;
  std::map<std::string, int> kind_index_;
  // Per module: the module's entry first, then its members.
  std::vector<std::vector<Entry>> modules_;
};

// The first sentence of a summary as plain text: tags dropped (a
// <see cref="X"/> leaves its X), the common entities decoded, white space
// collapsed, cut after the first ". ", "! " or "? " and at 160 characters.
std::string FirstSentence(const std::string& summary);

// `text` (Windows-1252) as a double-quoted script string literal of ASCII
// characters.
std::string ScriptStringLiteral(const std::string& text);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_SEARCH_INDEX_H_
