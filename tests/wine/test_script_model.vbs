' A source model built from VBScript Class objects, with a
' Scripting.Dictionary of code lines, as an add-in hands its own objects to
' the component. The member CKonto.Buchen is copied value by value from the
' project the reader made of the sample files; its member page must equal the
' page of the reader's member, and the component's writes must reach the
' script's objects: the key-0 entry of the tag readers' scans and the
' parameter descriptions of CParam.
'
' (Fields are declared one a line: Wine's VBScript does not parse a list
' after Public. A VBScript class cannot have a property named Default, a
' keyword of the language, so the copy leaves that optional property out;
' the members of CKonto have no default values.)
Dim report, project, source, copy, moduleCopy, projectName, moduleName
Dim pageOfFiles, pageOfScript, summary, params, lineCount, parameter
Dim i, members, scriptProject, modulePageOfFiles, component, componentCopy, summaryCopy

Class ScriptList
  Private entries
  Private Sub Class_Initialize()
    Set entries = CreateObject("Scripting.Dictionary")
  End Sub
  Public Sub Add(entry)
    entries.Add entries.Count + 1, entry
  End Sub
  Public Property Get Count()
    Count = entries.Count
  End Property
  Public Default Property Get Item(index)
    Set Item = entries.Item(index)
  End Property
End Class

Class ScriptProject
  Public Name
  Public Version
  Public FilePath
  Public Components
  Public Modules
End Class

Class ScriptComponent
  Public Name
  Public Kind
  Public RelativePath
  Public FilePath
End Class

Class ScriptModule
  Public Name
  Public CodeLines
  Public Members
  Public Description
  Public HelpContextId
End Class

Class ScriptMember
  Public Name
  Public PropertyForm
  Public Kind
  Public Scope
  Public ReturnType
  Public Description
  Public HelpContextId
  Public FirstLine
  Public LineCount
  Public CodeLines
  Public Parameters
End Class

Class ScriptParameter
  Public Name
  Public Type
  Public Passing
  Public Optional
  Public ParamArray
  Public HasDefault
  Public Description
End Class

Function CopyLines(lines)
  Dim copied, key
  Set copied = CreateObject("Scripting.Dictionary")
  For Each key In lines.Keys
    copied.Add key, lines.Item(key)
  Next
  Set CopyLines = copied
End Function

' The member with its lines and parameters; parameter descriptions are left
' empty, so that CParam has something to write.
Function CopyMember(m)
  Dim c, i, p, q
  Set c = New ScriptMember
  c.Name = m.Name
  c.PropertyForm = m.PropertyForm
  c.Kind = m.Kind
  c.Scope = m.Scope
  c.ReturnType = m.ReturnType
  c.Description = m.Description
  c.HelpContextId = m.HelpContextId
  c.FirstLine = m.FirstLine
  c.LineCount = m.LineCount
  Set c.CodeLines = CopyLines(m.CodeLines)
  Set c.Parameters = New ScriptList
  For i = 1 To m.Parameters.Count
    Set p = m.Parameters.Item(i)
    Set q = New ScriptParameter
    q.Name = p.Name
    q.Type = p.Type
    q.Passing = p.Passing
    q.Optional = p.Optional
    q.ParamArray = p.ParamArray
    q.HasDefault = p.HasDefault
    q.Description = ""
    c.Parameters.Add q
  Next
  Set CopyMember = c
End Function

On Error Resume Next
ClearErrorLog
Set project = OpenSampleProject()
CheckNoComError "CProjektReader.Open"
Set source = project.Modules.Item("CKonto").Members.Item("Buchen")
CheckNoComError "the reader's member CKonto.Buchen"
Set copy = CopyMember(source)
' A second copy for the tag readers, taken before any scan of the source.
Set summaryCopy = CopyMember(source)
CheckNoComError "copying the member into script objects"
lineCount = summaryCopy.CodeLines.Count
Check lineCount > 0, "the copied member has code lines"
Check Not summaryCopy.CodeLines.Exists(0), "no key 0 before the scan"

Set report = CreateObject("VBFolioscope.CFolioscope")
Set report.Projekt = project
projectName = project.Name
moduleName = "CKonto"
pageOfFiles = report.GetMemberContentSite(source, projectName, moduleName)
CheckNoComError "GetMemberContentSite of the reader's member"
pageOfScript = report.GetMemberContentSite(copy, projectName, moduleName)
CheckNoComError "GetMemberContentSite of the script's member"
Check Len(pageOfFiles) > 1000, "the member page has its content"
CheckEqual pageOfScript, pageOfFiles, "the member page of the script objects"

' The tag readers write the key-0 entry into the script's own dictionary.
Set copy = summaryCopy
Set summary = CreateObject("VBFolioscope.CSummary")
CheckEqual summary.GetSummary(copy), 0, "GetSummary result"
CheckNoComError "GetSummary of the script's member"
CheckContains summary.SumaryContent, "Bucht einen Betrag auf das Konto.", "SumaryContent"
Check copy.CodeLines.Exists(0), "after GetSummary the script's dictionary holds key 0"
CheckEqual copy.CodeLines.Count, lineCount + 1, "exactly one entry added"

' CParam writes each parameter's description into the script's object.
Set params = CreateObject("VBFolioscope.CParam")
CheckEqual params.GetParam(copy), 0, "GetParam result"
CheckNoComError "GetParam of the script's member"
Set parameter = copy.Parameters.Item(1)
CheckEqual parameter.Description, "Die Buchung; sie wird dabei festgeschrieben.", _
           "parameter description written back"

' A whole module of script objects: its page equals the reader's module page.
Set moduleCopy = New ScriptModule
moduleCopy.Name = "CKonto"
Set moduleCopy.CodeLines = CopyLines(project.Modules.Item("CKonto").CodeLines)
Set moduleCopy.Members = New ScriptList
Set members = project.Modules.Item("CKonto").Members
For i = 1 To members.Count
  moduleCopy.Members.Add CopyMember(members.Item(i))
Next
moduleCopy.Description = project.Modules.Item("CKonto").Description
moduleCopy.HelpContextId = project.Modules.Item("CKonto").HelpContextId
CheckNoComError "copying the module CKonto"
modulePageOfFiles = report.GetModulContentSite(moduleName)
Set scriptProject = New ScriptProject
scriptProject.Name = project.Name
scriptProject.Version = project.Version
scriptProject.FilePath = project.FilePath
Set scriptProject.Components = New ScriptList
For i = 1 To project.Components.Count
  Set component = project.Components.Item(i)
  Set componentCopy = New ScriptComponent
  componentCopy.Name = component.Name
  componentCopy.Kind = component.Kind
  componentCopy.RelativePath = component.RelativePath
  componentCopy.FilePath = component.FilePath
  scriptProject.Components.Add componentCopy
Next
Set scriptProject.Modules = New ScriptList
scriptProject.Modules.Add moduleCopy
Set report.Projekt = scriptProject
CheckNoComError "a script project as Projekt"
CheckEqual report.GetModulContentSite(moduleName), modulePageOfFiles, _
           "the module page of the script project"
CheckNoComError "GetModulContentSite of the script project"
CheckEqual ErrorLogText(), "", "no fault reached ErrorLog.txt"
Finish
