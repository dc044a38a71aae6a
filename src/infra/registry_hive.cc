#include "infra/registry_hive.h"

#include <cstdint>
#include <cstdio>
#include <vector>

#include "infra/text_encoding.h"

// Which encoding the writer uses. The registry editor imports 8-bit files
// without a byte-order mark (read in the ANSI code page) as well as UTF-16LE
// files with one; Linux tools read plain ASCII best. So the writer keeps the
// file pure ASCII whenever it can: quoted strings only for printable ASCII
// text, every other string value as hex(1): holding the UTF-16LE units, as
// the registry stores it, which imports to the same value on every code
// page. Only a key or value name outside ASCII (which has no hex form) makes
// the writer fall back to UTF-16LE with a byte-order mark, the registry
// editor's own export encoding. Lines end in CR LF.
//
// A quoted string maps to REG_SZ data without a terminating NUL, which is
// what CRegistry::SaveRegString stores; data holding any NUL is written in
// hex, so both forms survive a round trip.

namespace folioscope {

namespace {

constexpr std::string_view kHeader5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kHeader4 = "REGEDIT4";
constexpr size_t kHexLineWidth = 80;

// --- UTF-16 <-> Windows-1252 -------------------------------------------------

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// UTF-16LE bytes to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf16LeToUtf8(std::string_view bytes) {
  std::string out;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    uint32_t u = static_cast<unsigned char>(bytes[i]) |
                 (static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8);
    if (u >= 0xD800 && u < 0xDC00 && i + 3 < bytes.size()) {
      uint32_t lo = static_cast<unsigned char>(bytes[i + 2]) |
                    (static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 3])) << 8);
      if (lo >= 0xDC00 && lo < 0xE000) {
        AppendUtf8(out, 0x10000 + ((u - 0xD800) << 10) + (lo - 0xDC00));
        i += 2;
        continue;
      }
    }
    if (u >= 0xD800 && u < 0xE000) u = 0xFFFD;
    AppendUtf8(out, u);
  }
  return out;
}

// Windows-1252 bytes to UTF-16LE bytes, one unit per byte.
std::string Cp1252ToUtf16Le(std::string_view text) {
  std::string utf8 = Cp1252ToUtf8(text);
  std::string out;
  for (size_t i = 0; i < utf8.size();) {
    unsigned char c = static_cast<unsigned char>(utf8[i]);
    uint32_t cp = c;
    size_t len = 1;
    if (c >= 0xE0) {
      cp = ((c & 0x0F) << 12) | ((utf8[i + 1] & 0x3F) << 6) | (utf8[i + 2] & 0x3F);
      len = 3;
    } else if (c >= 0xC0) {
      cp = ((c & 0x1F) << 6) | (utf8[i + 1] & 0x3F);
      len = 2;
    }
    out += static_cast<char>(cp & 0xFF);
    out += static_cast<char>(cp >> 8);
    i += len;
  }
  return out;
}

// UTF-16LE data of a string-type value to Windows-1252; a trailing odd byte
// is kept as it is.
std::string Utf16LeToCp1252(std::string_view bytes) {
  std::string out = Utf8ToCp1252(Utf16LeToUtf8(bytes));
  if (bytes.size() % 2 == 1) out += bytes.back();
  return out;
}

bool IsStringType(uint32_t type) {
  return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz;
}

// --- Reading -------------------------------------------------------------------

// The file's text as Windows-1252, whatever encoding it came in.
std::string DecodeFile(std::string_view bytes) {
  if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
      static_cast<unsigned char>(bytes[1]) == 0xFE)
    return Utf8ToCp1252(Utf16LeToUtf8(bytes.substr(2)));
  if (bytes.size() >= 3 && bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  // Valid UTF-8 sequences decode; every other byte is taken as Windows-1252.
  return Utf8ToCp1252(bytes);
}

struct Line {
  std::string text;
  int number;
};

std::string TrimBlanks(std::string_view s) {
  size_t b = 0, e = s.size();
  while (b < e && (s[b] == ' ' || s[b] == '\t')) ++b;
  while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t' || s[e - 1] == '\r')) --e;
  return std::string(s.substr(b, e - b));
}

// Splits into trimmed logical lines, joining hex data continued with a
// trailing backslash.
std::vector<Line> LogicalLines(const std::string& text) {
  std::vector<Line> lines;
  bool continuing = false;
  int number = 0;
  size_t pos = 0;
  while (pos <= text.size()) {
    size_t end = text.find('\n', pos);
    if (end == std::string::npos) end = text.size();
    ++number;
    std::string line = TrimBlanks(std::string_view(text).substr(pos, end - pos));
    pos = end + 1;
    if (continuing) {
      lines.back().text += line;
    } else {
      lines.push_back(Line{line, number});
    }
    continuing = !lines.back().text.empty() && lines.back().text.back() == '\\';
    if (continuing) lines.back().text.pop_back();
  }
  return lines;
}

