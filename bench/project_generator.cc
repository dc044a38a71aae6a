#include "project_generator.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <string_view>

#include "infra/text_encoding.h"

namespace folioscope::bench {

namespace {

// splitmix64: small, fast and fully defined, so a seed means the same
// project on every machine.
class Rng {
 public:
  explicit Rng(uint64_t seed) : state_(seed) {}
  uint64_t Next() {
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint64_t>(n)); }
  int Between(int lo, int hi) { return lo + Below(hi - lo + 1); }
  bool Chance(int percent) { return Below(100) < percent; }
  template <class T, size_t N>
  const T& Pick(const T (&items)[N]) {
    return items[Below(static_cast<int>(N))];
  }

 private:
  uint64_t state_;
};

// ---------------------------------------------------------------------------
// Vocabulary. Identifiers are ASCII (they become file names); comment texts
// are written in UTF-8 here and turned into Windows-1252 per file.

const char* const kNouns[] = {
    "Kunde",        "Auftrag",      "Rechnung",    "Artikel",    "Lager",   "Buchung",
    "Konto",        "Lieferant",    "Bestellung",  "Mahnung",    "Zahlung", "Preis",
    "Rabatt",       "Steuer",       "Adresse",     "Vertrag",    "Termin",  "Beleg",
    "Position",     "Waehrung",     "Export",      "Import",     "Bericht", "Protokoll",
    "Benutzer",     "Rolle",        "Einstellung", "Verbindung", "Abfrage", "Datei",
    "Ordner",       "Tabelle",      "Liste",       "Status",     "Filter",  "Gutschrift",
    "Lieferschein", "Kostenstelle", "Mitarbeiter", "Projekt",    "Angebot", "Versand"};
const char* const kSuffixes[] = {"Verwaltung", "Dienst", "Liste",   "Cache",  "Editor",   "Export",
                                 "Manager",    "Helfer", "Ansicht", "Dialog", "Pruefung", "Daten"};
const char* const kVerbs[] = {
    "Lade",         "Speichere", "Pruefe",   "Berechne",  "Erzeuge",    "Loesche",
    "Aktualisiere", "Suche",     "Sortiere", "Drucke",    "Exportiere", "Importiere",
    "Formatiere",   "Validiere", "Setze",    "Hole",      "Oeffne",     "Schliesse",
    "Sende",        "Empfange",  "Kopiere",  "Zaehle",    "Ermittle",   "Initialisiere",
    "Buche",        "Storniere", "Verbuche", "Archiviere"};
const char* const kPropertyNames[] = {
    "Wert",   "Anzahl", "Name",    "Bezeichnung", "Nummer",    "Betrag",     "Datum",
    "Status", "Aktiv",  "Text",    "Kennung",     "Pfad",      "Farbe",      "Breite",
    "Hoehe",  "Modus",  "Sprache", "Waehrung",    "Kategorie", "Prioritaet", "Version"};
const char* const kParamNames[] = {
    "Index",  "Anzahl", "Betrag",   "Text",     "Kundennummer", "Stichtag", "Modus",
    "Pfad",   "Wert",   "Optionen", "Trenner",  "Sprache",      "Status",   "Menge",
    "Preis",  "Faktor", "Kennung",  "Benutzer", "Filter",       "Ziel",     "Quelle",
    "Laenge", "Start",  "Ende",     "Schalter", "Datensatz",    "Spalte",   "Zeile"};
const char* const kEventNames[] = {"Geaendert",   "Gespeichert", "Geladen",     "Fehler",
                                   "Fortschritt", "Abgebrochen", "Ausgewaehlt", "Bereit"};

struct TypeChoice {
  const char* name;
  bool object;  // needs Set
};
const TypeChoice kTypes[] = {{"Long", false},           {"String", false},    {"Integer", false},
                             {"Boolean", false},        {"Double", false},    {"Currency", false},
                             {"Date", false},           {"Variant", false},   {"Long", false},
                             {"String", false},         {"Collection", true}, {"Object", true},
                             {"ADODB.Recordset", true}, {"Byte", false},      {"Single", false}};

const char* const kPhrases[] = {
    "Lädt die Daten aus der Datenbank und prüft sie auf Vollständigkeit.",
    "Gibt die Anzahl der gültigen Einträge zurück.",
    "Berücksichtigt Rabattstaffeln für Großkunden und Sonderkonditionen.",
    "Schließt die Verbindung, sobald alle offenen Vorgänge beendet sind.",
    "Die Größe des Puffers wird bei Bedarf verdoppelt.",
    "Beträge werden kaufmännisch auf zwei Nachkommastellen gerundet (Währung: €).",
    "Übernimmt die Änderungen erst nach erfolgreicher Prüfung.",
    "Wird von der Rechnungsstellung und vom Mahnwesen aufgerufen.",
    "Ungültige Werte lösen einen Laufzeitfehler mit eigener Fehlernummer aus.",
    "Die Reihenfolge entspricht der Sortierung im Hauptformular.",
    "Maße werden intern in Twips geführt; die Anzeige erfolgt in Millimetern.",
    "Leere Zeichenfolgen gelten als nicht gesetzt.",
    "Für Gebühren gilt der am Stichtag gültige Steuersatz.",
    "Nur für den internen Gebrauch; die Schnittstelle kann sich ändern.",
    "Öffnet bei Bedarf eine neue Sitzung mit den Rechten des angemeldeten Benutzers.",
    "Der Aufruf ist idempotent: wiederholte Aufrufe ändern nichts mehr.",
};
const char* const kParamPhrases[] = {
    "Laufende Nummer, beginnend bei 1.",
    "Der zu prüfende Betrag in Euro.",
    "Text, der übernommen wird; führende Leerzeichen bleiben erhalten.",
    "Stichtag der Berechnung; ohne Angabe gilt das heutige Datum.",
    "Steuert, ob bestehende Einträge überschrieben werden.",
    "Größe in Bytes; 0 wählt die Voreinstellung.",
    "Kennung des Datensatzes in der Tabelle.",
    "Zusätzliche Werte, die unverändert weitergereicht werden.",
};
const char* const kCommentLines[] = {
    "' Prüfen, ob überhaupt Daten vorhanden sind",
    "' Summe über alle Positionen bilden",
    "' Hier wird der Fehler bewusst übergangen (Altbestand)",
    "' TODO: Sonderfall für Großkunden klären",
    "' Werte zwischenspeichern, damit die Schleife schneller läuft",
    "' Änderungen erst am Ende übernehmen",
};

// ---------------------------------------------------------------------------
// Text building

class Text {
 public:
  void Line(std::string_view s) {
    out_.append(s);
    out_.append("\r\n");
  }
  std::string& str() { return out_; }

