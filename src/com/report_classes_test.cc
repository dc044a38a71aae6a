// Tests of the report object, the tag readers and the formatter as COM
// classes. A Windows program, run under Windows or Wine:
//
//   report_classes_tests <path of VBFolioscope.dll> [GoogleTest flags]
//
// The DLL is copied into a fresh folder (its application folder, so that
// ErrorLog.txt starts empty) and loaded with LoadLibrary; objects come from
// its DllGetClassObject, no registration needed. The caller's member objects
// are property bags (variant_test_support.h), their code lines real
// Scripting.Dictionary objects, as a script hands them over.
#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "VBFolioscope.h"
#include "com/variant_test_support.h"

namespace {

std::wstring dll_under_test;

using folioscope::com_testing::ArrayOf;
using folioscope::com_testing::Bag;
using folioscope::com_testing::CallByName;
using folioscope::com_testing::CreateFrom;
using folioscope::com_testing::Long;
using folioscope::com_testing::NewDictionary;
using folioscope::com_testing::NewLines;
using folioscope::com_testing::Object;
using folioscope::com_testing::Take;
using folioscope::com_testing::Text;

bool DictionaryHas(IDispatch* dictionary, LONG key) {
  VARIANT found;
  VariantInit(&found);
  CallByName(dictionary, L"Exists", DISPATCH_METHOD, {Long(key)}, &found);
  return V_VT(&found) == VT_BOOL && V_BOOL(&found) == VARIANT_TRUE;
}

LONG DictionaryCount(IDispatch* dictionary) {
  VARIANT count;
  VariantInit(&count);
  CallByName(dictionary, L"Count", DISPATCH_PROPERTYGET, {}, &count);
  return V_VT(&count) == VT_I4 ? V_I4(&count) : -1;
}

// The member DoIt(a) with one line per doc tag; `lines` receives a
// reference to its code-line dictionary, `parameter` one to its parameter.
Bag* NewMember(IDispatch** lines, Bag** parameter) {
  IDispatch* dictionary = NewLines({
      L"'/// <summary>Adds two values.</summary>",
      L"'/// <param name=\"a\">the first value</param>",
      L"'/// <code>",
      L"'/// x = DoIt(1)",
      L"'/// </code>",
      L"Public Function DoIt(a)",
      L"  DoIt = a + 1",
      L"End Function",
  });
  Bag* p = Bag::New()->Set(L"Name", Text(L"a"))->Set(L"Description", Text(L""));
  p->AddRef();  // one reference for the array, one for the caller
  if (dictionary) dictionary->AddRef();
  *lines = dictionary;
  *parameter = p;
  return Bag::New()
      ->Set(L"Name", Text(L"DoIt"))
      ->Set(L"Kind", Text(L"Function"))
      ->Set(L"Scope", Text(L"Public"))
      ->Set(L"CodeLines", Object(dictionary))
      ->Set(L"Parameters", ArrayOf({p}));
}

std::string ReadFileBytes(const std::wstring& path) {
  std::ifstream in(path.c_str(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// --- The DLL under test --------------------------------------------------------

using GetClassObjectFn = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

class ReportClassesTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    CoInitialize(nullptr);
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    folder_ = std::wstring(temp) + L"report_classes_test_" + std::to_wstring(GetCurrentProcessId());
    CreateDirectoryW(folder_.c_str(), nullptr);
    const std::wstring copy = folder_ + L"\\VBFolioscope.dll";
    CopyFileW(dll_under_test.c_str(), copy.c_str(), FALSE);
    // Dialogs go to a file instead of the screen (read by the DLL's runtime
    // at load time).
    SetEnvironmentVariableW(L"FOLIOSCOPE_DIALOG_LOG", (folder_ + L"\\dialogs.log").c_str());
    module_ = LoadLibraryW(copy.c_str());
    if (module_ != nullptr) {
      get_class_object_ = reinterpret_cast<GetClassObjectFn>(
          reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
    }
  }

  void SetUp() override {
    ASSERT_NE(get_class_object_, nullptr) << "DLL not loaded";
    member_ = NewMember(&lines_, &parameter_);
    ASSERT_NE(lines_, nullptr) << "no Scripting.Dictionary";
  }
  void TearDown() override {
    if (member_) member_->Release();
    if (parameter_) parameter_->Release();
    if (lines_) lines_->Release();
  }

  template <class I>
  I* Create(REFCLSID clsid, REFIID iid) {
    return CreateFrom<I>(get_class_object_, clsid, iid);
  }

  static std::string ErrorLog() { return ReadFileBytes(folder_ + L"\\ErrorLog.txt"); }

  // The member DoIt(a), its code-line dictionary and its parameter.
  Bag* member_ = nullptr;
  IDispatch* lines_ = nullptr;
  Bag* parameter_ = nullptr;

  static std::wstring folder_;
  static HMODULE module_;
  static GetClassObjectFn get_class_object_;
};

std::wstring ReportClassesTest::folder_;
HMODULE ReportClassesTest::module_ = nullptr;
GetClassObjectFn ReportClassesTest::get_class_object_ = nullptr;

// --- Tests -----------------------------------------------------------------------

TEST_F(ReportClassesTest, ReportObjectStoresItsProperties) {
  _CFolioscope* report = Create<_CFolioscope>(CLSID_CFolioscope, IID__CFolioscope);
  ASSERT_NE(report, nullptr);

  // Strings pass as Windows-1252 and come back unchanged, non-ASCII included.
  const wchar_t* path =
      L"C:\\Ausgabe\\B\x00FC"
      L"cher\\";
  BSTR text = SysAllocString(path);
  EXPECT_EQ(report->put_PlainPath(text), S_OK);
  SysFreeString(text);
  BSTR back = nullptr;
  EXPECT_EQ(report->get_PlainPath(&back), S_OK);
  EXPECT_EQ(Take(back), path);

  // Projekt keeps the caller's object itself, by Set or by plain put.
  EXPECT_EQ(report->putref_Projekt(member_), S_OK);
  IDispatch* stored = nullptr;
  EXPECT_EQ(report->get_Projekt(&stored), S_OK);
  EXPECT_EQ(stored, static_cast<IDispatch*>(member_));
  if (stored) stored->Release();
  EXPECT_EQ(report->putref_Projekt(nullptr), S_OK);
  report->get_Projekt(&stored);
  EXPECT_EQ(stored, nullptr);
  EXPECT_EQ(report->put_Projekt(member_), S_OK);
  report->get_Projekt(&stored);
  EXPECT_EQ(stored, static_cast<IDispatch*>(member_));
  if (stored) stored->Release();

  // Null result pointers are refused before anything runs.
  EXPECT_EQ(report->get_PlainPath(nullptr), E_POINTER);
  EXPECT_EQ(report->GetProjektSite(nullptr), E_POINTER);

  report->Release();  // releases the project held in Projekt
}

TEST_F(ReportClassesTest, ReadersWriteBackIntoTheCallersObjects) {
  const LONG count = DictionaryCount(lines_);
  IDispatch* member_argument = member_;

  // The scan adds key 0 to the caller's own dictionary.
  _CSummary* summary = Create<_CSummary>(CLSID_CSummary, IID__CSummary);
  ASSERT_NE(summary, nullptr);
  LONG status = -1;
  EXPECT_EQ(summary->GetSummary(&member_argument, &status), S_OK);
  EXPECT_EQ(status, 0);
  BSTR content = nullptr;
  summary->get_SumaryContent(&content);
  EXPECT_EQ(Take(content), L"Adds two values.");
  EXPECT_TRUE(DictionaryHas(lines_, 0));
  EXPECT_EQ(DictionaryCount(lines_), count + 1);
  EXPECT_EQ(member_argument, static_cast<IDispatch*>(member_));  // the reference is left alone

  // CParam writes the description into the caller's parameter object.
  _CParam* param = Create<_CParam>(CLSID_CParam, IID__CParam);
  ASSERT_NE(param, nullptr);
  EXPECT_EQ(param->GetParam(&member_argument, &status), S_OK);
  const VARIANT* description = parameter_->Find(L"Description");
  ASSERT_NE(description, nullptr);
  ASSERT_EQ(V_VT(description), VT_BSTR);
  EXPECT_STREQ(V_BSTR(description), L"the first value");

  // CCode: the example joined with <br> unless pre-formatted.
  _CCode* code = Create<_CCode>(CLSID_CCode, IID__CCode);
  ASSERT_NE(code, nullptr);
  code->put_GetAsPraeformated(VARIANT_FALSE);
  EXPECT_EQ(code->GetCode(&member_argument, &status), S_OK);
  code->get_CodeContent(&content);
  EXPECT_EQ(Take(content), L"<br>'/// x = DoIt(1)<br><br>");
  code->put_GetAsPraeformated(VARIANT_TRUE);
  code->GetCode(&member_argument, &status);
  code->get_CodeContent(&content);
  const std::wstring formatted = Take(content);
  EXPECT_NE(formatted.find(L"x = DoIt(1)"), std::wstring::npos);
  EXPECT_EQ(formatted.find(L"<br>"), std::wstring::npos);

  code->Release();
  param->Release();
  summary->Release();
}

// A script variable as the script engine passes it: a reference to a VARIANT.
VARIANT ReferenceTo(VARIANT* variable) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&v) = variable;
  return v;
}

TEST_F(ReportClassesTest, ScriptVariablesReachByReferenceParameters) {
  _CCodeFormat* format = Create<_CCodeFormat>(CLSID_CCodeFormat, IID__CCodeFormat);
  ASSERT_NE(format, nullptr);
  IDispatch* dispatch = format;

  // A script passes its variables as references to VARIANTs.
  VARIANT member_variable = Object(member_);
  member_->AddRef();
  VARIANT start_variable;
  VariantInit(&start_variable);
  V_VT(&start_variable) = VT_I2;  // an Integer: converted for the call, not written back
  V_I2(&start_variable) = 1;
  VARIANT end_variable = Long(0);
  VARIANT document_variable;
  VariantInit(&document_variable);
  V_VT(&document_variable) = VT_BOOL;
  V_BOOL(&document_variable) = VARIANT_FALSE;
  std::vector<VARIANT> args = {ReferenceTo(&document_variable), ReferenceTo(&end_variable),
                               ReferenceTo(&start_variable), ReferenceTo(&member_variable)};
  DISPPARAMS params = {args.data(), nullptr, 4, 0};
  VARIANT result;
  VariantInit(&result);
  UINT bad_argument = 99;
  EXPECT_EQ(dispatch->Invoke(0x60030000, IID_NULL, LOCALE_USER_DEFAULT,
                             DISPATCH_METHOD | DISPATCH_PROPERTYGET, &params, &result, nullptr,
                             &bad_argument),
            S_OK);
  EXPECT_EQ(V_VT(&result), VT_I4);
  // Endline 0 means the last line; the variable receives it.
  ASSERT_EQ(V_VT(&end_variable), VT_I4);
  EXPECT_EQ(V_I4(&end_variable), DictionaryCount(lines_) - 1);
  EXPECT_EQ(V_VT(&start_variable), VT_I2);
  EXPECT_EQ(V_VT(&member_variable), VT_DISPATCH);
  EXPECT_EQ(V_DISPATCH(&member_variable), static_cast<IDispatch*>(member_));
  BSTR html = nullptr;
  format->get_FormatedCode(&html);
  EXPECT_NE(Take(html).find(L"DoIt = a + 1"), std::wstring::npos);

  // A variable that is no number is a type mismatch of that argument.
  VariantClear(&end_variable);
  end_variable = Text(L"kein Wert");
  bad_argument = 99;
  EXPECT_EQ(dispatch->Invoke(0x60030000, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                             &result, nullptr, &bad_argument),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(bad_argument, 1u);
  ASSERT_EQ(V_VT(&end_variable), VT_BSTR);
  EXPECT_STREQ(V_BSTR(&end_variable), L"kein Wert");

  VariantClear(&result);
  VariantClear(&member_variable);
  VariantClear(&end_variable);
  format->Release();
}

TEST_F(ReportClassesTest, ValuesStillReachByReferenceParameters) {
  _CCodeFormat* format = Create<_CCodeFormat>(CLSID_CCodeFormat, IID__CCodeFormat);
  ASSERT_NE(format, nullptr);
  IDispatch* dispatch = format;
  // Literals and parenthesised expressions of a script arrive as values.
  std::vector<VARIANT> values = {Long(-1), Long(0), Long(1), Object(member_)};
  member_->AddRef();
  DISPPARAMS value_params = {values.data(), nullptr, 4, 0};
  VARIANT result;
  VariantInit(&result);
  EXPECT_EQ(dispatch->Invoke(0x60030000, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                             &value_params, &result, nullptr, nullptr),
            S_OK);
  BSTR html = nullptr;
  format->get_FormatedCode(&html);
  EXPECT_NE(Take(html).find(L"<html>"), std::wstring::npos) << "a full document was asked for";

  for (VARIANT& v : values) VariantClear(&v);
  VariantClear(&result);
  format->Release();
}

TEST_F(ReportClassesTest, UnreadableCallerObjectsGiveNeutralResults) {
  IDispatch* member_argument = member_;
  _CSummary* summary = Create<_CSummary>(CLSID_CSummary, IID__CSummary);
  ASSERT_NE(summary, nullptr);
  LONG status = -1;
  summary->GetSummary(&member_argument, &status);

  // Nothing, and an object without the required Name: status 0, the
  // previous content kept, the fault logged under the reader's names.
  IDispatch* nothing = nullptr;
  status = -1;
  EXPECT_EQ(summary->GetSummary(&nothing, &status), S_OK);
  EXPECT_EQ(status, 0);
  auto* nameless = Bag::New();
  nameless->Set(L"CodeLines", Object(NewDictionary()));
  IDispatch* nameless_argument = nameless;
  EXPECT_EQ(summary->GetSummary(&nameless_argument, &status), S_OK);
  BSTR content = nullptr;
  summary->get_SumaryContent(&content);
  EXPECT_EQ(Take(content), L"Adds two values.");
  std::string log = ErrorLog();
  EXPECT_NE(log.find("CSummary"), std::string::npos) << log;
  EXPECT_NE(log.find("GetSummary"), std::string::npos);
  EXPECT_NE(log.find("Name"), std::string::npos) << "the missing property is named";

  // The report object: a member that is Nothing gives the empty page, and
  // so does a project the bridge cannot read.
  _CFolioscope* report = Create<_CFolioscope>(CLSID_CFolioscope, IID__CFolioscope);
  ASSERT_NE(report, nullptr);
  BSTR project_name = SysAllocString(L"Kontor");
  BSTR module_name = SysAllocString(L"modKontor");
  BSTR page = nullptr;
  EXPECT_EQ(report->GetMemberContentSite(&nothing, &project_name, &module_name, &page), S_OK);
  EXPECT_EQ(Take(page), L"");
  report->putref_Projekt(nameless);
  EXPECT_EQ(report->GetModulContentSite(&module_name, &page), S_OK);
  EXPECT_EQ(Take(page), L"");
  LONG mode = 0;
  EXPECT_EQ(report->SaveReport(&mode, &status), S_OK);
  EXPECT_EQ(status, 0);
  log = ErrorLog();
  EXPECT_NE(log.find("CFolioscope"), std::string::npos) << log;
  EXPECT_NE(log.find("GetMemberContentSite"), std::string::npos);
  EXPECT_NE(log.find("GetModulContentSite"), std::string::npos);
  // The by-reference name arguments are the caller's and stay as they were.
  EXPECT_STREQ(module_name, L"modKontor");

  SysFreeString(project_name);
  SysFreeString(module_name);
  report->Release();
  nameless->Release();
  summary->Release();
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: report_classes_tests <VBFolioscope.dll>\n");
    return 2;
  }
  const std::string path = argv[1];
  dll_under_test.assign(path.begin(), path.end());
  return RUN_ALL_TESTS();
}
