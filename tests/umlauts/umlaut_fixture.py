"""A small VB6 project whose names hold umlauts, written as a Git checkout
leaves it on Linux: file names in UTF-8, file contents (and the names inside
the .vbp) in Windows-1252, CR LF line ends.

MODULES lists (file name, module name, [(member, page name)]) so that tests
can tell which pages a full report must hold.
"""

import os

TITLE = "B\u00fccherei \u2013 \u00dcbersicht"  # the en dash is byte 0x96

FORM = """VERSION 5.00
Begin VB.Form frmPr\u00fcfung
   Caption         =   "Pr\u00fcfung"
   ClientHeight    =   3000
End
Attribute VB_Name = "frmPr\u00fcfung"
Option Explicit
'/// <summary>Pr\u00fcft die Einstellungen.</summary>
'/// <param name="St\u00e4rke">Wie streng gepr\u00fcft wird.</param>
Public Sub Pr\u00fcfeEinst(ByVal St\u00e4rke As Long)
End Sub
"""

CLASS = """VERSION 1.0 CLASS
BEGIN
  MultiUse = -1  'True
END
Attribute VB_Name = "CB\u00fccher"
Attribute VB_Exposed = True
Option Explicit
'/// <summary>Z\u00e4hlt die B\u00fccher eines Regals.</summary>
'/// <param name="Gr\u00f6\u00dfe">Die Gr\u00f6\u00dfe des Regals.</param>
'/// <returns>Die Anzahl.</returns>
Public Function Z\u00e4hle(ByVal Gr\u00f6\u00dfe As Long) As Long
End Function
'/// <summary>Der \u00dcberblick.</summary>
Public Property Get \u00dcberblick() As String
End Property
"""

MODULE = """Attribute VB_Name = "mod\u00c4nderung"
Option Explicit
'/// <summary>Merkt sich eine \u00c4nderung.</summary>
Public Sub \u00c4ndern()
End Sub
"""

MODULES = [
    ("frmPr\u00fcfung.frm", "frmPr\u00fcfung", [("Pr\u00fcfeEinst", "Pr\u00fcfeEinst")]),
    ("CB\u00fccher.cls", "CB\u00fccher",
     [("Z\u00e4hle", "Z\u00e4hle"), ("Get \u00dcberblick", "Get_\u00dcberblick")]),
    ("mod\u00c4nderung.bas", "mod\u00c4nderung", [("\u00c4ndern", "\u00c4ndern")]),
]


def cp1252(text):
    return text.replace("\n", "\r\n").encode("cp1252")


def write_project(folder):
    """Writes the project into `folder`; returns the .vbp path."""
    os.makedirs(folder, exist_ok=True)
    for (file_name, _, _), text in zip(MODULES, (FORM, CLASS, MODULE)):
        with open(os.path.join(folder, file_name), "wb") as f:
            f.write(cp1252(text))
    vbp = ("Type=Exe\nForm=%s\nClass=CB\u00fccher; %s\nModule=mod\u00c4nderung; %s\n"
           "Title=\"%s\"\nName=\"B\u00fccherei\"\nMajorVer=1\n"
           % (MODULES[0][0], MODULES[1][0], MODULES[2][0], TITLE))
    path = os.path.join(folder, "B\u00fccherei.vbp")
    with open(path, "wb") as f:
        f.write(cp1252(vbp))
    return path


def module_pages():
    """Every page file name (as text) a full report of the project holds for
    its modules and members."""
    pages = []
    for _, module, members in MODULES:
        pages.append(module + ".htm")
        pages += ["%s_%s.htm" % (module, page) for _, page in members]
    return pages