 private:
  std::string out_;
};

std::string Indent(int level) { return std::string(static_cast<size_t>(level) * 4, ' '); }

// ---------------------------------------------------------------------------
// Module kinds

struct KindInfo {
  const char* kind;
  const char* folder;
  const char* extension;
  const char* prefix;
  int weight;  // share in percent
};
const KindInfo kKinds[] = {
    {"Form", "Formulare", "frm", "frm", 20},
    {"Module", "Module", "bas", "mod", 25},
    {"Class", "Klassen", "cls", "cls", 40},
    {"UserControl", "Steuerelemente", "ctl", "ctl", 6},
    {"PropertyPage", "Eigenschaftsseiten", "pag", "ppg", 4},
    {"Designer", "Designer", "Dsr", "dsr", 5},
};
constexpr int kKindCount = 6;

int DrawKind(Rng& rng) {
  int r = rng.Below(100);
  for (int k = 0; k < kKindCount; ++k) {
    if (r < kKinds[k].weight) return k;
    r -= kKinds[k].weight;
  }
  return 2;
}

bool IsObjectModule(const std::string& kind) { return kind != "Module"; }
bool CanDeclareEvents(const std::string& kind) {
  return kind == "Class" || kind == "Form" || kind == "UserControl";
}

// ---------------------------------------------------------------------------
// Members

struct PlannedMember {
  GeneratedMember model;
  std::string keyword;    // "Sub", "Function", "Property Get", ...
  std::string bare_name;  // name without the property form
  bool scope_written = true;
  bool is_static = false;
  bool object_value = false;          // Property Set / Get of an object
  bool handler = false;               // event handler of a control or the object itself
  std::vector<std::string> declared;  // parameter texts as written
};

std::string ParamText(const GeneratedParameter& p, bool type_written, bool passing_written) {
  std::string s;
  if (p.optional) s += "Optional ";
  if (p.param_array) s += "ParamArray ";
  if (passing_written) s += p.passing + " ";
  s += p.name;
  std::string type = p.type;
  bool array = type.size() > 2 && type.ends_with("()");
  if (array) {
    s += "()";
    type.resize(type.size() - 2);
  }
  if (type_written) s += " As " + type;
  if (p.has_default) s += " = " + p.default_value;
  return s;
}

const char* DefaultFor(const std::string& type, Rng& rng) {
  if (type == "Long" || type == "Integer" || type == "Byte") {
    static const char* const v[] = {"0", "1", "-1", "10", "100"};
    return rng.Pick(v);
  }
  if (type == "String") {
    static const char* const v[] = {"\"\"", "vbNullString", "\", \"", "\"Standard\""};
    return rng.Pick(v);
  }
  if (type == "Boolean") return rng.Chance(50) ? "False" : "True";
  if (type == "Double" || type == "Single" || type == "Currency")
    return rng.Chance(50) ? "0" : "1.5";
  return nullptr;
}

// Draws the parameter list of a Sub or Function: required ones, then either
// an optional tail or a ParamArray.
void DrawParameters(PlannedMember& m, Rng& rng, int max_count) {
  static const int kCountWeights[] = {0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 4, 5};
  int count = std::min(max_count, rng.Pick(kCountWeights));
  std::set<std::string> used;
  bool optional_tail = rng.Chance(25);
  bool param_array = !optional_tail && count > 0 && rng.Chance(6);
  int first_optional = optional_tail ? std::max(0, count - rng.Between(1, 2)) : count;
  for (int i = 0; i < count; ++i) {
    GeneratedParameter p;
    do {
      p.name = rng.Pick(kParamNames);
    } while (!used.insert(p.name).second);
    bool last = i == count - 1;
    if (param_array && last) {
      p.param_array = true;
      p.passing = "ByRef";
      p.type = "Variant()";
      p.name = "Werte";
      m.declared.push_back(ParamText(p, true, false));
      m.model.parameters.push_back(p);
      break;
    }
    const TypeChoice& t = rng.Pick(kTypes);
    bool type_written = rng.Below(100) >= 4;
    p.type = type_written ? t.name : "Variant";
    bool array = type_written && !t.object && rng.Chance(5);
    int mode = rng.Below(100);
    bool passing_written = mode < 65 && !array;
    p.passing = (mode < 50 && !array) ? "ByVal" : "ByRef";
    if (array) p.type += "()";
    if (i >= first_optional && !array) {
      p.optional = true;
      const char* d = type_written ? DefaultFor(p.type, rng) : nullptr;
      if (d) {
        p.has_default = true;
        p.default_value = d;
      }
    }
    m.declared.push_back(ParamText(p, type_written, passing_written));
    m.model.parameters.push_back(p);
  }
}

// ---------------------------------------------------------------------------
// Doc comments

std::string Phrase(Rng& rng) { return rng.Pick(kPhrases); }

void WriteSummary(Text& t, Rng& rng, const std::string& subject) {
  if (rng.Chance(40)) {
    t.Line("'/// <summary>" + subject + " " + Phrase(rng) + "</summary>");
    return;
  }
  t.Line("'/// <summary>");
  t.Line("'/// " + subject);
  int more = rng.Between(0, 2);
  for (int i = 0; i < more; ++i) t.Line("'/// " + Phrase(rng));
  t.Line("'/// </summary>");
}

void WriteDocComment(Text& t, Rng& rng, const PlannedMember& m) {
  const GeneratedMember& g = m.model;
  std::string subject = g.kind == "Property" ? "Liefert oder setzt " + m.bare_name + "."
                        : g.kind == "OutEvent"
                            ? "Wird ausgelöst, wenn " + m.bare_name + " eintritt."
                            : m.bare_name + ": " + Phrase(rng);
  WriteSummary(t, rng, subject);
  for (const GeneratedParameter& p : g.parameters) {
    if (rng.Chance(10)) {
      t.Line("'/// <param name=\"" + p.name + "\">" + rng.Pick(kParamPhrases));
      t.Line("'/// " + Phrase(rng) + "</param>");
    } else {
      t.Line("'/// <param name=\"" + p.name + "\">" + rng.Pick(kParamPhrases) + "</param>");
    }
  }
  if (!g.return_type.empty()) {
    t.Line("'/// <returns>Der ermittelte Wert vom Typ " + g.return_type + "; " + Phrase(rng) +
           "</returns>");
  }
  if (rng.Chance(40)) {
    t.Line("'/// <remarks>" + Phrase(rng));
    if (rng.Chance(50)) t.Line("'/// " + Phrase(rng));
    t.Line("'/// " + Phrase(rng) + "</remarks>");
  }
  if (g.kind != "OutEvent" && rng.Chance(30)) {
    t.Line("'/// <code>");
    t.Line("'/// Dim oObjekt As New clsBeispiel");
    t.Line("'/// Dim lErgebnis As Long");
    if (rng.Chance(50)) t.Line("'/// If oObjekt.Pruefe(\"Müller\") Then");
    t.Line("'///     lErgebnis = oObjekt." + m.bare_name + "(1, \"Größe\")");
    if (rng.Chance(50)) t.Line("'/// End If");
    t.Line("'/// </code>");
  }
}

// ---------------------------------------------------------------------------
// Procedure bodies

struct BodyContext {
  std::string exit_word;  // "Sub", "Function", "Property"
  std::string result;     // assignment target for Functions and Property Get
  bool object_result = false;
  std::string module_name;
  std::string procedure;
};

void WriteStatement(Text& t, Rng& rng, int level, int depth);

void WriteSimple(Text& t, Rng& rng, int level) {
  std::string in = Indent(level);
  switch (rng.Below(9)) {
    case 0:
      t.Line(in + "lAnzahl = lAnzahl + 1");
      break;
    case 1:
      t.Line(in + "sText = sText & \"" + std::string(rng.Pick(kNouns)) +
             " \" & CStr(lIndex) & vbCrLf");
      break;
    case 2:
      t.Line(in + rng.Pick(kCommentLines));
      break;
    case 3:
      t.Line(in + "sSQL = \"SELECT Nummer, Name, Straße, PLZ, Ort FROM " + rng.Pick(kNouns) +
             " \" & _");
      t.Line(in + "       \"WHERE Status = \" & CStr(lStatus) & \" ORDER BY Name\"");
      break;
    case 4:
      t.Line(in + "Debug.Print \"" + std::string(rng.Pick(kVerbs)) + ": \"; lAnzahl");
      break;
    case 5:
      t.Line(in + "cSumme = cSumme + Round(cBetrag * (1 + dSteuersatz / 100), 2)");
      break;
    case 6:
      t.Line(in + "If lAnzahl Mod 100 = 0 Then DoEvents");
      break;
    case 7:
      t.Line(in + "bGefunden = (InStr(1, sText, sSuche, vbTextCompare) > 0)");
      break;
    default:
      t.Line(in + "Set oEintrag = m_colEintraege.Item(CStr(lIndex))");
      break;
  }
}

void WriteBlock(Text& t, Rng& rng, int level, int depth) {
  std::string in = Indent(level);
  switch (rng.Below(5)) {
    case 0:
      t.Line(in + "If lAnzahl > 0 And Len(sText) > 0 Then");
      WriteStatement(t, rng, level + 1, depth + 1);
      if (rng.Chance(50)) {
        t.Line(in + "Else");
        WriteStatement(t, rng, level + 1, depth + 1);
      }
      t.Line(in + "End If");
      break;
    case 1:
      t.Line(in + "For lIndex = 1 To m_colEintraege.Count");
      WriteStatement(t, rng, level + 1, depth + 1);
      WriteSimple(t, rng, level + 1);
      t.Line(in + "Next lIndex");
      break;
    case 2:
      t.Line(in + "Select Case lStatus");
      t.Line(in + "    Case 0, 1");
      WriteSimple(t, rng, level + 2);
      t.Line(in + "    Case Is > 100");
      WriteStatement(t, rng, level + 2, depth + 1);
      t.Line(in + "    Case Else");
      t.Line(in + "        Err.Raise vbObjectError + 513, MODUL_NAME, \"Unzulässiger Status\"");
      t.Line(in + "End Select");
      break;
    case 3:
      t.Line(in + "With m_rsDaten");
      t.Line(in + "    Do While Not .EOF");
      WriteSimple(t, rng, level + 2);
      t.Line(in + "        .MoveNext");
      t.Line(in + "    Loop");
      t.Line(in + "End With");
      break;
    default:
      t.Line(in + "If Not m_oVerbindung Is Nothing Then m_oVerbindung.Close");
      break;
  }
}

void WriteStatement(Text& t, Rng& rng, int level, int depth) {
  if (depth < 2 && rng.Chance(35)) {
    WriteBlock(t, rng, level, depth);
  } else {
    WriteSimple(t, rng, level);
  }
}

void WriteBody(Text& t, Rng& rng, const BodyContext& c) {
  bool handler = rng.Chance(40);
  t.Line("    Dim lAnzahl As Long, lIndex As Long, lStatus As Long");
  t.Line("    Dim sText As String, sSQL As String, sSuche As String, bGefunden As Boolean");
  t.Line("    Dim cSumme As Currency, cBetrag As Currency, dSteuersatz As Double");
  t.Line("    Dim oEintrag As Object");
  if (handler) {
    t.Line("");
    t.Line("    On Error GoTo Fehler");
  }
  t.Line("");
  int statements = rng.Between(1, 6);
  for (int i = 0; i < statements; ++i) WriteStatement(t, rng, 1, 0);
  if (!c.result.empty()) {
    t.Line(std::string("    ") + (c.object_result ? "Set " : "") + c.result + " = " +
           (c.object_result ? "m_colEintraege" : "lAnzahl"));
  }
  if (handler) {
    t.Line("    Exit " + c.exit_word);
    t.Line("");
    t.Line("Fehler:");
    t.Line("    Err.Raise Err.Number, MODUL_NAME & \"." + c.procedure + "\", Err.Description");
  }
}

// ---------------------------------------------------------------------------
// Member planning

class MemberPlanner {
 public:
  MemberPlanner(Rng& rng, const std::string& kind) : rng_(rng), kind_(kind) {}

