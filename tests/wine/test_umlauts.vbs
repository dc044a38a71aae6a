' The umlaut project of tests/umlauts (its path is the fifth argument),
' reported by the component under Windows into <output>\Umlaute. The runner
' compares every file with the Linux report of the same project, file names
' by their text: Windows writes them in the ANSI code page, Wine stores them
' in UTF-8, as the Linux host does.
Dim report, project, mode, reader, path, page

On Error Resume Next
ClearErrorLog
path = WScript.Arguments(4)
Set reader = CreateObject("VBFolioscope.CProjektReader")
Set project = reader.Open(path)
CheckNoComError "CProjektReader.Open of the umlaut project"
Check IsObject(project), "the reader gives the umlaut project"
CheckEqual project.Name, "B" & Chr(252) & "cherei", "the project's name"
Set report = CreateObject("VBFolioscope.CFolioscope")
CheckNoComError "CreateObject CFolioscope"
Set report.Projekt = project
report.ProjektName = project.Name
report.PlainPath = OutFolder & "\"
report.FolderName = "Umlaute"
mode = 0
report.SaveReport mode
CheckNoComError "SaveReport 0"
page = OutFolder & "\Umlaute\CB" & Chr(252) & "cher_Z" & Chr(228) & "hle.htm"
Check Fso.FileExists(page), "the page of CB" & Chr(252) & "cher.Z" & Chr(228) & "hle"
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
