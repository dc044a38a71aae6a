#include "format/keyword_resource.h"

namespace folioscope {

namespace {

// One keyword per line, CR LF after each line. Duplicates ("Input", "Line"),
// odd case ("Cstr", "Ucase") and entries with a blank ("On Error") belong to
// the list as it has always been shipped; the two empty lines and the dated
// comment line are loaded like keywords and can never match.
constexpr char kKeywords[] =
    "Alias\r\nAnd\r\nAppend\r\nAs\r\nBF\r\nBinary\r\nBoolean\r\nByte\r\nByVal\r\nCall\r\n"
    "Close\r\nCollection\r\nConst\r\nControl\r\nCstr\r\nDeclare\r\nDim\r\nDo\r\nDouble\r\n"
    "Else\r\nElseIf\r\nEnd\r\nError\r\nExit\r\nExplicit\r\nFalse\r\nFor\r\nFunction\r\nGoto\r\n"
    "If\r\nInput\r\nInteger\r\nLBound\r\nLine\r\nLong\r\nLoop\r\nNew\r\nNext\r\nNot\r\n"
    "Nothing\r\nOn\r\nOpen\r\nOption\r\nOr\r\nOutput\r\nPrint\r\nPrivate\r\nPublic\r\n"
    "Random\r\nReDim\r\nSet\r\nSingle\r\nStep\r\nString\r\nSub\r\nThen\r\nTo\r\nTrue\r\n"
    "Type\r\nUBound\r\nUntil\r\nWhile\r\nWith\r\nCBool\r\nCByte\r\nCCur\r\nCDate\r\nCDbl\r\n"
    "CDec\r\nCInt\r\nCLng\r\nCSng\r\nCStr\r\nCVar\r\nArray\r\nAsc\r\nAtn\r\nCallByName\r\n"
    "Choose\r\nChr\r\nCommand\r\nCos\r\nCreateObject\r\nCurDir\r\nCVErr\r\nDate\r\nDateAdd\r\n"
    "DateDiff\r\nDatePart\r\nDateSerial\r\nDateValue\r\nDay\r\nDDB\r\nDir\r\nDoEvents\r\n"
    "Environ\r\nEOF\r\nExp\r\nFileAttr\r\nFileDateTime\r\nFileLen\r\nFilter\r\nFormat\r\n"
    "FormatCurrency\r\nFormatDateTime\r\nFormatNumber\r\nFormatPercent\r\nFreeFile\r\nFV\r\n"
    "GetAllSettings\r\nGetAttr\r\nGetAutoServerSettings\r\nGetObject\r\nGetSetting\r\nHex\r\n"
    "Hour\r\nIIf\r\nIMEStatus\r\nInputBox\r\nInStr\r\nInStrRev\r\nInt\r\nFix\r\nIPmt\r\nIRR\r\n"
    "IsArray\r\nIsDate\r\nIsEmpty\r\nIsError\r\nIsMissing\r\nIsNull\r\nIsNumeric\r\n"
    "IsObject\r\nJoin\r\nLCase\r\nLeft\r\nLen\r\nLoadPicture\r\nLoadResData\r\n"
    "LoadResPicture\r\nLoadResString\r\nLoc\r\nLOF\r\nLog\r\nLTrim\r\nRTrim\r\nTrim\r\nMid\r\n"
    "Minute\r\nMIRR\r\nMonth\r\nMonthName\r\nMsgBox\r\nNow\r\nNPer\r\nNPV\r\nOct\r\n"
    "Partition\r\nPmt\r\nPPmt\r\nPV\r\nQBColor\r\nRate\r\nReplace\r\nRGB\r\nRight\r\nRnd\r\n"
    "Round\r\nSecond\r\nSeek\r\nSng\r\nShell\r\nSin\r\nSLN\r\nSpace\r\nSpc\r\nSplit\r\nSqr\r\n"
    "Str\r\nStrComp\r\nStrConv\r\nStrReverse\r\nSwitch\r\nSYD\r\nTab\r\nTan\r\nTime\r\n"
    "Timer\r\nTimeSerial\r\nTimeValue\r\nTypeName\r\nUcase\r\nVal\r\nVarType\r\nWeekday\r\n"
    "WeekdayName\r\nYear\r\nAppActivate\r\nBeep\r\nChDir\r\nChDrive\r\nDeftype\r\n"
    "DeleteSetting\r\nEnum\r\nErase\r\nEvent\r\nFileCopy\r\nEach\r\nGet\r\nGoSub\r\nReturn\r\n"
    "Implements\r\nInput\r\nKill\r\nLet\r\nLine\r\nLoad\r\nLock\r\nUnlock\r\nLSet\r\nMkDir\r\n"
    "Name\r\nOn Error\r\nOption Base\r\nBase\r\nCompare\r\nPut\r\nRaiseEvent\r\nRandomize\r\n"
    "Rem\r\nReset\r\nResume\r\nRmDir\r\nRSet\r\nSavePicture\r\nSaveSetting\r\nSelect\r\n"
    "Case\r\nSendKeys\r\nSetAttr\r\nStatic\r\nStop\r\nUnload\r\nWend\r\nWidth\r\nWrite\r\n"
    "ByRef\r\nEmpty\r\nFriend\r\nIs\r\nMe\r\nNull\r\nOptional\r\nParamArray\r\nProperty\r\n"
    "WithEvents\r\nAddressOf\r\nEqv\r\nImp\r\nLike\r\nMod\r\nXor\r\nObject\r\nCurrency\r\n"
    "Decimal\r\nVariant\r\n"
    "\r\n"
    "\r\n"
    ";Letzte Aktualisierung am: 29.05.2001 16:47:33\r\n";

}  // namespace

std::string_view KeywordResource() { return std::string_view(kKeywords, sizeof(kKeywords) - 1); }

}  // namespace folioscope