  std::vector<PlannedMember> Plan(int target) {
    PlanEvents();
    PlanHandlers();
    PlanProperties();
    while (procedures_ < target) PlanMethod();
    return std::move(members_);
  }

 private:
  std::string Scope(PlannedMember& m) {
    int r = rng_.Below(100);
    if (r < 5) {
      m.scope_written = false;
      return "Public";
    }
    bool friend_ok = IsObjectModule(kind_);
    if (friend_ok && r < 20) return "Friend";
    return r < 60 ? "Public" : "Private";
  }

  bool Reserve(const std::string& name) { return names_.insert(name).second; }

  void PlanEvents() {
    if (!CanDeclareEvents(kind_)) return;
    int count = kind_ == "UserControl" ? rng_.Between(1, 3) : rng_.Between(0, 2);
    for (int i = 0; i < count; ++i) {
      PlannedMember m;
      m.bare_name = rng_.Pick(kEventNames);
      if (!Reserve(m.bare_name)) continue;
      m.keyword = "Event";
      m.model = {m.bare_name, "OutEvent", "Public", "", {}, 0, false};
      int params = rng_.Between(0, 2);
      for (int p = 0; p < params; ++p) {
        GeneratedParameter gp{p == 0 ? "NeuerWert" : "Abbrechen",
                              p == 0 ? "Long" : "Boolean",
                              p == 0 ? "ByVal" : "ByRef",
                              false,
                              false,
                              false,
                              ""};
        m.declared.push_back(ParamText(gp, true, p == 0));
        m.model.parameters.push_back(gp);
      }
      members_.push_back(std::move(m));
    }
  }

