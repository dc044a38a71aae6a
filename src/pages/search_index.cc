#include "pages/search_index.h"

#include <cstdio>
#include <string>
#include <string_view>

#include "infra/text_encoding.h"

namespace folioscope {

namespace {

constexpr size_t kMaxSentence = 160;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
bool IsLower(char c) { return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0xDF; }

// The tag's name in lower case: "see" for "<see cref=...>", "br" for "</br>".
std::string TagName(std::string_view tag) {
  size_t i = 0;
  if (i < tag.size() && tag[i] == '/') ++i;
  std::string name;
  while (i < tag.size() && !IsBlank(tag[i]) && tag[i] != '/' && tag[i] != '>') {
    name += AsciiLower(tag[i++]);
  }
  return name;
}

// The value of cref="..." (or '...') inside a tag, empty when it has none.
std::string CrefValue(std::string_view tag) {
  std::string lower;
  for (char c : tag) lower += AsciiLower(c);
  const size_t at = lower.find("cref=");
  if (at == std::string::npos || at + 5 >= tag.size()) return "";
  const char quote = tag[at + 5];
  if (quote != '"' && quote != '\'') return "";
  const size_t end = tag.find(quote, at + 6);
  return end == std::string_view::npos ? "" : std::string(tag.substr(at + 6, end - at - 6));
}

// What a tag leaves in plain text: its reference for <see>, a blank for
// the tags that separate words on a page, nothing for the others.
std::string TextOfTag(std::string_view tag) {
  const std::string name = TagName(tag);
  if (name == "see") return CrefValue(tag);
  if (name == "br" || name == "p" || name == "div" || name == "li" || name == "td") return " ";
  return "";
}

// The character an entity such as "&amp;" stands for, with its length; 0
// when `text` at `i` holds none of those the doc comments use.
char EntityAt(std::string_view text, size_t i, size_t* length) {
  static const struct {
    const char* name;
    char c;
  } kEntities[] = {{"&lt;", '<'},   {"&gt;", '>'},   {"&amp;", '&'},
                   {"&quot;", '"'}, {"&nbsp;", ' '}, {"&#39;", '\''}};
  for (const auto& e : kEntities) {
    const std::string_view name(e.name);
    if (text.substr(i, name.size()) == name) {
      *length = name.size();
      return e.c;
    }
  }
  return 0;
}

// Tags dropped or replaced, entities decoded, white space collapsed and
// trimmed.
std::string PlainText(std::string_view html) {
  std::string raw;
  for (size_t i = 0; i < html.size(); ++i) {
    size_t length = 0;
    if (html[i] == '<') {
      const size_t end = html.find('>', i);
      if (end == std::string_view::npos) break;
      raw += TextOfTag(html.substr(i + 1, end - i - 1));
      i = end;
    } else if (char c = html[i] == '&' ? EntityAt(html, i, &length) : 0) {
      raw += c;
      i += length - 1;
    } else {
      raw += html[i];
    }
  }
  std::string text;
  for (char c : raw) {
    if (!IsBlank(c)) {
      text += c;
    } else if (!text.empty() && text.back() != ' ') {
      text += ' ';
    }
  }
  if (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

// Whether the punctuation at `p` ends a sentence: a blank follows, then no
// lower-case letter, and the word before is longer than one letter (so
// "z. B." does not end one).
bool EndsSentence(const std::string& text, size_t p) {
  if (p + 1 >= text.size()) return true;
  if (text[p + 1] != ' ') return false;
  if (p + 2 < text.size() && IsLower(text[p + 2])) return false;
  const size_t word_start = text.rfind(' ', p);
  const size_t word_length = word_start == std::string::npos ? p : p - word_start - 1;
  return text[p] != '.' || word_length > 1;
}

}  // namespace

std::string FirstSentence(const std::string& summary) {
  std::string text = PlainText(summary);
  for (size_t p = 0; p < text.size(); ++p) {
    const char c = text[p];
    if ((c == '.' || c == '!' || c == '?') && EndsSentence(text, p)) {
      text.resize(p + 1);
      break;
    }
  }
  if (text.size() > kMaxSentence) {
    const size_t cut = text.rfind(' ', kMaxSentence);
    text.resize(cut == std::string::npos || cut == 0 ? kMaxSentence : cut);
    text += "...";
  }
  return text;
}

std::string ScriptStringLiteral(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c >= 0x20 && c < 0x7F) {
      out += static_cast<char>(c);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", CodePointOfCp1252(c));
      out += escape;
    }
  }
  return out + "\"";
}

int SearchIndex::KindIndex(const std::string& kind) {
  const auto [it, added] = kind_index_.emplace(kind, static_cast<int>(kinds_.size()));
  if (added) kinds_.push_back(kind);
  return it->second;
}

void SearchIndex::AddModule(const std::string& name, const std::string& kind,
                            const std::string& summary) {
  modules_.push_back({{name, KindIndex(kind), FirstSentence(summary)}});
}

void SearchIndex::AddMember(const std::string& name, const std::string& kind,
                            const std::string& summary) {
  if (modules_.empty()) return;
  modules_.back().push_back({name, KindIndex(kind), FirstSentence(summary)});
}

std::string SearchIndex::NamesScript() const {
  std::string out = "var FolioscopeNames={k:[";
  for (size_t i = 0; i < kinds_.size(); ++i) {
    if (i > 0) out += ',';
    out += ScriptStringLiteral(kinds_[i]);
  }
  out += "],m:[";
  for (size_t m = 0; m < modules_.size(); ++m) {
    out += m > 0 ? ",\n[" : "\n[";
    for (size_t e = 0; e < modules_[m].size(); ++e) {
      if (e > 0) out += ',';
      out += ScriptStringLiteral(modules_[m][e].name) + ',' + std::to_string(modules_[m][e].kind);
    }
    out += ']';
  }
  return out + "]};";
}

std::string SearchIndex::TextsScript() const {
  std::string out = "var FolioscopeTexts=[";
  for (size_t m = 0; m < modules_.size(); ++m) {
    out += m > 0 ? ",\n[" : "\n[";
    for (size_t e = 0; e < modules_[m].size(); ++e) {
      if (e > 0) out += ',';
      out += ScriptStringLiteral(modules_[m][e].sentence);
    }
    out += ']';
  }
  return out + "];";
}

}  // namespace folioscope
