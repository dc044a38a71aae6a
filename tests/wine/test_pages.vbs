' The three preview pages (project, module CKonto, member CKonto.Buchen) as
' strings through COM, written as Windows-1252 files; the runner compares
' them byte for byte with the pages of the Linux host.
Dim report, project, member, moduleName, projectName

Sub WritePage(fileName, text)
  Dim stream
  Set stream = Fso.CreateTextFile(Fso.BuildPath(OutFolder, fileName), True, False)
  stream.Write text
  stream.Close
End Sub

On Error Resume Next
ClearErrorLog
Set project = OpenSampleProject()
CheckNoComError "CProjektReader.Open"
Set report = CreateObject("VBFolioscope.CFolioscope")
Set report.Projekt = project
report.ProjektName = project.Name
report.ModuleName = "CKonto"
report.MemberName = "Buchen"
CheckNoComError "setting the report object's properties"
CheckEqual report.ProjektName, project.Name, "ProjektName reads back"

WritePage "Projekt.htm", report.GetProjektSite()
CheckNoComError "GetProjektSite"
' Variables, not literals, for the by-reference arguments: the way a script
' and a VB caller pass them.
moduleName = "CKonto"
WritePage "CKonto.htm", report.GetModulContentSite(moduleName)
CheckNoComError "GetModulContentSite"
CheckEqual moduleName, "CKonto", "the module name variable keeps its value"
Set member = project.Modules.Item("CKonto").Members.Item("Buchen")
CheckNoComError "the member Buchen of the reader's project"
projectName = project.Name
WritePage "CKonto_Buchen.htm", report.GetMemberContentSite(member, projectName, moduleName)
CheckNoComError "GetMemberContentSite"
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