  void AddHandler(const std::string& name, std::vector<GeneratedParameter> params) {
    if (!Reserve(name)) return;
    PlannedMember m;
    m.bare_name = name;
    m.keyword = "Sub";
    m.handler = true;
    m.model = {name, "Sub", "Private", "", {}, 0, false};
    for (const GeneratedParameter& p : params) {
      m.declared.push_back(ParamText(p, true, p.passing == "ByVal"));
      m.model.parameters.push_back(p);
    }
    members_.push_back(std::move(m));
    ++procedures_;
  }

  void PlanHandlers() {
    GeneratedParameter cancel{"Cancel", "Integer", "ByRef", false, false, false, ""};
    GeneratedParameter bag{"PropBag", "PropertyBag", "ByRef", false, false, false, ""};
    GeneratedParameter index{"Index", "Integer", "ByRef", false, false, false, ""};
    if (kind_ == "Form") {
      AddHandler("Form_Load", {});
      AddHandler("Form_Unload", {cancel});
      AddHandler("cmdOK_Click", {});
      AddHandler("cmdAbbrechen_Click", {});
      AddHandler("txtEingabe_Change", {index});
    } else if (kind_ == "UserControl") {
      AddHandler("UserControl_Initialize", {});
      AddHandler("UserControl_Resize", {});
      AddHandler("UserControl_ReadProperties", {bag});
      AddHandler("UserControl_WriteProperties", {bag});
    } else if (kind_ == "PropertyPage") {
      AddHandler("PropertyPage_ApplyChanges", {});
      AddHandler("PropertyPage_SelectionChanged", {});
      AddHandler("txtWert_Change", {});
    } else if (kind_ == "Designer") {
      AddHandler("DataEnvironment_Initialize", {});
      AddHandler("DataEnvironment_Terminate", {});
    } else if (kind_ == "Class") {
      AddHandler("Class_Initialize", {});
      AddHandler("Class_Terminate", {});
    }
  }

  void PlanProperties() {
    int count = kind_ == "Class" || kind_ == "UserControl" ? rng_.Between(2, 4)
                : kind_ == "Module" || kind_ == "Form"     ? rng_.Between(0, 1)
                                                           : 0;
    for (int i = 0; i < count; ++i) {
      std::string name = rng_.Pick(kPropertyNames);
      if (!Reserve(name)) continue;
      const TypeChoice& t = rng_.Pick(kTypes);
      bool indexed = rng_.Chance(15);
      bool read_only = rng_.Chance(25);
      PlannedMember get = Property("Get", name, t, indexed);
      std::string scope = get.model.scope;
      bool scope_written = get.scope_written;
      members_.push_back(get);
      ++procedures_;
      if (read_only) continue;
      PlannedMember set = Property(t.object ? "Set" : "Let", name, t, indexed);
      set.model.scope = scope;
      set.scope_written = scope_written;
      members_.push_back(std::move(set));
      ++procedures_;
    }
  }

  PlannedMember Property(const std::string& form, const std::string& name, const TypeChoice& t,
                         bool indexed) {
    PlannedMember m;
    m.bare_name = name;
    m.keyword = "Property " + form;
    m.object_value = t.object;
    m.model.name = form + " " + name;
    m.model.kind = "Property";
    m.model.scope = Scope(m);
    if (indexed) {
      GeneratedParameter p{"Index", "Long", "ByVal", false, false, false, ""};
      m.declared.push_back(ParamText(p, true, true));
      m.model.parameters.push_back(p);
    }
    if (form == "Get") {
      m.model.return_type = t.name;
    } else {
      GeneratedParameter p{
          t.object ? "oNewValue" : "vNewValue", t.name, "ByVal", false, false, false, ""};
      m.declared.push_back(ParamText(p, true, true));
      m.model.parameters.push_back(p);
    }
    return m;
  }

