VERSION 5.00
Object = "{831FDD16-0C5C-11D2-A9FC-0000F8754DA1}#2.0#0"; "MSCOMCTL.OCX"
Begin VB.Form frmKasse 
   BorderStyle     =   1  'Fest Einfach
   Caption         =   "Kontor - Kasse"
   ClientHeight    =   4935
   ClientLeft      =   45
   ClientTop       =   435
   ClientWidth     =   6870
   LinkTopic       =   "Form1"
   MaxButton       =   0   'False
   ScaleHeight     =   4935
   ScaleWidth      =   6870
   StartUpPosition =   2  'Bildschirmmitte
   Begin VB.Frame fraVerkauf 
      Caption         =   "Verkauf"
      Height          =   1695
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   6615
      Begin Kontor.ctlBetrag ctlBrutto 
         Height          =   375
         Left            =   1320
         TabIndex        =   2
         Top             =   360
         Width           =   1815
         _ExtentX        =   3201
         _ExtentY        =   661
      End
      Begin VB.TextBox txtText 
         Height          =   375
         Left            =   1320
         TabIndex        =   3
         Text            =   "Verkauf"
         Top             =   840
         Width           =   3975
      End
      Begin VB.CheckBox chkErmaessigt 
         Caption         =   "erm‰ﬂigt"
         Height          =   255
         Left            =   3360
         TabIndex        =   4
         Top             =   420
         Width           =   1335
      End
      Begin VB.CommandButton cmdBuchen 
         Caption         =   "&Buchen"
         Default         =   -1  'True
         Height          =   375
         Left            =   5400
         TabIndex        =   5
         Top             =   840
         Width           =   1095
      End
      Begin VB.Label lblBrutto 
         Caption         =   "Brutto:"
         Height          =   255
         Left            =   240
         TabIndex        =   1
         Top             =   420
         Width           =   975
      End
   End
   Begin MSComctlLib.ListView lvwBuchungen 
      Height          =   2415
      Left            =   120
      TabIndex        =   6
      Top             =   1920
      Width           =   6615
      _ExtentX        =   11668
      _ExtentY        =   4260
      View            =   3
      LabelEdit       =   1
      FullRowSelect   =   -1  'True
      _Version        =   393217
      BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   400
      EndProperty
      NumItems        =   2
      BeginProperty ColumnHeader(1) {BDD1F052-858B-11D1-B16A-00C0F0283628} 
         Text            =   "Beleg"
         Object.Width           =   1764
      EndProperty
      BeginProperty ColumnHeader(2) {BDD1F052-858B-11D1-B16A-00C0F0283628} 
         SubItemIndex    =   1
         Text            =   "Betrag"
         Object.Width           =   2540
      EndProperty
   End
   Begin VB.CommandButton cmdAbschluss 
      Caption         =   "&Tagesabschluss"
      Height          =   375
      Left            =   5040
      TabIndex        =   7
      Top             =   4440
      Width           =   1695
   End
   Begin VB.Label lblStand 
      Alignment       =   1  'Rechts
      Caption         =   "0,00 EUR"
      Height          =   255
      Left            =   120
      TabIndex        =   8
      Top             =   4500
      Width           =   2295
   End
End
Attribute VB_Name = "frmKasse"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
'/// <summary>
'/// Das Hauptfenster der Kasse: Verk‰ufe erfassen, Kassenstand anzeigen,
'/// Tag abschlieﬂen.
'/// </summary>
Option Explicit

Private WithEvents mKasse As CKasse
Attribute mKasse.VB_VarHelpID = -1

Private Sub Form_Load()
    Set mKasse = New CKasse
    lvwBuchungen.ListItems.Clear
End Sub

Private Sub Form_Unload(Cancel As Integer)
    If MsgBox("Kasse wirklich schlieﬂen?", vbYesNo + vbQuestion) = vbNo Then
        Cancel = True
    End If
End Sub

' Bucht den eingegebenen Verkauf und tr‰gt ihn in die Liste ein.
Private Sub cmdBuchen_Click()
    Dim Nr As Long
    Dim Eintrag As ListItem
    On Error GoTo Fehler
    Nr = mKasse.Verkauf(ctlBrutto.Wert, txtText.Text, chkErmaessigt.Value = vbChecked)
    Set Eintrag = lvwBuchungen.ListItems.Add(, , CStr(Nr))
    Eintrag.SubItems(1) = BetragText(ctlBrutto.Wert)
    ctlBrutto.Wert = 0
    Exit Sub
Fehler:
    MsgBox Err.Description, vbExclamation
End Sub

Private Sub cmdAbschluss_Click()
    Dim Gezaehlt As String
    Gezaehlt = InputBox("Gez‰hlter Bargeldbestand:", "Tagesabschluss")
    If Len(Gezaehlt) = 0 Then Exit Sub
    MsgBox "Differenz: " & BetragText(mKasse.Tagesabschluss(CCur(Gezaehlt)))
    cmdBuchen.Enabled = False
End Sub

Private Sub mKasse_StandGeaendert(ByVal Stand As Currency)
    lblStand.Caption = BetragText(Stand)
End Sub

'/// <summary>
'/// Zeigt das Fenster mit einem vorgegebenen Betrag.
'/// </summary>
'/// <param name="Betrag">Der Betrag, der im Feld "Brutto" vorbelegt wird.</param>
Public Sub Anzeigen(Optional ByVal Betrag As Currency = 0)
    ctlBrutto.Wert = Betrag
    Me.Show
End Sub
