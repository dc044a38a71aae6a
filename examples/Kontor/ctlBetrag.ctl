VERSION 5.00
Begin VB.UserControl ctlBetrag 
   ClientHeight    =   375
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   1815
   ScaleHeight     =   375
   ScaleWidth      =   1815
   Begin VB.TextBox txtBetrag 
      Alignment       =   1  'Rechts
      Height          =   375
      Left            =   0
      TabIndex        =   0
      Text            =   "0,00"
      Top             =   0
      Width           =   1815
   End
End
Attribute VB_Name = "ctlBetrag"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = True
Attribute VB_PredeclaredId = False
Attribute VB_Exposed = False
Attribute VB_Description = "Eingabefeld für Geldbeträge."
'/// <summary>
'/// Ein Eingabefeld für Geldbeträge mit Prüfung und Formatierung.
'/// </summary>
Option Explicit

'/// <summary>
'/// Wird ausgelöst, wenn der Benutzer einen gültigen Betrag eingegeben hat.
'/// </summary>
Public Event Geaendert()

Private mWert As Currency

'/// <summary>
'/// Der eingegebene Betrag.
'/// </summary>
'/// <returns>Der Betrag in Euro.</returns>
Public Property Get Wert() As Currency
Attribute Wert.VB_Description = "Der eingegebene Betrag."
Attribute Wert.VB_ProcData.VB_Invoke_Property = "pagBetrag"
Attribute Wert.VB_UserMemId = 0
    Wert = mWert
End Property

'/// <summary>
'/// Setzt den Betrag und zeigt ihn formatiert an.
'/// </summary>
'/// <param name="NeuerWert">Der Betrag.</param>
Public Property Let Wert(ByVal NeuerWert As Currency)
    mWert = Runden(NeuerWert)
    txtBetrag.Text = BetragText(mWert, False)
    PropertyChanged "Wert"
End Property

Private Sub txtBetrag_Validate(Cancel As Boolean)
    If IsNumeric(txtBetrag.Text) Then
        Wert = CCur(txtBetrag.Text)
        RaiseEvent Geaendert
    Else
        Cancel = True
    End If
End Sub

Private Sub UserControl_ReadProperties(PropBag As PropertyBag)
    mWert = PropBag.ReadProperty("Wert", 0)
End Sub

Private Sub UserControl_WriteProperties(PropBag As PropertyBag)
    PropBag.WriteProperty "Wert", mWert, 0
End Sub

Private Sub UserControl_Resize()
    txtBetrag.Move 0, 0, UserControl.ScaleWidth, UserControl.ScaleHeight
End Sub
