#include "pages/search_index.h"

#include <gtest/gtest.h>

#include <string>

namespace folioscope {
namespace {

TEST(FirstSentence, PlainTextOfTheFirstSentence) {
  const struct {
    const char* summary;
    const char* sentence;
  } cases[] = {
      {"Bucht einen Betrag auf das Konto.", "Bucht einen Betrag auf das Konto."},
      {"Erster Satz. Zweiter Satz.", "Erster Satz."},
      {"Wirklich? Ja.", "Wirklich?"},
      {"Die Nummer, z. B. 1000 f\xFCr die Kasse. Mehr.",
       "Die Nummer, z. B. 1000 f\xFCr die Kasse."},
      {"Version 1.5 ist neu. Alt.", "Version 1.5 ist neu."},
      {"Endet mit Punkt. und geht klein weiter", "Endet mit Punkt. und geht klein weiter"},
      {"Siehe <see cref=\"CKonto.Buchen\"/> und <b>fett</b>.", "Siehe CKonto.Buchen und fett."},
      {"Zeile<br>zwei", "Zeile zwei"},
      {"a &lt; b &amp;&amp; c&nbsp;d &quot;e&quot;", "a < b && c d \"e\""},
      {"  eins\r\n   zwei\t drei  ", "eins zwei drei"},
      {"Text <b", "Text"},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(FirstSentence(c.summary), c.sentence) << c.summary;

  std::string words;
  for (int i = 0; i < 40; ++i) words += "Wort ";
  const std::string cut = FirstSentence(words);
  EXPECT_LE(cut.size(), 163u);
  EXPECT_EQ(cut.substr(cut.size() - 8), " Wort...");
}

TEST(ScriptStringLiteral, AsciiWithEscapes) {
  const struct {
    const char* text;
    const char* literal;
  } cases[] = {
      {"CKonto", "\"CKonto\""},
      {"a\"b\\c", "\"a\\\"b\\\\c\""},
      {"Pr\xFC"
       "fe\xDF",
       "\"Pr\\u00fcfe\\u00df\""},
      {"\x80 \x9F", "\"\\u20ac \\u0178\""},
      {"\t\r\n", "\"\\u0009\\u000d\\u000a\""},
      {"</script>", "\"</script>\""},
  };
  for (const auto& c : cases) EXPECT_EQ(ScriptStringLiteral(c.text), c.literal) << c.text;
}

TEST(SearchIndex, NamesAndTextsByModule) {
  SearchIndex index;
  index.AddMember("Verloren", "Sub", "Vor jedem Modul.");
  index.AddModule("CKonto", "Class", "Ein Konto. Mit Saldo.");
  index.AddMember("Get Saldo", "Property", "Der Saldo.");
  index.AddMember("Z\xE4hle", "Function", "");
  index.AddModule("modKasse", "Module", "");
  index.AddMember("Buchen", "Function", "Bucht <see cref=\"CKonto\"/>.");
  EXPECT_EQ(index.NamesScript(),
            "var FolioscopeNames={k:[\"Class\",\"Property\",\"Function\",\"Module\"],m:[\n"
            "[\"CKonto\",0,\"Get Saldo\",1,\"Z\\u00e4hle\",2],\n"
            "[\"modKasse\",3,\"Buchen\",2]]};");
  EXPECT_EQ(index.TextsScript(),
            "var FolioscopeTexts=[\n"
            "[\"Ein Konto.\",\"Der Saldo.\",\"\"],\n"
            "[\"\",\"Bucht CKonto.\"]];");

  EXPECT_EQ(SearchIndex().NamesScript(), "var FolioscopeNames={k:[],m:[]};");
}

}  // namespace
}  // namespace folioscope
