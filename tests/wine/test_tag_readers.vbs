' The doc-comment readers and the formatter as public classes, on the member
' CKonto.Buchen of the sample project (it has every tag), and the template
' object CRessource of the chosen report set.
Dim project, member, reader, status, startLine, endLine, asDocument, formatter
Dim header, ressource

On Error Resume Next
ClearErrorLog
Set project = OpenSampleProject()
CheckNoComError "CProjektReader.Open"
Set member = project.Modules.Item("CKonto").Members.Item("Buchen")
CheckNoComError "the member CKonto.Buchen"

Set reader = CreateObject("VBFolioscope.CSummary")
CheckEqual reader.GetSummary(member), 0, "GetSummary result"
CheckEqual Trim(reader.SumaryContent), "Bucht einen Betrag auf das Konto.", "SumaryContent"

Set reader = CreateObject("VBFolioscope.CReturns")
CheckEqual reader.GetReturns(member), 0, "GetReturns result"
' The text has an a-umlaut: Windows-1252 byte 228 arrives as that character.
CheckContains reader.ReturnsContent, "wenn ein Empf" & Chr(228) & "nger abgebrochen hat", _
              "ReturnsContent with a character outside ASCII"

Set reader = CreateObject("VBFolioscope.CRemarks")
CheckEqual reader.GetRemarks(member), 0, "GetRemarks result"
CheckContains reader.RemarksContent, "LimitUnterschritten", "RemarksContent"
CheckContains reader.RemarksContent, "SaldoGeaendert", "RemarksContent, second line"

' CParam writes the description into the reader's own parameter object.
Set reader = CreateObject("VBFolioscope.CParam")
CheckEqual reader.GetParam(member), 0, "GetParam result"
CheckEqual member.Parameters.Item(1).Description, _
           "Die Buchung; sie wird dabei festgeschrieben.", "parameter description"

' CCode: the lines joined with <br>, or the formatter's coloured source.
Set reader = CreateObject("VBFolioscope.CCode")
CheckEqual reader.GetCode(member), 0, "GetCode result"
CheckContains reader.CodeContent, "b.Text = ""Porto""<br>", "CodeContent joined with <br>"
reader.GetAsPraeformated = True
CheckEqual reader.GetCode(member), 0, "GetCode, pre-formatted"
Check InStr(reader.CodeContent, "<br>") = 0 And InStr(reader.CodeContent, "Porto") > 0, _
      "pre-formatted CodeContent is the formatter's output: " & Shorten(reader.CodeContent)
CheckNoComError "the tag readers"

' CCodeFormat writes the member's last line back into Endline when it is 0.
Set formatter = CreateObject("VBFolioscope.CCodeFormat")
startLine = 1
endLine = 0
asDocument = False
CheckEqual formatter.ExecuteMember(member, startLine, endLine, asDocument), 0, "ExecuteMember"
CheckNoComError "ExecuteMember"
Check endLine > 1, "ExecuteMember wrote the last line into Endline (" & endLine & ")"
CheckContains formatter.FormatedCode, "Buchung.Festschreiben", "FormatedCode holds the body"
formatter.KeywordColor = "#123456"
CheckEqual formatter.KeywordColor, "#123456", "KeywordColor reads back"
endLine = 0
formatter.ExecuteMember member, startLine, endLine, asDocument
CheckContains formatter.FormatedCode, "#123456", "the keyword colour is used"
CheckNoComError "CCodeFormat"

' The header pseudo-member has no example.
Set header = project.Modules.Item("CKonto").Members.Item("Header")
Set reader = CreateObject("VBFolioscope.CCode")
reader.GetCode header
CheckEqual reader.CodeContent, "", "no example in the declarations section"
CheckNoComError "the Header member"

Set ressource = CreateObject("VBFolioscope.CRessource")
CheckNoComError "CreateObject CRessource"
Check ressource.Ready, "the templates of the chosen report set load"
Check ressource.PlaceholderCount > 0, "Description.dat gives placeholders"
CheckContains ressource.Projekt, "&&&", "the decrypted project template has placeholders"
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