class HiveParser {
 public:
  HiveParser(const std::string& file_name, RegistryTree* tree, std::string* error)
      : file_name_(file_name), tree_(tree), error_(error) {}

  bool Parse(const std::string& text) {
    bool header_seen = false;
    for (const Line& line : LogicalLines(text)) {
      line_ = line.number;
      const std::string& s = line.text;
      if (s.empty() || s[0] == ';') continue;
      if (!header_seen) {
        if (s == kHeader5) {
          unicode_ = true;
        } else if (s == kHeader4) {
          unicode_ = false;
        } else {
          return Fail("not a registry file (expected \"" + std::string(kHeader5) + "\")");
        }
        header_seen = true;
        continue;
      }
      bool ok = s[0] == '['                    ? KeyLine(s)
                : (s[0] == '"' || s[0] == '@') ? ValueLine(s)
                                               : Fail("unexpected line");
      if (!ok) return false;
    }
    return true;
  }

 private:
  bool Fail(const std::string& reason) {
    *error_ = file_name_ + ":" + std::to_string(line_) + ": " + reason;
    return false;
  }

  bool KeyLine(const std::string& s) {
    if (s.back() != ']') return Fail("key line without closing ']'");
    bool remove = s.size() > 1 && s[1] == '-';
    std::string full = s.substr(remove ? 2 : 1, s.size() - (remove ? 3 : 2));
    size_t slash = full.find('\\');
    std::string root_name = full.substr(0, slash);
    root_ = RegistryTree::RootHandle(root_name);
    if (root_ == 0) return Fail("unknown root key \"" + root_name + "\"");
    path_ = slash == std::string::npos ? "" : full.substr(slash + 1);
    if (remove) {
      DeleteTree(root_, path_);
      in_key_ = false;
      return true;
    }
    tree_->CreateKey(root_, path_);
    in_key_ = true;
    return true;
  }

  void DeleteTree(uint32_t root, const std::string& path) {
    if (!tree_->KeyExists(root, path) || path.empty()) return;
    while (auto child = tree_->EnumKey(root, path, 0)) DeleteTree(root, path + "\\" + *child);
    tree_->DeleteKey(root, path);
  }

  // A quoted string at s[pos] ('"'); sets `pos` past the closing quote.
  bool Quoted(const std::string& s, size_t& pos, std::string* out) {
    out->clear();
    for (++pos; pos < s.size(); ++pos) {
      char c = s[pos];
      if (c == '"') {
        ++pos;
        return true;
      }
      if (c == '\\' && pos + 1 < s.size() && (s[pos + 1] == '\\' || s[pos + 1] == '"'))
        c = s[++pos];
      *out += c;
    }
    return Fail("missing closing '\"'");
  }

  bool ValueLine(const std::string& s) {
    if (!in_key_) return Fail("value outside a key");
    std::string name;
    size_t pos = 0;
    if (s[0] == '@') {
      pos = 1;
    } else if (!Quoted(s, pos, &name)) {
      return false;
    }
    while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\t')) ++pos;
    if (pos >= s.size() || s[pos] != '=') return Fail("missing '=' after the value name");
    std::string data = TrimBlanks(std::string_view(s).substr(pos + 1));
    if (data == "-") {
      tree_->DeleteValue(root_, path_, name);
      return true;
    }
    RegValue value;
    if (!ValueData(data, &value)) return false;
    tree_->SetValue(root_, path_, name, value);
    return true;
  }

  bool ValueData(const std::string& data, RegValue* value) {
    if (!data.empty() && data[0] == '"') {
      size_t pos = 0;
      if (!Quoted(data, pos, &value->data)) return false;
      if (!TrimBlanks(std::string_view(data).substr(pos)).empty())
        return Fail("text after the closing '\"'");
      value->type = kRegSz;
      return true;
    }
    if (data.compare(0, 6, "dword:") == 0) return Dword(data.substr(6), value);
    if (data.compare(0, 4, "hex:") == 0) {
      value->type = kRegBinary;
      return HexBytes(data.substr(4), &value->data);
    }
    if (data.compare(0, 4, "hex(") == 0) {
      size_t close = data.find("):");
      uint32_t type = 0;
      if (close == std::string::npos || close == 4 || close > 12 ||
          !ParseHex(data.substr(4, close - 4), &type))
        return Fail("malformed hex(type): prefix");
      value->type = type;
      if (!HexBytes(data.substr(close + 2), &value->data)) return false;
      if (unicode_ && IsStringType(type)) value->data = Utf16LeToCp1252(value->data);
      return true;
    }
    return Fail("unknown value data \"" + data.substr(0, 20) + "\"");
  }

