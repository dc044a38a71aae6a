// CRessource: the chosen report set's 28 decrypted templates and the
// PlaceHolder and SpecificLanguage dictionaries from its Description.dat.
// Construction loads everything (file names from Res/IndexComment.ini,
// templates, description); Ready() tells whether all three steps succeeded.
#ifndef FOLIOSCOPE_REPORTSETS_RESSOURCE_H_
#define FOLIOSCOPE_REPORTSETS_RESSOURCE_H_

#include <cstdint>
#include <string>

#include "infra/dictionary.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

class CRessource {
 public:
  CRessource();

  vb::Dictionary& PlaceHolder() { return place_holder_; }
  vb::Dictionary& SpecificLanguage() { return specific_language_; }
  int32_t PlaceholderCount() const { return placeholder_count_; }
  int32_t SpecificLanguageCount() const { return specific_language_count_; }
  bool Ready() const { return ready_; }
  std::string Name() const { return ""; }

  // The 28 templates.
  const std::string& MemberInhaltOben() const { return t_[0]; }
  const std::string& MemberInhaltMitte() const { return t_[1]; }
  const std::string& MemberInhaltUnten() const { return t_[2]; }
  const std::string& ModulInhaltOben() const { return t_[3]; }
  const std::string& ModulInhaltMitte() const { return t_[4]; }
  const std::string& ModulInhaltUnten() const { return t_[5]; }
  const std::string& Projekt() const { return t_[6]; }
  const std::string& Index() const { return t_[7]; }
  const std::string& IndexFrameLinksOben() const { return t_[8]; }
  const std::string& IndexFrameLinksKnoten() const { return t_[9]; }
  const std::string& IndexFrameLinksModul() const { return t_[10]; }
  const std::string& IndexFrameLinksUnten() const { return t_[11]; }
  const std::string& Logo() const { return t_[12]; }
  const std::string& DDHTMLSeiteOben() const { return t_[13]; }
  const std::string& DDMemberOben() const { return t_[14]; }
  const std::string& DDKonstantenOben() const { return t_[15]; }
  const std::string& DDKonstantenUnten() const { return t_[16]; }
  const std::string& DDVariablenOben() const { return t_[17]; }
  const std::string& DDVariablenUnten() const { return t_[18]; }
  const std::string& DDEnumOben() const { return t_[19]; }
  const std::string& DDEnumUnten() const { return t_[20]; }
  const std::string& DDTypenOben() const { return t_[21]; }
  const std::string& DDTypenUnten() const { return t_[22]; }
  const std::string& DDMemberUnten() const { return t_[23]; }
  void SetDDMemberUnten(std::string text) { t_[23] = std::move(text); }
  const std::string& DDHTMLSeiteUnten() const { return t_[24]; }
  const std::string& TagEndTable() const { return t_[25]; }
  const std::string& DDEnum() const { return t_[26]; }
  const std::string& DDType() const { return t_[27]; }

 private:
  // Load order: File5, File4, File6, File7, File8, File28, File9, File1,
  // File2, File11, File12, File3, File10, File13 .. File27.
  std::string t_[28];
  bool GetRessourceFileNames();
  bool GetRessourceContents();
  bool GetRessourceDescription();

  std::string report_path_;
  std::string report_language_;
  vb::Dictionary file_names_;  // "File1" .. "File28" -> name below Res
  CWinAPICrypt crypt_;
  vb::Dictionary place_holder_;
  vb::Dictionary specific_language_;
  int32_t placeholder_count_ = 0;
  int32_t specific_language_count_ = 0;
  bool ready_ = false;
};

// The messages of a failed load (Windows-1252). A name in IndexComment.ini
// or the ReportPath setting that leads out of Res is refused and logged:
std::string RefusedNameMessage(const std::string& name, const std::string& res_folder);
// Shown and logged when Res/IndexComment.ini is missing.
std::string MissingIniMessage(const std::string& ini_file);
// Lists the set's files that are missing or empty after decryption, one
// path and CR LF each.
std::string UnloadedFilesMessage(const std::string& set_folder, const std::string& failures);
// Shown and logged when the set's Description.dat is missing or empty.
std::string MissingDescriptionMessage(const std::string& path);

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_RESSOURCE_H_
