' Calls a careless caller makes. Each one ends in a COM error or a neutral
' result, never in the end of cscript; the component's own faults are
' logged in ErrorLog.txt next to the DLL; and the report object still works
' afterwards.
Dim report, project, status, mode, page, blocker, logText, summary, member
Dim moduleName, projectName

' A call that must not raise: its result, or Empty after a COM error.
Sub Neutral(result, neutralValue, what)
  If Err.Number <> 0 Then
    WScript.Echo "  (" & what & ": error " & Err.Number & " " & Err.Description & ")"
    Err.Clear
  Else
    CheckEqual result, neutralValue, what & " gives its neutral result"
  End If
End Sub

On Error Resume Next
ClearErrorLog
Set project = OpenSampleProject()
CheckNoComError "CProjektReader.Open"
Set report = CreateObject("VBFolioscope.CFolioscope")
Set report.Projekt = project
report.PlainPath = OutFolder & "\"
report.FolderName = "bad"

' An unknown module: SaveMode 1 reports the failed lookup; the page getter
' returns the empty page.
report.ModuleName = "KeinModul"
mode = 1
status = report.SaveReport(mode)
Neutral status, 0, "SaveReport 1 with an unknown module"
moduleName = "KeinModul"
page = report.GetModulContentSite(moduleName)
Neutral page, "", "GetModulContentSite of an unknown module"
logText = ErrorLogText()
CheckContains logText, "SaveReport", "the failed lookup is in ErrorLog.txt"
CheckContains logText, "CFolioscope", "ErrorLog.txt names the class"
CheckContains ReadText(OutFolder & "\dialogs.log"), "ErrorDialog", _
              "the fault was also shown in the error dialog"

' Nothing as the project: SaveReport writes nothing, the pages are empty.
Set report.Projekt = Nothing
CheckNoComError "Set Projekt = Nothing"
report.PlainPath = OutFolder & "\"
report.FolderName = "nothing"
mode = 0
status = report.SaveReport(mode)
Neutral status, 0, "SaveReport with Nothing as project"
Check Not Fso.FolderExists(OutFolder & "\nothing"), "no report without a project"
page = report.GetProjektSite()
Neutral page, "", "GetProjektSite with Nothing as project"

' Wrong types: text for a Long, a number for a member object, a dictionary
' that is no member, Nothing for a member.
Set report.Projekt = project
mode = "kein Modus"
status = report.SaveReport(mode)
CheckComError "SaveReport with text as SaveMode"
projectName = project.Name
moduleName = "CKonto"
page = report.GetMemberContentSite(42, projectName, moduleName)
CheckComError "GetMemberContentSite with a number as member"
Set summary = CreateObject("VBFolioscope.CSummary")
Set member = CreateObject("Scripting.Dictionary")
status = summary.GetSummary(member)
Neutral status, 0, "GetSummary of an object that is no member"
status = summary.GetSummary(Nothing)
Neutral status, 0, "GetSummary(Nothing)"
CheckEqual summary.SumaryContent, "", "no summary of a bad member"
Err.Clear

' An output folder that cannot be made: a file is in the way.
Set blocker = Fso.CreateTextFile(OutFolder & "\blocker", True)
blocker.Close
ClearErrorLog
report.PlainPath = OutFolder & "\blocker\"
report.FolderName = "report"
mode = 0
status = report.SaveReport(mode)
Neutral status, 0, "SaveReport into a folder that cannot be made"
CheckContains ErrorLogText(), "SaveReport", "the failed write is in ErrorLog.txt"

' The object is still usable.
report.PlainPath = OutFolder & "\"
report.FolderName = "after"
mode = 0
status = report.SaveReport(mode)
CheckNoComError "SaveReport after the bad calls"
Check Fso.FileExists(OutFolder & "\after\_Index.htm"), "the report is written after the bad calls"
Check Len(report.GetProjektSite()) > 0, "GetProjektSite after the bad calls"
Finish