  void PlanMethod() {
    PlannedMember m;
    std::string name;
    do {
      name = std::string(rng_.Pick(kVerbs)) + rng_.Pick(kNouns);
      if (!names_.count(name)) break;
      name += std::to_string(procedures_);
    } while (names_.count(name));
    Reserve(name);
    m.bare_name = name;
    bool function = rng_.Chance(45);
    m.keyword = function ? "Function" : "Sub";
    m.model.name = name;
    m.model.kind = m.keyword;
    m.model.scope = Scope(m);
    m.is_static = rng_.Chance(2);
    DrawParameters(m, rng_, 5);
    if (function) {
      if (rng_.Chance(6)) {
        m.model.return_type = "Variant";  // the As clause may be left out
      } else if (rng_.Chance(5)) {
        m.model.return_type = "String()";
      } else {
        const TypeChoice& t = rng_.Pick(kTypes);
        m.model.return_type = t.name;
        m.object_value = t.object;
      }
    }
    members_.push_back(std::move(m));
    ++procedures_;
  }

  Rng& rng_;
  std::string kind_;
  std::set<std::string> names_;
  std::vector<PlannedMember> members_;
  int procedures_ = 0;
};

// ---------------------------------------------------------------------------
// Writing a member

// The declaration, broken with " _" continuations when it runs long, as
// developers do to keep within the editor's width.
void WriteDeclaration(Text& t, Rng& rng, const PlannedMember& m) {
  std::string head;
  if (m.keyword == "Event") {
    head = "Public Event " + m.bare_name;
  } else {
    if (m.scope_written) head = m.model.scope + " ";
    if (m.is_static) head += "Static ";
    head += m.keyword + " " + m.bare_name;
  }
  std::string tail = ")";
  if (!m.model.return_type.empty() && m.keyword != "Event") {
    bool written = !(m.model.return_type == "Variant" && m.keyword == "Function" && rng.Chance(50));
    if (written) {
      std::string rt = m.model.return_type;
      if (rt.ends_with("()")) {
        tail += " As " + rt.substr(0, rt.size() - 2) + "()";
      } else {
        tail += " As " + rt;
      }
    }
  }
  std::string one_line = head + "(";
  for (size_t i = 0; i < m.declared.size(); ++i) {
    if (i) one_line += ", ";
    one_line += m.declared[i];
  }
  if (one_line.size() + tail.size() <= 100 || m.declared.size() < 2 || !rng.Chance(70)) {
    t.Line(one_line + tail);
    return;
  }
  std::string pad(head.size() + 1, ' ');
  for (size_t i = 0; i < m.declared.size(); ++i) {
    std::string piece = (i == 0 ? head + "(" : pad) + m.declared[i];
    t.Line(i + 1 < m.declared.size() ? piece + ", _" : piece + tail);
  }
}

void WriteMemberAttributes(Text& t, Rng& rng, PlannedMember& m, int32_t help_id,
                           bool first_property) {
  if (rng.Chance(35)) {
    t.Line("Attribute " + m.bare_name + ".VB_Description = \"" + Phrase(rng) + "\"");
    m.model.has_description = true;
  }
  if (help_id > 0) {
    t.Line("Attribute " + m.bare_name + ".VB_HelpID = " + std::to_string(help_id));
    m.model.help_context_id = help_id;
  }
  if (first_property) t.Line("Attribute " + m.bare_name + ".VB_UserMemId = 0");
}

void WriteProcedure(Text& t, Rng& rng, PlannedMember& m, int32_t help_id, bool first_property,
                    const std::string& module_name) {
  if (!rng.Chance(8)) {
    WriteDocComment(t, rng, m);
  } else if (rng.Chance(50)) {
    t.Line("' " + Phrase(rng));
  }
  WriteDeclaration(t, rng, m);
  // Let and Set share the attributes of their Get, which VB writes once.
  if (!m.handler && m.keyword != "Property Let" && m.keyword != "Property Set") {
    WriteMemberAttributes(t, rng, m, help_id, first_property);
  }
  BodyContext c;
  c.exit_word = m.keyword.starts_with("Property") ? "Property" : m.keyword;
  c.procedure = m.bare_name;
  c.module_name = module_name;
  if (m.keyword == "Function" || m.keyword == "Property Get") {
    c.result = m.bare_name;
    c.object_result = m.object_value;
    if (m.model.return_type.ends_with("()")) c.result.clear();
  }
  WriteBody(t, rng, c);
  std::string end_word = m.keyword.starts_with("Property") ? "Property" : m.keyword;
  t.Line("End " + end_word);
  t.Line("");
}

// ---------------------------------------------------------------------------
// Module files

std::string Guid(Rng& rng) {
  char buf[40];
  uint64_t a = rng.Next(), b = rng.Next();
  std::snprintf(buf, sizeof buf, "{%08X-%04X-%04X-%04X-%012llX}", static_cast<unsigned>(a >> 32),
                static_cast<unsigned>((a >> 16) & 0xFFFF), static_cast<unsigned>(a & 0xFFFF),
                static_cast<unsigned>(b >> 48),
                static_cast<unsigned long long>(b & 0xFFFFFFFFFFFFull));
  return buf;
}

const char* const kComctlObject =
    "Object = \"{831FDD16-0C5C-11D2-A9FC-0000F8754DA1}#2.0#0\"; \"MSCOMCTL.OCX\"";
const char* const kComdlgObject =
    "Object = \"{F9043C88-F6F2-101A-A3C9-08002B2F49FB}#1.2#0\"; \"COMDLG32.OCX\"";

void WriteFontBlock(Text& t, const std::string& in) {
  t.Line(in + "BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} ");
  t.Line(in + "   Name            =   \"MS Sans Serif\"");
  t.Line(in + "   Size            =   8.25");
  t.Line(in + "   Charset         =   0");
  t.Line(in + "   Weight          =   700");
  t.Line(in + "   Underline       =   0   'False");
  t.Line(in + "   Italic          =   0   'False");
  t.Line(in + "   Strikethrough   =   0   'False");
  t.Line(in + "EndProperty");
}

void WriteControl(Text& t, const std::string& type, const std::string& name, int level,
                  int tab_index, const std::string& caption) {
  std::string in(static_cast<size_t>(level) * 3, ' ');
  t.Line(in + "Begin " + type + " " + name + " ");
  if (!caption.empty()) t.Line(in + "   Caption         =   \"" + caption + "\"");
  t.Line(in + "   Height          =   375");
  t.Line(in + "   Left            =   " + std::to_string(120 + tab_index * 240));
  t.Line(in + "   TabIndex        =   " + std::to_string(tab_index));
  t.Line(in + "   Top             =   " + std::to_string(240 + tab_index * 480));
  t.Line(in + "   Width           =   1215");
  t.Line(in + "End");
}

void WriteFormDesigner(Text& t, Rng& rng, const std::string& name, bool listview) {
  t.Line("Begin VB.Form " + name + " ");
  t.Line("   BorderStyle     =   3  'Fixed Dialog");
  t.Line("   Caption         =   \"" + std::string(rng.Pick(kNouns)) + " bearbeiten – Übersicht\"");
  t.Line("   ClientHeight    =   5865");
  t.Line("   ClientLeft      =   45");
  t.Line("   ClientTop       =   330");
  t.Line("   ClientWidth     =   8430");
  if (rng.Chance(30)) t.Line("   Icon            =   \"" + name + ".frx\":0000");
  t.Line("   LinkTopic       =   \"Form1\"");
  t.Line("   MaxButton       =   0   'False");
  t.Line("   ScaleHeight     =   5865");
  t.Line("   ScaleWidth      =   8430");
  t.Line("   StartUpPosition =   1  'CenterOwner");
  t.Line("   Begin VB.Frame fraDaten ");
  t.Line("      Caption         =   \"Stammdaten\"");
  WriteFontBlock(t, "      ");
  t.Line("      Height          =   2655");
  t.Line("      Left            =   120");
  t.Line("      TabIndex        =   0");
  t.Line("      Top             =   120");
  t.Line("      Width           =   8175");
  for (int i = 0; i < 2; ++i) {
    t.Line("      Begin VB.TextBox txtEingabe ");
    t.Line("         Height          =   315");
    t.Line("         Index           =   " + std::to_string(i));
    t.Line("         Left            =   1800");
    t.Line("         TabIndex        =   " + std::to_string(1 + i));
    t.Line("         Text            =   \"\"");
    t.Line("         Top             =   " + std::to_string(360 + i * 420));
    t.Line("         Width           =   3015");
    t.Line("      End");
  }
  WriteControl(t, "VB.Label", "lblHinweis", 2, 3, "Straße / Größe:");
  t.Line("   End");
  if (listview) {
    t.Line("   Begin MSComctlLib.ListView lvwEintraege ");
    t.Line("      Height          =   2175");
    t.Line("      Left            =   120");
    t.Line("      TabIndex        =   4");
    t.Line("      Top             =   2880");
    t.Line("      Width           =   8175");
    t.Line("      _ExtentX        =   14420");
    t.Line("      _ExtentY        =   3836");
    t.Line("      View            =   3");
    t.Line("      LabelEdit       =   1");
    t.Line("      _Version        =   393217");
    WriteFontBlock(t, "      ");
    t.Line("      NumItems        =   0");
    t.Line("   End");
  }
  WriteControl(t, "VB.CommandButton", "cmdOK", 1, 5, "OK");
  WriteControl(t, "VB.CommandButton", "cmdAbbrechen", 1, 6, "Abbrechen");
  t.Line("End");
}

void WriteUserControlDesigner(Text& t, const std::string& name) {
  t.Line("Begin VB.UserControl " + name + " ");
  t.Line("   ClientHeight    =   3600");
  t.Line("   ClientLeft      =   0");
  t.Line("   ClientTop       =   0");
  t.Line("   ClientWidth     =   4800");
  t.Line("   ScaleHeight     =   3600");
  t.Line("   ScaleWidth      =   4800");
  t.Line("   Begin VB.PictureBox picRahmen ");
  t.Line("      BorderStyle     =   0  'None");
  t.Line("      Height          =   3375");
  t.Line("      Left            =   0");
  t.Line("      ScaleHeight     =   3375");
  t.Line("      ScaleWidth      =   4695");
  t.Line("      TabIndex        =   0");
  t.Line("      Top             =   0");
  t.Line("      Width           =   4695");
  WriteControl(t, "VB.Label", "lblTitel", 2, 1, "Überschrift");
  t.Line("   End");
  t.Line("End");
}

void WritePropertyPageDesigner(Text& t, const std::string& name) {
  t.Line("Begin VB.PropertyPage " + name + " ");
  t.Line("   Caption         =   \"Allgemein\"");
  t.Line("   ClientHeight    =   3495");
  t.Line("   ClientLeft      =   0");
  t.Line("   ClientTop       =   0");
  t.Line("   ClientWidth     =   5925");
  t.Line("   PaletteMode     =   0  'Halftone");
  t.Line("   ScaleHeight     =   3495");
  t.Line("   ScaleWidth      =   5925");
  t.Line("   Begin VB.TextBox txtWert ");
  t.Line("      Height          =   330");
  t.Line("      Left            =   90");
  t.Line("      TabIndex        =   1");
  t.Line("      Top             =   370");
  t.Line("      Width           =   2700");
  t.Line("   End");
  WriteControl(t, "VB.Label", "lblWert", 1, 0, "Wert:");
  t.Line("End");
}

void WriteDataEnvironmentDesigner(Text& t, Rng& rng, const std::string& name) {
  t.Line("Begin {C0E45035-5775-11D0-B388-00A0C9055D8E} " + name + " ");
  t.Line("   ClientHeight    =   6855");
  t.Line("   ClientLeft      =   0");
  t.Line("   ClientTop       =   0");
  t.Line("   ClientWidth     =   8100");
  t.Line("   _ExtentX        =   14288");
  t.Line("   _ExtentY        =   12091");
  t.Line("   FolderFlags     =   1");
  t.Line("   TypeLibGuid     =   \"" + Guid(rng) + "\"");
  t.Line("   TypeInfoGuid    =   \"" + Guid(rng) + "\"");
  t.Line("   TypeInfoCookie  =   0");
  t.Line("   Version         =   4");
  t.Line("   NumConnections  =   1");
  t.Line("   BeginProperty Connection1 ");
  t.Line("      ConnectionName  =   \"conDaten\"");
  t.Line("      ConnDispId      =   1001");
  t.Line("      SourceOfData    =   3");
  t.Line("      ConnectionSource=   \"Provider=SQLOLEDB.1;Integrated Security=SSPI\"");
  t.Line("      Expanded        =   -1  'True");
  t.Line("   EndProperty");
  t.Line("   NumRecordsets   =   0");
  t.Line("End");
}

void WriteClassHeader(Text& t) {
  t.Line("VERSION 1.0 CLASS");
  t.Line("BEGIN");
  t.Line("  MultiUse = -1  'True");
  t.Line("  Persistable = 0  'NotPersistable");
  t.Line("  DataBindingBehavior = 0  'vbNone");
  t.Line("  DataSourceBehavior  = 0  'vbNone");
  t.Line("  MTSTransactionMode  = 0  'NotAnMTSObject");
  t.Line("END");
}

void WriteModuleAttributes(Text& t, Rng& rng, const std::string& kind, const std::string& name,
                           int32_t module_help_id) {
  t.Line("Attribute VB_Name = \"" + name + "\"");
  if (kind == "Module") return;
  t.Line("Attribute VB_GlobalNameSpace = False");
  t.Line(std::string("Attribute VB_Creatable = ") + (kind == "Form" ? "False" : "True"));
  t.Line(std::string("Attribute VB_PredeclaredId = ") +
         (kind == "Form" || kind == "Designer" ? "True" : "False"));
  t.Line(std::string("Attribute VB_Exposed = ") + (kind == "Class" ? "True" : "False"));
  if (kind == "Class" && rng.Chance(50)) {
    t.Line("Attribute VB_Description = \"" + Phrase(rng) + "\"");
  }
  if (kind == "Class" && module_help_id > 0) {
    t.Line("Attribute VB_HelpID = " + std::to_string(module_help_id));
  }
  if (kind == "Class" && rng.Chance(20)) {
    t.Line("Attribute VB_Ext_KEY = \"SavedWithClassBuilder6\" ,\"Yes\"");
    t.Line("Attribute VB_Ext_KEY = \"Top_Level\" ,\"Yes\"");
  }
}

void WriteDeclarations(Text& t, Rng& rng, const std::string& kind, const std::string& name,
                       std::vector<PlannedMember>& members) {
  t.Line("Option Explicit");
  t.Line("'/// <summary>");
  t.Line("'/// " + name + ": " + Phrase(rng));
  t.Line("'/// </summary>");
  if (rng.Chance(50)) t.Line("'/// <remarks>" + Phrase(rng) + "</remarks>");
  t.Line("");
  t.Line("Private Const MODUL_NAME As String = \"" + name + "\"");
  bool public_ok = kind == "Module" || kind == "Class";
  if (kind == "Module" || kind == "Class") {
    t.Line(std::string(kind == "Module" ? "Public" : "Private") +
           " Declare Function GetTickCount Lib \"kernel32\" () As Long");
    t.Line(std::string(kind == "Module" ? "Public" : "Private") +
           " Declare Function GetPrivateProfileString Lib \"kernel32\" Alias "
           "\"GetPrivateProfileStringA\" (ByVal lpApplicationName As String, _");
    t.Line(
        "    ByVal lpKeyName As Any, ByVal lpDefault As String, ByVal lpReturnedString As "
        "String, _");
    t.Line("    ByVal nSize As Long, ByVal lpFileName As String) As Long");
  }
  t.Line("");
  std::string enum_name = "e" + name.substr(3) + "Status";
  if (enum_name.size() > 40) enum_name.resize(40);
  t.Line(std::string(public_ok ? "Public" : "Private") + " Enum " + enum_name);
  t.Line("    esUnbekannt = 0");
  t.Line("    esAktiv = 1");
  t.Line("    esGesperrt = 2   ' gesperrt wegen Mahnstufe");
  t.Line("End Enum");
  t.Line("");
  t.Line("Private Type tPuffer");
  t.Line("    Laenge As Long");
  t.Line("    Daten() As Byte");
  t.Line("End Type");
  t.Line("");
  t.Line("Private m_colEintraege As Collection");
  t.Line("Private m_rsDaten As ADODB.Recordset");
  t.Line("Private m_oVerbindung As ADODB.Connection");
  t.Line("Private m_lWert As Long");
  if (kind == "Class") t.Line("Private WithEvents m_oQuelle As ADODB.Connection");
  for (PlannedMember& m : members) {
    if (m.keyword != "Event") continue;
    t.Line("");
    WriteDocComment(t, rng, m);
    WriteDeclaration(t, rng, m);
  }
  t.Line("");
}

GeneratedModule BuildModule(Rng& rng, const KindInfo& info, const std::string& name, int index,
                            int members_target) {
  GeneratedModule mod;
  mod.name = name;
  mod.kind = info.kind;
  mod.relative_path = std::string(info.folder) + "\\" + name + "." + info.extension;
  Text t;
  bool listview = rng.Chance(50);
  std::string kind = info.kind;
  if (kind == "Class") {
    WriteClassHeader(t);
  } else if (kind != "Module") {
    t.Line("VERSION 5.00");
    if (kind == "Form") {
      if (listview) t.Line(kComctlObject);
      if (rng.Chance(30)) t.Line(kComdlgObject);
      WriteFormDesigner(t, rng, name, listview);
    } else if (kind == "UserControl") {
      WriteUserControlDesigner(t, name);
    } else if (kind == "PropertyPage") {
      WritePropertyPageDesigner(t, name);
    } else {
      WriteDataEnvironmentDesigner(t, rng, name);
    }
  }
  int32_t base_help_id = 10000 + index * 100;
  int32_t module_help_id = rng.Chance(70) ? base_help_id : 0;
  WriteModuleAttributes(t, rng, kind, name, module_help_id);

  MemberPlanner planner(rng, kind);
  std::vector<PlannedMember> members = planner.Plan(members_target);
  WriteDeclarations(t, rng, kind, name, members);

  bool first_property = kind == "Class" && rng.Chance(20);
  int serial = 0;
  for (PlannedMember& m : members) {
    if (m.keyword == "Event") continue;
    ++serial;
    int32_t help_id = rng.Chance(70) ? base_help_id + serial : 0;
    bool default_member = first_property && m.keyword == "Property Get";
    if (default_member) first_property = false;
    WriteProcedure(t, rng, m, help_id, default_member, name);
  }
  mod.text = Utf8ToCp1252(t.str());

  mod.members.push_back(GeneratedMember{"Header", "", "", "", {}, 0, false});
  for (PlannedMember& m : members) mod.members.push_back(std::move(m.model));
  return mod;
}

std::string ModuleName(Rng& rng, const KindInfo& info, int index) {
  char serial[16];
  std::snprintf(serial, sizeof serial, "%04d", index);
  return std::string(info.prefix) + rng.Pick(kNouns) + rng.Pick(kSuffixes) + serial;
}

std::string ProjectFileText(const GeneratedProject& p, Rng& rng) {
  Text t;
  t.Line("Type=Exe");
  t.Line(
      "Reference=*\\G{00020430-0000-0000-C000-000000000046}#2.0#0#..\\..\\..\\WINDOWS\\system32\\"
      "stdole2.tlb#OLE Automation");
  t.Line(
      "Reference=*\\G{2A75196C-D9EB-4129-B803-931327F72D5C}#2.8#0#..\\..\\..\\Programme\\"
      "Gemeinsame Dateien\\System\\ado\\msado28.tlb#Microsoft ActiveX Data Objects 2.8 Library");
  t.Line("Object={831FDD16-0C5C-11D2-A9FC-0000F8754DA1}#2.0#0; MSCOMCTL.OCX");
  t.Line("Object={F9043C88-F6F2-101A-A3C9-08002B2F49FB}#1.2#0; COMDLG32.OCX");
  std::string startup;
  for (const GeneratedModule& m : p.modules) {
    if (m.kind == "Form") {
      t.Line("Form=" + m.relative_path);
      if (startup.empty()) startup = m.name;
    } else if (m.kind == "Module" || m.kind == "Class") {
      t.Line(m.kind + "=" + m.name + "; " + m.relative_path);
    } else {
      t.Line(m.kind + "=" + m.relative_path);
    }
  }
  t.Line("Startup=\"" + (startup.empty() ? std::string("Sub Main") : startup) + "\"");
  t.Line("HelpFile=\"\"");
  t.Line("Title=\"" + p.name + "\"");
  t.Line("ExeName32=\"" + p.name + ".exe\"");
  t.Line("Command32=\"\"");
  t.Line("Name=\"" + p.name + "\"");
  t.Line("HelpContextID=\"0\"");
  t.Line("Description=\"Warenwirtschaft – Großprojekt für Lasttests\"");
  t.Line("CompatibleMode=\"0\"");
  t.Line("MajorVer=" + std::to_string(rng.Between(1, 9)));
  t.Line("MinorVer=" + std::to_string(rng.Between(0, 20)));
  t.Line("RevisionVer=" + std::to_string(rng.Between(0, 999)));
  t.Line("AutoIncrementVer=0");
  t.Line("ServerSupportFiles=0");
  t.Line("VersionCompanyName=\"Müller & Söhne GmbH\"");
  t.Line("CompilationType=0");
  t.Line("OptimizationType=0");
  t.Line("FavorPentiumPro(tm)=0");
  t.Line("CodeViewDebugInfo=0");
  t.Line("NoAliasing=0");
  t.Line("BoundsCheck=0");
  t.Line("OverflowCheck=0");
  t.Line("FlPointCheck=0");
  t.Line("FDIVCheck=0");
  t.Line("UnroundedFP=0");
  t.Line("StartMode=0");
  t.Line("Unattended=0");
  t.Line("Retained=0");
  t.Line("ThreadPerObject=0");
  t.Line("MaxNumberOfThreads=1");
  t.Line("");
  t.Line("[MS Transaction Server]");
  t.Line("AutoRefresh=1");
  return Utf8ToCp1252(t.str());
}

}  // namespace

