' The report-set catalogue read through COM from the application folder of
' the DLL: the shipped set "Standard" with its two languages, lookups by
' number, numeric text and key, and the error of an unknown key.
Dim sets, first, byKey, byText, languages, missing

On Error Resume Next
Set sets = CreateObject("VBFolioscope.CReportSets")
CheckNoComError "CreateObject CReportSets"
Check sets.Count >= 1, "the catalogue lists the shipped report set"
Set first = sets.Item(0)
CheckNoComError "Item(0)"
CheckEqual first.QuellPath, "Standard", "QuellPath of the first set"
Set byKey = sets.Item("Standard")
CheckNoComError "Item(""Standard"")"
CheckEqual byKey.Name, first.Name, "the set by its folder name is the first set"
Set byText = sets(" 0 ")
CheckNoComError "default member with numeric text"
CheckEqual byText.QuellPath, "Standard", "numeric text counts as a position"

Set languages = first.Languages
CheckEqual languages.Count, 2, "languages of Standard"
CheckEqual languages.Item(0).Name, "Deutsch", "first language"
CheckEqual languages.Item("English").Name, "English", "language by key"

Set missing = sets.Item("KeinSolchesSet")
CheckComError "Item of an unknown key"
Set missing = sets.Item(sets.Count)
CheckComError "Item past the last position"
Set missing = languages.Item(Nothing)
CheckComError "Item(Nothing)"
Check sets.Count >= 1, "the catalogue still answers after the errors"
Finish
