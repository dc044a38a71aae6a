// Folioscope report set "Standard": menu nodes, small page helpers, the
// search box of the menu, links between types and members, and addresses
// of single pages inside the frame set.
//
// Plain ES3 with feature checks, so that the help viewer's browser engine
// runs it as well. Pages opened straight from disk may not read other files
// or reach into the other frames, so the data comes as script files that
// the report writes beside the pages (folioscope-index.js: names and kinds;
// folioscope-index-text.js: first sentences of summaries), and the frames
// talk to each other only by postMessage.

var fsIndexName = "folioscope-index";
var fsMaxHits = 50;

// Opens or closes one menu node; returns false so that the link is not followed.
function fsToggle(elementId, iconId) {
  var items = document.getElementById(elementId);
  var icon = document.getElementById(iconId);
  if (!items) return false;
  var open = items.style.display == "none";
  items.style.display = open ? "block" : "none";
  if (icon) icon.innerHTML = open ? "&minus;" : "+";
  return false;
}

// Hides the sections of a content page that stayed empty: a parameter
// table without rows, an example area without code, a return value block
// without type or description.
function fsPageLoaded() {
  var divs = document.getElementsByTagName("div");
  for (var i = 0; i < divs.length; i++) {
    var d = divs[i];
    if (d.className == "parameters") {
      var body = d.getElementsByTagName("tbody");
      if (body.length && body[0].getElementsByTagName("tr").length == 0) d.style.display = "none";
    } else if (d.className == "example" || d.className == "return-value" || d.className == "remarks-block") {
      var text = d.innerText || d.textContent || "";
      var heading = d.getElementsByTagName("h2");
      var headingText = heading.length ? (heading[0].innerText || heading[0].textContent || "") : "";
      if (text.replace(headingText, "").replace(/\s+/g, "") == "") d.style.display = "none";
    }
  }
}

// --- Helpers ----------------------------------------------------------------

function fsListen(target, name, handler) {
  if (target.addEventListener) target.addEventListener(name, handler, false);
  else if (target.attachEvent) target.attachEvent("on" + name, handler);
}

function fsTrim(text) { return text.replace(/^\s+|\s+$/g, ""); }

function fsTextOf(element) {
  var text = element.innerText;
  if (typeof text != "string") text = element.textContent;
  return typeof text == "string" ? text : "";
}

function fsElement(tag, className, text) {
  var e = document.createElement(tag);
  if (className) e.className = className;
  if (text) e.appendChild(document.createTextNode(text));
  return e;
}

// Page files are named as the report writes them: blanks become "_".
function fsUnderscored(name) { return name.replace(/ /g, "_"); }
function fsModulePage(module) { return fsUnderscored(module) + ".htm"; }
function fsMemberPage(module, member) { return fsUnderscored(module) + "_" + fsUnderscored(member) + ".htm"; }

