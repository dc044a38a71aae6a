' The whole web report (SaveMode 0) of the sample project, read by the
' component's project reader, written into <output>\Kontor. The runner then
' compares every file with the Linux report of the same project and settings.
Dim report, project, mode, status

On Error Resume Next
ClearErrorLog
Dim reader, path
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
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
