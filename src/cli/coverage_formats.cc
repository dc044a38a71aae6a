#include "cli/coverage_formats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "infra/text_encoding.h"

namespace folioscope {

namespace {

using nlohmann::ordered_json;

std::string Fraction(int64_t part, int64_t whole) {
  return std::to_string(part) + "/" + std::to_string(whole);
}

// The cells of one table row: name, then the right-aligned columns.
std::vector<std::string> RowCells(const std::string& name, const CoverageCounts& c) {
  return {Cp1252ToUtf8(name),
          std::to_string(c.members),
          Fraction(c.with_summary, c.members),
          Fraction(c.described, c.parameters),
          Fraction(c.with_returns, c.returning),
          ShareText(c.Share()) + " %"};
}

// Display width of a UTF-8 text: one column per character.
size_t Columns(const std::string& utf8) {
  return static_cast<size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char ch) { return (ch & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& cell, size_t width, bool left) {
  const std::string pad(width - std::min(width, Columns(cell)), ' ');
  return left ? cell + pad : pad + cell;
}

std::string TableLine(const std::vector<std::string>& cells, const std::vector<size_t>& widths) {
  std::string line;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += "  ";
    line += Padded(cells[i], widths[i], i == 0);
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line + "\n";
}

ordered_json CountsJson(const CoverageCounts& c) {
  return ordered_json{{"members", c.members},
                      {"withSummary", c.with_summary},
                      {"parameters", c.parameters},
                      {"described", c.described},
                      {"returning", c.returning},
                      {"withReturns", c.with_returns},
                      {"incomplete", c.incomplete},
                      {"documented", c.Documented()},
                      {"documentable", c.Documentable()},
                      {"share", std::stod(ShareText(c.Share()))}};
}

std::string Escaped(const std::string& cp1252) {
  std::string out;
  for (char ch : Cp1252ToUtf8(cp1252)) {
    switch (ch) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += ch;
    }
  }
  return out;
}

// The look of the report set's pages (folioscope.css), inline.
constexpr const char* kPageStyle = R"(
body { margin: 0; padding: 24px 36px 40px; max-width: 980px; color: #1f2933; background: #fff;
  font-family: "Segoe UI", "Helvetica Neue", Arial, sans-serif; font-size: 15px; line-height: 1.55; }
.breadcrumb { font-size: 13px; color: #6b7785; margin-bottom: 4px; }
h1 { font-size: 26px; font-weight: 600; margin: 4px 0 6px; color: #1e3a5f; }
h1 .kind { font-size: 15px; font-weight: 400; color: #6b7785; margin-left: 8px; }
.facts { color: #4a5561; font-size: 13.5px; margin: 8px 0 16px; }
table.coverage { border-collapse: collapse; width: 100%; margin: 6px 0; }
table.coverage th { text-align: left; background: #eef2f7; color: #1e3a5f; font-weight: 600;
  padding: 6px 8px; border-bottom: 2px solid #d8dee6; cursor: pointer; white-space: nowrap; }
table.coverage th[aria-sort=ascending]:after { content: " \25B2"; font-size: 11px; }
table.coverage th[aria-sort=descending]:after { content: " \25BC"; font-size: 11px; }
table.coverage td { padding: 6px 8px; border-bottom: 1px solid #eef1f5; vertical-align: middle; }
table.coverage tbody tr:nth-child(even) td { background: #fafbfc; }
table.coverage tfoot td { font-weight: 600; border-top: 2px solid #d8dee6; }
td.module { font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: 13.5px; }
td.num, th.num { text-align: right; white-space: nowrap; }
td.share { width: 34%; white-space: nowrap; }
.bar { display: inline-block; width: 70%; height: 10px; background: #e3e8ef; border-radius: 5px;
  vertical-align: middle; margin-right: 8px; overflow: hidden; }
.bar span { display: block; height: 100%; border-radius: 5px; }
.footer { margin-top: 40px; padding-top: 8px; border-top: 1px solid #e3e8ef; font-size: 12px;
  color: #8a94a0; }
)";

// Sorts the rows by the clicked column: the share and the counts by their
// numbers, the module by name; a second click reverses.
constexpr const char* kPageScript = R"(
document.querySelectorAll('table.coverage th').forEach(function (th, column) {
  th.addEventListener('click', function () {
    var table = th.closest('table'), body = table.tBodies[0];
    var up = th.getAttribute('aria-sort') !== 'ascending';
    table.querySelectorAll('th').forEach(function (h) { h.removeAttribute('aria-sort'); });
    th.setAttribute('aria-sort', up ? 'ascending' : 'descending');
    var key = function (row) {
      var cell = row.cells[column];
      var v = cell.getAttribute('data-value');
      return v === null ? cell.textContent : parseFloat(v);
    };
    Array.from(body.rows).sort(function (a, b) {
      var x = key(a), y = key(b);
      var order = typeof x === 'number' ? x - y : x.localeCompare(y);
      return up ? order : -order;
    }).forEach(function (row) { body.appendChild(row); });
  });
});
)";

std::string NumberCell(int64_t part, int64_t whole) {
  const double ratio = whole == 0 ? 1.0 : static_cast<double>(part) / static_cast<double>(whole);
  char value[32];
  std::snprintf(value, sizeof value, "%.6f", ratio);
  return "<td class=\"num\" data-value=\"" + std::string(value) + "\">" + Fraction(part, whole) +
         "</td>";
}

std::string ShareCell(double share) {
  const std::string text = ShareText(share);
  return "<td class=\"share\" data-value=\"" + text +
         "\"><span class=\"bar\"><span style=\"width:" + text +
         "%;background:" + BadgeColour(share) + "\"></span></span>" + text + " %</td>";
}

std::string PageRow(const std::string& tag, const std::string& name, const CoverageCounts& c,
                    const char* cell_tag_class) {
  return "<" + tag + "><td class=\"" + cell_tag_class + "\">" + name + "</td>" +
         "<td class=\"num\" data-value=\"" + std::to_string(c.members) + "\">" +
         std::to_string(c.members) + "</td>" + NumberCell(c.with_summary, c.members) +
         NumberCell(c.described, c.parameters) + NumberCell(c.with_returns, c.returning) +
         ShareCell(c.Share()) + "</" + tag + ">\n";
}

}  // namespace

std::string ShareText(double share) {
  const double tenths = std::floor(share * 10.0 + 1e-9);
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", tenths / 10.0);
  return text;
}

std::string CoverageTable(const ProjectCoverage& coverage) {
  std::vector<std::vector<std::string>> rows = {
      {"Module", "Members", "Summary", "Parameters", "Returns", "Documented"}};
  for (const ModuleCoverage& m : coverage.modules) rows.push_back(RowCells(m.name, m.counts));
  rows.push_back(RowCells("Total", coverage.total));
  std::vector<size_t> widths(rows.front().size(), 0);
  for (const auto& row : rows) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Columns(row[i]));
  }
  std::string table;
  for (size_t r = 0; r < rows.size(); ++r) {
    if (r + 1 == rows.size()) {
      size_t total_width = 2 * (widths.size() - 1);
      for (size_t w : widths) total_width += w;
      table += std::string(total_width, '-') + "\n";
    }
    table += TableLine(rows[r], widths);
  }
  return table;
}

nlohmann::ordered_json CoverageJson(const ProjectCoverage& coverage) {
  ordered_json modules = ordered_json::array();
  for (const ModuleCoverage& m : coverage.modules) {
    ordered_json module{{"name", Cp1252ToUtf8(m.name)}, {"file", Cp1252ToUtf8(m.file)}};
    module.update(CountsJson(m.counts));
    ordered_json notes = ordered_json::array();
    for (const ReadingNote& n : m.notes) {
      notes.push_back({{"member", Cp1252ToUtf8(n.member)}, {"text", Cp1252ToUtf8(n.text)}});
    }
    module["notes"] = std::move(notes);
    modules.push_back(std::move(module));
  }
  return ordered_json{{"project", Cp1252ToUtf8(coverage.name)},
                      {"total", CountsJson(coverage.total)},
                      {"modules", std::move(modules)}};
}

std::string CoveragePage(const ProjectCoverage& coverage) {
  const CoverageCounts& t = coverage.total;
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
      Escaped(coverage.name) + " - documentation coverage</title>\n<style>" + kPageStyle +
      "</style>\n</head>\n<body>\n<div class=\"breadcrumb\">" + Escaped(coverage.name) +
      "</div>\n<h1>Documentation coverage<span class=\"kind\">" + ShareText(t.Share()) +
      " % documented</span></h1>\n<p class=\"facts\">" + std::to_string(t.Documented()) + " of " +
      std::to_string(t.Documentable()) +
      " items documented: a summary for each member, a description for each parameter, a "
      "&lt;returns&gt; block for each Function and Property Get.</p>\n"
      "<table class=\"coverage\">\n<thead><tr><th>Module</th><th class=\"num\">Members</th>"
      "<th class=\"num\">Summary</th><th class=\"num\">Parameters</th>"
      "<th class=\"num\">Returns</th><th aria-sort=\"ascending\">Documented</th></tr>"
      "</thead>\n<tbody>\n";
  for (size_t i : WorstFirst(coverage)) {
    const ModuleCoverage& m = coverage.modules[i];
    page += PageRow("tr", Escaped(m.name), m.counts, "module");
  }
  page += "</tbody>\n<tfoot>\n" + PageRow("tr", "Total", t, "total") + "</tfoot>\n</table>\n";
  page += "<div class=\"footer\">folioscope coverage</div>\n<script>" + std::string(kPageScript) +
          "</script>\n</body>\n</html>\n";
  return page;
}

const char* BadgeColour(double share) {
  if (share >= 90.0) return "#4c1";
  if (share >= 75.0) return "#97ca00";
  if (share >= 60.0) return "#dfb317";
  if (share >= 40.0) return "#fe7d37";
  return "#e05d44";
}

std::string CoverageBadge(double share) {
  const std::string label = "docs";
  const std::string value = std::to_string(static_cast<int>(std::floor(share + 1e-9))) + "%";
  // Verdana 11px is about 7 pixels a character; 10 pixels of margin.
  const int left = static_cast<int>(label.size()) * 7 + 10;
  const int right = static_cast<int>(value.size()) * 7 + 10;
  const std::string w = std::to_string(left + right);
  const std::string l = std::to_string(left);
  const std::string r = std::to_string(right);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w +
         "\" height=\"20\" role=\"img\" aria-label=\"" + label + ": " + value + "\">\n<title>" +
         label + ": " + value +
         "</title>\n<linearGradient id=\"s\" x2=\"0\" y2=\"100%\"><stop offset=\"0\" "
         "stop-color=\"#bbb\" stop-opacity=\".1\"/><stop offset=\"1\" stop-opacity=\".1\"/>"
         "</linearGradient>\n<clipPath id=\"r\"><rect width=\"" +
         w +
         "\" height=\"20\" rx=\"3\" fill=\"#fff\"/></clipPath>\n<g clip-path=\"url(#r)\"><rect "
         "width=\"" +
         l + "\" height=\"20\" fill=\"#555\"/><rect x=\"" + l + "\" width=\"" + r +
         "\" height=\"20\" fill=\"" + BadgeColour(share) + "\"/><rect width=\"" + w +
         "\" height=\"20\" fill=\"url(#s)\"/></g>\n<g fill=\"#fff\" text-anchor=\"middle\" "
         "font-family=\"Verdana,Geneva,DejaVu Sans,sans-serif\" font-size=\"11\"><text x=\"" +
         std::to_string(left / 2) + "\" y=\"14\">" + label + "</text><text x=\"" +
         std::to_string(left + right / 2) + "\" y=\"14\">" + value + "</text></g>\n</svg>\n";
}

}  // namespace folioscope