  static bool ParseHex(const std::string& digits, uint32_t* out) {
    if (digits.empty() || digits.size() > 8) return false;
    uint32_t n = 0;
    for (char c : digits) {
      int d = (c >= '0' && c <= '9')   ? c - '0'
              : (c >= 'a' && c <= 'f') ? c - 'a' + 10
              : (c >= 'A' && c <= 'F') ? c - 'A' + 10
                                       : -1;
      if (d < 0) return false;
      n = (n << 4) | static_cast<uint32_t>(d);
    }
    *out = n;
    return true;
  }

  bool Dword(const std::string& digits, RegValue* value) {
    uint32_t n = 0;
    if (!ParseHex(TrimBlanks(digits), &n)) return Fail("malformed dword \"" + digits + "\"");
    value->type = kRegDword;
    value->data.clear();
    for (int i = 0; i < 4; ++i) value->data += static_cast<char>((n >> (8 * i)) & 0xFF);
    return true;
  }

  bool HexBytes(const std::string& list, std::string* out) {
    out->clear();
    std::string item;
    size_t start = 0;
    std::string compact;
    for (char c : list)
      if (c != ' ' && c != '\t') compact += c;
    if (compact.empty()) return true;
    while (start <= compact.size()) {
      size_t comma = compact.find(',', start);
      if (comma == std::string::npos) comma = compact.size();
      uint32_t byte = 0;
      item = compact.substr(start, comma - start);
      if (item.size() > 2 || !ParseHex(item, &byte))
        return Fail("malformed hex byte \"" + item + "\"");
      *out += static_cast<char>(byte);
      start = comma + 1;
    }
    return true;
  }

  std::string file_name_;
  RegistryTree* tree_;
  std::string* error_;
  int line_ = 0;
  bool unicode_ = true;
  bool in_key_ = false;
  uint32_t root_ = 0;
  std::string path_;
};

// --- Writing -------------------------------------------------------------------

std::string QuotedText(const std::string& s) {
  std::string out = "\"";
  for (char c : s) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out + "\"";
}

bool IsPrintableAscii(const std::string& s) {
  for (char c : s)
    if (c < 0x20 || c > 0x7E) return false;
  return true;
}

// "hex(N):" and the bytes, wrapped like the registry editor's export.
std::string HexData(const std::string& prefix, std::string_view bytes, size_t used) {
  std::string out = prefix;
  size_t column = used + prefix.size();
  char buf[4];
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::snprintf(buf, sizeof buf, "%02x", static_cast<unsigned char>(bytes[i]));
    out += buf;
    column += 2;
    if (i + 1 < bytes.size()) {
      out += ',';
      ++column;
      if (column > kHexLineWidth - 4) {
        out += "\\\r\n  ";
        column = 2;
      }
    }
  }
  return out;
}

std::string ValueText(const std::string& name, const RegValue& v) {
  std::string line = name.empty() ? "@" : QuotedText(name);
  line += '=';
  if (v.type == kRegSz && IsPrintableAscii(v.data)) return line + QuotedText(v.data);
  if (v.type == kRegDword && v.data.size() == 4) {
    uint32_t n = 0;
    for (int i = 0; i < 4; ++i)
      n |= static_cast<uint32_t>(static_cast<unsigned char>(v.data[i])) << (8 * i);
    char buf[16];
    std::snprintf(buf, sizeof buf, "dword:%08x", n);
    return line + buf;
  }
  if (v.type == kRegBinary) return HexData(line + "hex:", v.data, 0);
  char prefix[24];
  std::snprintf(prefix, sizeof prefix, "hex(%x):", v.type);
  std::string bytes = IsStringType(v.type) ? Cp1252ToUtf16Le(v.data) : v.data;
  return line + HexData(prefix, bytes, line.size());
}

void WriteNode(const RegistryTree::Node& node, const std::string& full, bool is_root,
               std::string* out) {
  if (!is_root || !node.values.empty()) {
    *out += "[" + full + "]\r\n";
    for (const auto& [name, value] : node.values) *out += ValueText(name, value) + "\r\n";
    *out += "\r\n";
  }
  for (const auto& child : node.children) WriteNode(*child, full + "\\" + child->name, false, out);
}

}  // namespace

bool ParseHive(std::string_view bytes, const std::string& file_name, RegistryTree* tree,
               std::string* error) {
  std::string ignored;
  HiveParser parser(file_name, tree, error ? error : &ignored);
  return parser.Parse(DecodeFile(bytes));
}

std::string SerializeHive(const RegistryTree& tree) {
  std::string text = std::string(kHeader5) + "\r\n\r\n";
  static const uint32_t kRoots[] = {0x80000000u, kHkeyCurrentUser, kHkeyLocalMachine, 0x80000003u,
                                    0x80000005u};
  for (uint32_t handle : kRoots) {
    if (const RegistryTree::Node* root = tree.Root(handle))
      WriteNode(*root, RegistryTree::RootName(handle), true, &text);
  }
  bool ascii = true;
  for (char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) ascii = false;
  if (ascii) return text;
  return "\xFF\xFE" + Cp1252ToUtf16Le(text);
}

}  // namespace folioscope