// A page name that may come from an address: one file of this folder.
function fsIsPageName(name) {
  return /^[^\/\\:?#*"<>|.][^\/\\:?#*"<>|]*\.htm$/i.test(name);
}

function fsDecode(text) {
  try { return decodeURIComponent(text); } catch (e) { return text; }
}

// The file name of this page, "" where the address has none.
function fsOwnPage() {
  var path = String(location.pathname || "");
  return fsDecode(path.substring(path.lastIndexOf("/") + 1));
}

// Only a report on disk or on a web server has the index files beside its
// pages; inside a help file there is nothing to load.
function fsCanLoadIndex() {
  return /^(file|https?):$/.test(location.protocol);
}

// Loads a script of this folder once and then calls done(); done() also
// runs when the file is missing.
function fsLoadScript(file, done) {
  var head = document.getElementsByTagName("head")[0] || document.documentElement;
  var script = document.createElement("script");
  var finished = false;
  var finish = function () {
    if (finished) return;
    if (script.readyState && script.readyState != "loaded" && script.readyState != "complete") return;
    finished = true;
    done();
  };
  script.type = "text/javascript";
  script.onload = finish;
  script.onreadystatechange = finish;
  script.onerror = function () { finished = true; done(); };
  script.src = file;
  head.appendChild(script);
}

// Lower case without accents, so that "prufe" and "pruefe" find a name
// written with the umlaut as well as one written "PruefeEinst": accented
// letters lose their marks, sharp s becomes "ss", and the spelled-out
// umlauts "ae", "oe", "ue" become "a", "o", "u".
var fsFoldFrom = "\u00e0\u00e1\u00e2\u00e3\u00e4\u00e5\u00e7\u00e8\u00e9\u00ea\u00eb\u00ec\u00ed\u00ee\u00ef" +
                 "\u00f1\u00f2\u00f3\u00f4\u00f5\u00f6\u00f8\u00f9\u00fa\u00fb\u00fc\u00fd\u00ff\u0161\u017e";
var fsFoldTo = "aaaaaaceeeeiiiinoooooouuuuyysz";
function fsFoldLetter(c) {
  var at = fsFoldFrom.indexOf(c);
  if (at >= 0) return fsFoldTo.charAt(at);
  if (c == "\u00df") return "ss";
  if (c == "\u00e6") return "ae";
  if (c == "\u0153") return "oe";
  return c;
}
function fsFold(text) {
  return text.toLowerCase().replace(/[\u00df-\u017f]/g, fsFoldLetter).replace(/([aou])e/g, "$1");
}

// --- The names index --------------------------------------------------------

// Module numbers by lower-case name; content pages need no more than this
// and the index itself.
var fsModuleByName = null;

function fsBuildModules() {
  if (fsModuleByName || typeof FolioscopeNames == "undefined") return fsModuleByName != null;
  fsModuleByName = {};
  for (var m = 0; m < FolioscopeNames.m.length; m++) {
    fsModuleByName["~" + FolioscopeNames.m[m][0].toLowerCase()] = m;
  }
  return true;
}

// The module whose page or member page `page` is, -1 for none.
function fsModuleOfPage(page) {
  var modules = FolioscopeNames.m;
  for (var m = 0; m < modules.length; m++) {
    var row = modules[m];
    if (fsModulePage(row[0]) == page) return m;
    if (page.indexOf(fsUnderscored(row[0]) + "_") != 0) continue;
    for (var i = 2; i < row.length; i += 2) {
      if (fsMemberPage(row[0], row[i]) == page) return m;
    }
  }
  return -1;
}

// Entries of the names index for the search, flat: one per module (member
// -1) and per member, with the folded names that it compares. Only the
// menu builds them.
var fsEntries = null;

function fsKindOf(entry) { return FolioscopeNames.k[entry.kind]; }

function fsBuildEntries() {
  if (fsEntries || !fsBuildModules()) return fsEntries != null;
  var modules = FolioscopeNames.m;
  fsEntries = [];
  for (var m = 0; m < modules.length; m++) {
    var row = modules[m];
    var moduleName = row[0];
    for (var i = 0; i < row.length; i += 2) {
      var name = row[i];
      var folded = fsFold(name);
      var entry = {
        name: name, kind: row[i + 1], module: m, member: i / 2 - 1,
        page: i == 0 ? fsModulePage(name) : fsMemberPage(moduleName, name),
        folded: folded, foldedBase: i == 0 ? folded : folded.replace(/^[gls]et /, "")
      };
      fsEntries.push(entry);
    }
  }
  return true;
}

function fsModuleName(entry) { return FolioscopeNames.m[entry.module][0]; }

// --- Search -----------------------------------------------------------------

// The folded first sentences of all entries in one text, each behind a
// line break and a blank, so that one indexOf finds the next entry holding
// a word; fsTextStarts[i] is where entry i begins.
var fsTextAll = null;
var fsTextStarts = null;
var fsTextsState = 0;      // 0 not asked for, 1 loading, 2 there (or missing)

function fsSentence(entry) {
  if (typeof FolioscopeTexts == "undefined") return "";
  var row = FolioscopeTexts[entry.module];
  return row ? (row[entry.member + 1] || "") : "";
}

function fsLoadTexts(whenLoaded) {
  if (fsTextsState != 0) return;
  fsTextsState = 1;
  fsLoadScript(fsIndexName + "-text.js", function () {
    var parts = [];
    var at = 0;
    fsTextStarts = [];
    for (var i = 0; i < fsEntries.length; i++) {
      var text = "\n " + fsFold(fsSentence(fsEntries[i]));
      fsTextStarts.push(at);
      parts.push(text);
      at += text.length;
    }
    fsTextStarts.push(at);
    fsTextAll = parts.join("");
    fsTextsState = 2;
    whenLoaded();
  });
}

// The entry whose text holds position `at`.
function fsEntryAt(at) {
  var low = 0, high = fsTextStarts.length - 2;
  while (low < high) {
    var middle = Math.ceil((low + high) / 2);
    if (fsTextStarts[middle] <= at) low = middle;
    else high = middle - 1;
  }
  return low;
}

// Entries not in `taken` whose sentence holds every word at the start of
// a word, in index order, at most `room`.
function fsSearchTexts(words, taken, room) {
  var found = [];
  var first = " " + words[0];
  var at = fsTextAll.indexOf(first);
  while (at >= 0 && found.length < room) {
    var e = fsEntryAt(at);
    var text = fsTextAll.substring(fsTextStarts[e], fsTextStarts[e + 1]);
    if (!taken["~" + e] && fsTextMatches(text, words)) found.push(e);
    at = fsTextAll.indexOf(first, fsTextStarts[e + 1]);
  }
  return found;
}

// Ranks one entry against the folded query: 0 the name itself, 1 a name
// that begins with it, 2 a name that holds it, -1 none of these. A
// property's name counts without its "Get ", "Let " or "Set ".
function fsNameRank(entry, query) {
  if (entry.foldedBase == query || entry.folded == query) return 0;
  if (entry.foldedBase.indexOf(query) == 0 || entry.folded.indexOf(query) == 0) return 1;
  if (entry.folded.indexOf(query) > 0) return 2;
  return -1;
}

function fsTextMatches(text, words) {
  for (var w = 0; w < words.length; w++) {
    if (text.indexOf(" " + words[w]) < 0) return false;
  }
  return true;
}

// Every entry whose folded name holds `query`. A query that extends the
// previous one (the usual keystroke) looks only at the previous matches.
var fsMatchQuery = null;
var fsMatches = null;
function fsNameMatches(query) {
  var from = fsMatchQuery != null && query.indexOf(fsMatchQuery) == 0 ? fsMatches : null;
  var count = from ? from.length : fsEntries.length;
  var found = [];
  for (var k = 0; k < count; k++) {
    var i = from ? from[k] : k;
    if (fsEntries[i].folded.indexOf(query) >= 0) found.push(i);
  }
  fsMatchQuery = query;
  fsMatches = found;
  return found;
}

// The entries for a query, best first: names equal to it, names that begin
// with it, names that hold it, then summaries that hold each of its words
// at the start of a word. At most fsMaxHits; `byText` marks the last group.
function fsSearch(query) {
  var ranked = [[], [], []];
  var matches = fsNameMatches(query);
  for (var k = 0; k < matches.length; k++) {
    var rank = fsNameRank(fsEntries[matches[k]], query);
    if (ranked[rank].length < fsMaxHits) ranked[rank].push(matches[k]);
  }
  var hits = ranked[0].concat(ranked[1], ranked[2]).slice(0, fsMaxHits);
  var byText = [];
  if (hits.length < fsMaxHits && fsTextAll != null && query.length >= 3) {
    var taken = {};
    for (var h = 0; h < hits.length; h++) taken["~" + hits[h]] = true;
    byText = fsSearchTexts(fsTrim(query).split(/\s+/), taken, fsMaxHits - hits.length);
  }
  return {names: hits, byText: byText};
}

var fsHits = [];
var fsSelected = -1;
var fsLastQuery = null;

function fsHitLink(index, withSentence) {
  var entry = fsEntries[index];
  var link = fsElement("a", "search-hit");
  link.href = entry.page;
  link.target = "FrameRechts";
  link.appendChild(fsElement("span", "hit-name", entry.name));
  link.appendChild(fsElement("span", "hit-kind", fsKindOf(entry)));
  if (entry.member >= 0) link.appendChild(fsElement("span", "hit-module", fsModuleName(entry)));
  if (withSentence) link.appendChild(fsElement("span", "hit-text", fsSentence(entry)));
  return link;
}

function fsShowHits(result) {
  var list = document.getElementById("fsResults");
  while (list.firstChild) list.removeChild(list.firstChild);
  fsHits = [];
  fsSelected = -1;
  var groups = [result.names, result.byText];
  for (var g = 0; g < groups.length; g++) {
    for (var i = 0; i < groups[g].length; i++) {
      var link = fsHitLink(groups[g][i], g == 1);
      list.appendChild(link);
      fsHits.push(link);
    }
  }
  list.style.display = fsHits.length ? "block" : "none";
}

function fsRunSearch(force) {
  var input = document.getElementById("fsSearch");
  var query = fsFold(fsTrim(input.value));
  if (query == fsLastQuery && !force) return;
  fsLastQuery = query;
  if (query == "" || !fsBuildEntries()) {
    fsShowHits({names: [], byText: []});
    return;
  }
  if (fsTextsState == 0) fsLoadTexts(function () { fsRunSearch(true); });
  // Run again for the same text (the summaries came), the names found
  // stay first, so the chosen one stays chosen.
  var selected = force ? fsSelected : -1;
  fsShowHits(fsSearch(query));
  if (selected >= 0 && selected < fsHits.length) fsSelect(selected);
}

function fsSelect(index) {
  if (!fsHits.length) return;
  if (fsSelected >= 0) fsHits[fsSelected].className = "search-hit";
  fsSelected = (index + fsHits.length) % fsHits.length;
  var hit = fsHits[fsSelected];
  hit.className = "search-hit selected";
  if (hit.scrollIntoView) hit.scrollIntoView(false);
}

// Shows a page in the content frame as a click on its link would.
function fsOpenHit(link) {
  if (link.click) link.click();
  else window.open(link.href, "FrameRechts");
}

function fsSearchKey(e) {
  e = e || window.event;
  var key = e.keyCode;
  if (key == 40 || key == 38) {
    fsSelect(fsSelected + (key == 40 ? 1 : -1));
  } else if (key == 13) {
    if (fsHits.length) fsOpenHit(fsHits[fsSelected >= 0 ? fsSelected : 0]);
  } else if (key == 27) {
    document.getElementById("fsSearch").value = "";
    fsRunSearch(false);
  } else {
    return true;
  }
  if (e.preventDefault) e.preventDefault();
  e.returnValue = false;
  return false;
}

function fsMenuStart() {
  var box = fsElement("div", "menu-search");
  var input = document.createElement("input");
  try { input.type = "search"; } catch (e) { /* older engines keep a text box */ }
  input.id = "fsSearch";
  input.className = "menu-search-input";
  input.setAttribute("autocomplete", "off");
  input.setAttribute("placeholder", "\u2315 Name");
  var list = fsElement("div", "menu-search-results");
  list.id = "fsResults";
  list.style.display = "none";
  box.appendChild(input);
  box.appendChild(list);
  document.body.insertBefore(box, document.body.firstChild);
  input.onkeydown = fsSearchKey;
  var changed = function () { fsRunSearch(false); };
  fsListen(input, "input", changed);
  fsListen(input, "keyup", changed);
  fsListen(input, "search", changed);
  if (!fsCanLoadIndex()) return;
  // Folding the names takes a moment on large projects: done right after
  // loading rather than on the first keystroke.
  fsLoadScript(fsIndexName + ".js", function () {
    if (input.value) fsRunSearch(true);
    else window.setTimeout(fsBuildEntries, 0);
  });
}

// --- Links in content pages -------------------------------------------------

function fsLinkableKind(kind) {
  return kind == "Class" || kind == "Form" || kind == "UserControl" || kind == "PropertyPage";
}

// The module page a type names ("CBuchung", "CBuchung()", "Kontor.CBuchung"),
// or "" when it is no class-like module of the project.
function fsTypePage(type) {
  var name = type.replace(/\(\)$/, "");
  name = name.substring(name.lastIndexOf(".") + 1);
  var m = fsModuleByName["~" + name.toLowerCase()];
  if (m == null) return "";
  var row = FolioscopeNames.m[m];
  return fsLinkableKind(FolioscopeNames.k[row[1]]) ? fsModulePage(row[0]) : "";
}

function fsLinkType(element) {
  var type = fsTrim(fsTextOf(element));
  var page = type ? fsTypePage(type) : "";
  if (!page) return;
  var link = fsElement("a", "type-link", type);
  link.href = page;
  while (element.firstChild) element.removeChild(element.firstChild);
  element.appendChild(link);
}

// The types of a member page: the return type in the syntax line and in
// the return block, and the type column of the parameter table.
function fsLinkTypes() {
  var codes = document.getElementsByTagName("code");
  for (var i = 0; i < codes.length; i++) {
    var c = codes[i];
    var cell = c.parentNode;
    if (c.className == "returns-type") fsLinkType(c);
    else if (cell && cell.nodeName.toLowerCase() == "td" && cell.cellIndex == 1) fsLinkType(c);
  }
  var spans = document.getElementsByTagName("span");
  for (var j = 0; j < spans.length; j++) {
    if (spans[j].className == "returns") fsLinkType(spans[j]);
  }
}

// The page of the member of module `m` that a reference names: the name
// itself, else a property of that name ("Saldo" finds "Get Saldo"); "" for
// none.
function fsMemberPageOf(m, name) {
  var row = FolioscopeNames.m[m];
  var wanted = name.toLowerCase();
  var prefixes = ["", "get ", "let ", "set "];
  for (var p = 0; p < prefixes.length; p++) {
    for (var i = 2; i < row.length; i += 2) {
      if (row[i].toLowerCase() == prefixes[p] + wanted) return fsMemberPage(row[0], row[i]);
    }
  }
  return "";
}

// The page a <see cref> names, seen from module `here` (-1 when unknown):
// "Module.Member", a member of this module, or a module.
function fsReferencePage(ref, here) {
  var dot = ref.lastIndexOf(".");
  var found = "";
  if (dot > 0) {
    var owner = ref.substring(0, dot);
    var m = fsModuleByName["~" + owner.substring(owner.lastIndexOf(".") + 1).toLowerCase()];
    if (m != null) found = fsMemberPageOf(m, ref.substring(dot + 1));
    if (!found) ref = ref.substring(dot + 1);
  }
  if (!found && here >= 0) found = fsMemberPageOf(here, ref);
  if (!found) {
    var module = fsModuleByName["~" + ref.toLowerCase()];
    if (module != null) found = fsModulePage(FolioscopeNames.m[module][0]);
  }
  return found;
}

// Every <see cref="..."/> of the doc comments becomes a link, or code when
// the reference names nothing of the project. The parser makes such a tag
// an element that holds what follows it, so that is moved out first.
function fsLinkReferences(indexed) {
  var found = document.getElementsByTagName("see");
  var sees = [];
  for (var i = 0; i < found.length; i++) sees.push(found[i]);
  var here = indexed && sees.length ? fsModuleOfPage(fsOwnPage()) : -1;
  for (var j = 0; j < sees.length; j++) {
    var see = sees[j];
    var parent = see.parentNode;
    var ref = fsTrim(see.getAttribute("cref") || "").replace(/^[A-Z]:/, "");
    var page = indexed && ref ? fsReferencePage(ref, here) : "";
    var shown = fsElement("code", page ? "see" : "see-unknown", ref);
    if (page) {
      var link = fsElement("a", "see-link");
      link.href = page;
      link.appendChild(shown);
      shown = link;
    }
    parent.insertBefore(shown, see);
    while (see.firstChild) parent.insertBefore(see.firstChild, see);
    parent.removeChild(see);
  }
}

// --- Addresses inside the frame set -----------------------------------------

// The address of the frame set showing `page`.
function fsFrameSetAddress(page) {
  var href = String(location.href).replace(/[?#].*$/, "");
  return href.substring(0, href.lastIndexOf("/") + 1) + "_Index.htm#" + page;
}

function fsCopy(text) {
  try {
    var area = document.createElement("textarea");
    area.value = text;
    document.body.appendChild(area);
    area.select();
    var done = document.execCommand && document.execCommand("copy");
    document.body.removeChild(area);
    if (done) return true;
  } catch (e) { /* fall through */ }
  if (navigator.clipboard && navigator.clipboard.writeText) {
    navigator.clipboard.writeText(text);
    return true;
  }
  return false;
}

// "Link" at the top of a module or member page: the frame set's address
// of this page, copied on a click (or opened where copying is not allowed).
function fsAddPageLink(page) {
  var link = fsElement("a", "page-link", "Link");
  link.href = fsFrameSetAddress(page);
  link.target = "_top";
  link.title = link.href;
  link.onclick = function () {
    if (!fsCopy(link.href)) return true;
    link.className = "page-link copied";
    return false;
  };
  document.body.insertBefore(link, document.body.firstChild);
}

// Content pages tell the frame set which page they show, so that its
// address names it.
function fsContentStart() {
  var page = fsOwnPage();
  var web = fsCanLoadIndex();
  if (web && page && page != "Projekt.htm" && fsIsPageName(page)) fsAddPageLink(page);
  if (web && window.name == "FrameRechts" && top != window && window.postMessage) {
    top.postMessage("folioscope:shown:" + page, "*");
  }
  var wanted = document.getElementsByTagName("see").length || document.getElementsByTagName("code").length;
  if (!web || !wanted) {
    fsLinkReferences(false);
    return;
  }
  fsLoadScript(fsIndexName + ".js", function () {
    var indexed = fsBuildModules();
    if (indexed) fsLinkTypes();
    fsLinkReferences(indexed);
  });
}

var fsShownPage = "";

// The page an address asks for: "#Page.htm", else "?page=Page.htm".
function fsRequestedPage() {
  var hash = fsDecode(String(location.hash || "").replace(/^#/, ""));
  if (fsIsPageName(hash)) return hash;
  var query = /[?&]page=([^&#]*)/.exec(String(location.search || ""));
  var page = query ? fsDecode(query[1].replace(/\+/g, " ")) : "";
  return fsIsPageName(page) ? page : "";
}

function fsContentFrame() {
  var frames = document.getElementsByTagName("frame");
  for (var i = 0; i < frames.length; i++) {
    if (frames[i].name == "FrameRechts") return frames[i].contentWindow;
  }
  return null;
}

// Shows `page` in the content frame without a history entry of its own.
function fsShowInContent(page) {
  var content = fsContentFrame();
  if (!content || page == fsShownPage) return;
  fsShownPage = page;
  content.location.replace(page);
}

// The frame set follows its address (also when it changes by hand) and
// keeps it on the page the content frame shows; the content frame's own
// history entries make the back button work.
function fsFrameSetStart() {
  var wanted = fsRequestedPage();
  if (wanted) fsShowInContent(wanted);
  fsListen(window, "hashchange", function () {
    var page = fsRequestedPage();
    if (page) fsShowInContent(page);
  });
  fsListen(window, "message", function (e) {
    var match = /^folioscope:shown:(.*)$/.exec(typeof e.data == "string" ? e.data : "");
    if (!match || !fsIsPageName(match[1])) return;
    var page = match[1];
    fsShownPage = page;
    if (page == "Projekt.htm" && !location.hash) return;
    if (fsRequestedPage() != page) location.replace("#" + page);
  });
}

var fsStarted = false;
function fsStart() {
  if (fsStarted || !document.body) return;
  fsStarted = true;
  if (document.getElementsByTagName("frameset").length) fsFrameSetStart();
  else if (document.body.className == "menu") fsMenuStart();
  else if (document.body.className == "page") fsContentStart();
}

if (document.addEventListener) document.addEventListener("DOMContentLoaded", fsStart, false);
fsListen(window, "load", fsStart);
