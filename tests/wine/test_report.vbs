' The web report of the sample project, read by the component's project
' reader: the whole report (SaveMode 0) into <output>\Kontor, one module
' (SaveMode 1) into <output>\Modul and one member (SaveMode 2) into
' <output>\Member. The runner compares every file of Kontor with the Linux
' report of the same project and settings, and each file of Modul and Member
' with the file of the same name there.
Dim report, project, mode, status, reader, path

On Error Resume Next
ClearErrorLog
Set reader = CreateObject("VBFolioscope.CProjektReader")
' A variable for the by-reference path, as a script passes it.
path = ProjectFile
Set project = reader.Open(path)
CheckNoComError "CProjektReader.Open with a variable as path"
If Not IsObject(project) Then Set project = OpenSampleProject()
Check Not project Is Nothing, "the reader gives a project"
CheckEqual project.Name, "Kontor", "the project's name"
CheckEqual path, ProjectFile, "the path variable keeps its value"
Set report = CreateObject("VBFolioscope.CFolioscope")
CheckNoComError "CreateObject CFolioscope"
Check report.Ready, "the report object is ready with the imported settings"
Set report.Projekt = project
report.ProjektName = project.Name
report.PlainPath = OutFolder & "\"
report.FolderName = "Kontor"
mode = 0
status = report.SaveReport(mode)
CheckNoComError "SaveReport 0"
CheckEqual status, 0, "SaveReport result"
CheckEqual mode, 0, "SaveMode passed by reference comes back unchanged"
Check Fso.FileExists(OutFolder & "\Kontor\_Index.htm"), "_Index.htm written"

' The save stores the combined folder in PlainPath, so each save sets it anew.
report.PlainPath = OutFolder & "\"
report.FolderName = "Modul"
report.ModuleName = "CKasse"
mode = 1
report.SaveReport mode
CheckNoComError "SaveReport 1"
Check Fso.FileExists(OutFolder & "\Modul\CKasse.htm"), "SaveMode 1 writes the module page"
Check Not Fso.FileExists(OutFolder & "\Modul\_Index.htm"), "SaveMode 1 writes no index"

report.PlainPath = OutFolder & "\"
report.FolderName = "Member"
report.ModuleName = "CKonto"
report.MemberName = "Buchen"
mode = 2
report.SaveReport mode
CheckNoComError "SaveReport 2"
Check Fso.FileExists(OutFolder & "\Member\CKonto_Buchen.htm"), "SaveMode 2 writes the member page"
Check Not Fso.FileExists(OutFolder & "\Member\CKonto.htm"), "SaveMode 2 writes no module page"
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