int64_t GeneratedProject::SourceBytes() const {
  int64_t total = static_cast<int64_t>(vbp_text.size());
  for (const GeneratedModule& m : modules) total += static_cast<int64_t>(m.text.size());
  return total;
}

int GeneratedProject::ProcedureCount() const {
  int count = 0;
  for (const GeneratedModule& m : modules) count += static_cast<int>(m.members.size()) - 1;
  return count;
}

GeneratedProject GenerateProject(const GeneratorOptions& options) {
  Rng rng(options.seed);
  GeneratedProject project;
  project.name = options.project_name;
  std::vector<int> kinds;
  for (int i = 0; i < options.modules; ++i) {
    kinds.push_back(i < kKindCount ? i : DrawKind(rng));
  }
  // The .vbp lists modules grouped by kind, as the IDE saves it.
  int index = 0;
  for (int k = 0; k < kKindCount; ++k) {
    for (int drawn : kinds) {
      if (drawn != k) continue;
      ++index;
      int spread = std::max(1, options.members_per_module * 3 / 10);
      int target = std::max(1, options.members_per_module + rng.Between(-spread, spread));
      project.modules.push_back(
          BuildModule(rng, kKinds[k], ModuleName(rng, kKinds[k], index), index, target));
    }
  }
  project.vbp_text = ProjectFileText(project, rng);
  return project;
}

bool WriteProject(const GeneratedProject& project, const std::string& folder, std::string* error) {
  namespace fs = std::filesystem;
  auto write = [&](const fs::path& path, const std::string& bytes) {
    std::error_code ec;
    fs::create_directories(path.parent_path(), ec);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
      *error = "cannot write " + path.string();
      return false;
    }
    return true;
  };
  fs::path root(folder);
  if (!write(root / (project.name + ".vbp"), project.vbp_text)) return false;
  for (const GeneratedModule& m : project.modules) {
    std::string relative = m.relative_path;
    for (char& c : relative) {
      if (c == '\\') c = '/';
    }
    if (!write(root / relative, m.text)) return false;
  }
  return true;
}

}  // namespace folioscope::bench
