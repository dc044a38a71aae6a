' Helpers shared by the test scripts; the runner puts this file in front of
' each script (Wine's VBScript has no ExecuteGlobal).
'
' Arguments of every script: application folder (DLL, Res\, sfn.dat,
' ErrorLog.txt), the script's own output folder, the source tree, the sample
' project (.vbp), the umlaut project (.vbp, named with umlauts). A script ends with Finish, which prints the marker the
' runner waits for and quits with the number of failed checks: an uncaught
' script error under Wine ends cscript with status 0 and no message, so the
' marker is what tells a finished script from a broken one.
Option Explicit

Dim Failures, AppFolder, OutFolder, SourceFolder, ProjectFile, Fso
Failures = 0
AppFolder = WScript.Arguments(0)
OutFolder = WScript.Arguments(1)
SourceFolder = WScript.Arguments(2)
ProjectFile = WScript.Arguments(3)
Set Fso = CreateObject("Scripting.FileSystemObject")

Sub Check(ok, what)
  If Not ok Then
    Failures = Failures + 1
    WScript.Echo "FAIL: " & what
  End If
End Sub

Sub CheckEqual(actual, expected, what)
  If actual <> expected Then
    Failures = Failures + 1
    WScript.Echo "FAIL: " & what & ": got [" & Shorten(actual) & "], expected [" & _
                 Shorten(expected) & "]"
  End If
End Sub

Sub CheckContains(text, part, what)
  If InStr(1, text, part, vbBinaryCompare) = 0 Then
    Failures = Failures + 1
    WScript.Echo "FAIL: " & what & ": [" & Shorten(part) & "] not in [" & Shorten(text) & "]"
  End If
End Sub

' A COM error in the last call: Err is read and cleared.
Sub CheckComError(what)
  If Err.Number = 0 Then
    Failures = Failures + 1
    WScript.Echo "FAIL: " & what & ": no COM error"
  Else
    WScript.Echo "  (" & what & ": error " & Err.Number & " " & Err.Source & ": " & _
                 Err.Description & ")"
  End If
  Err.Clear
End Sub

Sub CheckNoComError(what)
  If Err.Number <> 0 Then
    Failures = Failures + 1
    WScript.Echo "FAIL: " & what & ": error " & Err.Number & " " & Err.Source & ": " & _
                 Err.Description
  End If
  Err.Clear
End Sub

Function Shorten(text)
  Dim s
  s = CStr(text)
  If Len(s) > 300 Then s = Left(s, 300) & "..."
  Shorten = s
End Function

Function ReadText(path)
  ReadText = ""
  If Fso.FileExists(path) Then
    If Fso.GetFile(path).Size > 0 Then ReadText = Fso.OpenTextFile(path, 1).ReadAll
  End If
End Function

Sub ClearErrorLog()
  If Fso.FileExists(Fso.BuildPath(AppFolder, "ErrorLog.txt")) Then
    Fso.DeleteFile Fso.BuildPath(AppFolder, "ErrorLog.txt")
  End If
End Sub

Function ErrorLogText()
  ErrorLogText = ReadText(Fso.BuildPath(AppFolder, "ErrorLog.txt"))
End Function

' The sample project read by the component's own project reader. The path
' goes by value (in parentheses); test_report.vbs passes a variable.
Function OpenSampleProject()
  Dim reader
  Set reader = CreateObject("VBFolioscope.CProjektReader")
  Set OpenSampleProject = reader.Open((ProjectFile))
End Function

Sub Finish()
  WScript.Echo "wine-test-done, " & Failures & " failed checks"
  WScript.Quit Failures
End Sub

