Attribute VB_Name = "modKontor"
'/// <summary>
'/// Allgemeine Hilfsfunktionen für Beträge, Steuersätze und Belegnummern.
'/// </summary>
'/// <remarks>
'/// Alle Beträge werden als Currency geführt, damit beim Runden keine
'/// Gleitkommafehler entstehen.
'/// </remarks>
Option Explicit

' Steuersätze (Stand: Januar 2007)
Public Const STEUER_VOLL As Currency = 0.19
Public Const STEUER_ERMAESSIGT As Currency = 0.07

Public Enum KontoArt
    kaAktiv = 1
    kaPassiv = 2
    kaAufwand = 3
    kaErtrag = 4
End Enum

Public Type BelegInfo
    Nummer As Long
    Datum As Date
    Text As String * 60
End Type

Private Declare Function GetTickCount Lib "kernel32" () As Long
Private Declare Sub Sleep Lib "kernel32" (ByVal dwMilliseconds As Long)

Private mLetzteBelegNr As Long

'/// <summary>
'/// Rundet einen Betrag kaufmännisch auf zwei Nachkommastellen.
'/// </summary>
'/// <param name="Betrag">Der zu rundende Betrag.</param>
'/// <returns>Der gerundete Betrag.</returns>
'/// <code>
'/// Dim b As Currency
'/// b = Runden(12.345)   ' ergibt 12.35
'/// </code>
Public Function Runden(ByVal Betrag As Currency) As Currency
Attribute Runden.VB_Description = "Rundet kaufmännisch auf zwei Stellen."
Attribute Runden.VB_HelpID = 1001
    If Betrag >= 0 Then
        Runden = Int(Betrag * 100 + 0.5) / 100
    Else
        Runden = -Int(-Betrag * 100 + 0.5) / 100
    End If
End Function

'/// <summary>
'/// Formatiert einen Betrag mit Tausenderpunkten und Währungszeichen.
'/// </summary>
'/// <param name="Betrag">Der Betrag in Euro.</param>
'/// <param name="MitWaehrung">Hängt " EUR" an, wenn True.</param>
'/// <returns>Der Betrag als Text, z. B. "1.234,50 EUR".</returns>
Public Function BetragText(ByVal Betrag As Currency, _
                           Optional ByVal MitWaehrung As Boolean = True) As String
Attribute BetragText.VB_HelpID = 1002
    BetragText = Format$(Runden(Betrag), "#,##0.00")
    If MitWaehrung Then BetragText = BetragText & " EUR"
End Function

'/// <summary>
'/// Berechnet die Steuer zu einem Nettobetrag.
'/// </summary>
'/// <param name="Netto">Der Nettobetrag.</param>
'/// <param name="Ermaessigt">Ermäßigter Satz statt des vollen Satzes.</param>
'/// <returns>Der Steuerbetrag, gerundet.</returns>
'/// <remarks>
'/// Die Sätze stehen in STEUER_VOLL und STEUER_ERMAESSIGT.
'/// </remarks>
Public Function Steuer(ByVal Netto As Currency, Optional Ermaessigt As Boolean) As Currency
    If Ermaessigt Then
        Steuer = Runden(Netto * STEUER_ERMAESSIGT)
    Else
        Steuer = Runden(Netto * STEUER_VOLL)
    End If
End Function

'/// <summary>
'/// Addiert beliebig viele Beträge.
'/// </summary>
'/// <param name="Betraege">Die Beträge; leere Werte werden übergangen.</param>
'/// <returns>Die Summe.</returns>
'/// <code>
'/// Dim s As Currency
'/// s = Summe(1.5, 2.25, 3)
'/// Debug.Print BetragText(s)   ' "6,75 EUR"
'/// </code>
Public Function Summe(ParamArray Betraege() As Variant) As Currency
    Dim i As Long
    For i = LBound(Betraege) To UBound(Betraege)
        If Not IsEmpty(Betraege(i)) Then Summe = Summe + CCur(Betraege(i))
    Next i
End Function

'/// <summary>
'/// Liefert die nächste freie Belegnummer.
'/// </summary>
'/// <returns>Eine fortlaufende Nummer ab 1.</returns>
Friend Function NaechsteBelegNr() As Long
    Static Aufrufe As Long
    Aufrufe = Aufrufe + 1
    mLetzteBelegNr = mLetzteBelegNr + 1
    NaechsteBelegNr = mLetzteBelegNr
End Function

'/// <summary>
'/// Wartet die angegebene Zeit, ohne die Oberfläche zu blockieren.
'/// </summary>
'/// <param name="Millisekunden">Die Wartezeit.</param>
Public Sub Warten(ByVal Millisekunden As Long)
    Dim Ende As Long
    Ende = GetTickCount() + Millisekunden
    Do While GetTickCount() < Ende
        DoEvents
        Sleep 10
    Loop
End Sub

' Prüft eine Kontonummer (vierstellig, SKR 03). Kein Doc-Kommentar: interne Hilfe.
Private Static Function KontoGueltig(Nummer) As Boolean
    Dim Text As String
    Text = "End Sub"   ' kein Prozedurende, nur ein Text
    KontoGueltig = (Len(CStr(Nummer)) = 4 And IsNumeric(Nummer))
End Function

'/// <summary>
'/// Schreibt eine Meldung in das Protokoll.
'/// </summary>
'/// <param name="Meldung">Der Text.</param>
'/// <param name="Stufe">0 Hinweis, 1 Warnung, 2 Fehler.</param>
Sub Protokoll(Meldung As String, Optional Stufe As Integer = 0)
#If DEBUG_MODUS Then
    Debug.Print Now, Stufe, Meldung
#Else
    If Stufe > 0 Then App.LogEvent Meldung
#End If
End Sub
