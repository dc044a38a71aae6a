// The source formatter as the COM class VBFolioscope.CCodeFormat.
//
// One C++ CCodeFormat per COM object: its keyword table is loaded when the
// object is created, and the colour and font properties are plain stores
// into it. The Execute methods read the caller's member or module through
// the model bridge, format the copy, hand the by-reference line numbers and
// the document flag back to the caller (ExecuteMember turns an end line of 0
// into the last line) and write back what the scan added to the caller's
// code-line dictionary. An object the bridge cannot read is reported as a
// fault of the Execute procedure; FormatedCode then keeps the previous
// result.
#include <memory>
#include <string>

#include "VBFolioscope.h"
#include "com/bridged_call.h"
#include "com/dispatch_object.h"
#include "com/class_table.h"
#include "com/com_model.h"
#include "com/com_support.h"
#include "format/code_format.h"

namespace folioscope::com {
namespace {

constexpr char kClass[] = "CCodeFormat";

class ComCodeFormat final : public DispatchObject<_CCodeFormat> {
 public:
  ComCodeFormat() : DispatchObject<_CCodeFormat>(IID__CCodeFormat, kClass) {
    EnsurePlatform();
    format_ = std::make_unique<CCodeFormat>();
  }

  HRESULT STDMETHODCALLTYPE get_FormatedCode(BSTR* value) override {
    return GetText(kClass, format_->FormatedCode(), value);
  }
  HRESULT STDMETHODCALLTYPE get_SourceFont(BSTR* value) override {
    return GetText(kClass, format_->SourceFont, value);
  }
  HRESULT STDMETHODCALLTYPE put_SourceFont(BSTR value) override {
    return PutText(kClass, value, &format_->SourceFont);
  }
  HRESULT STDMETHODCALLTYPE get_BackgroundColor(BSTR* value) override {
    return GetText(kClass, format_->BackgroundColor, value);
  }
  HRESULT STDMETHODCALLTYPE put_BackgroundColor(BSTR value) override {
    return PutText(kClass, value, &format_->BackgroundColor);
  }
  HRESULT STDMETHODCALLTYPE get_CommentColor(BSTR* value) override {
    return GetText(kClass, format_->CommentColor, value);
  }
  HRESULT STDMETHODCALLTYPE put_CommentColor(BSTR value) override {
    return PutText(kClass, value, &format_->CommentColor);
  }
  HRESULT STDMETHODCALLTYPE get_KeywordColor(BSTR* value) override {
    return GetText(kClass, format_->KeywordColor, value);
  }
  HRESULT STDMETHODCALLTYPE put_KeywordColor(BSTR value) override {
    return PutText(kClass, value, &format_->KeywordColor);
  }
  HRESULT STDMETHODCALLTYPE get_SourceColor(BSTR* value) override {
    return GetText(kClass, format_->SourceColor, value);
  }
  HRESULT STDMETHODCALLTYPE put_SourceColor(BSTR value) override {
    return PutText(kClass, value, &format_->SourceColor);
  }

  HRESULT STDMETHODCALLTYPE ExecuteMember(IDispatch** MemberContent, LONG* StartLine, LONG* Endline,
                                          VARIANT_BOOL* AsFullHTMLDocument, LONG* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(MemberContent);
    FOLIOSCOPE_COM_CHECK_OUT(StartLine);
    FOLIOSCOPE_COM_CHECK_OUT(Endline);
    FOLIOSCOPE_COM_CHECK_OUT(AsFullHTMLDocument);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = 0;
    return Guard(kClass, [&] {
      constexpr char kProcedure[] = "ExecuteMember";
      auto member = ReadCaller<CallerMember>(*MemberContent, kClass, kProcedure);
      if (member == nullptr) return;
      int32_t start = *StartLine, end = *Endline;
      bool full_document = FromVariantBool(*AsFullHTMLDocument);
      *result = format_->ExecuteMember(member->model(), start, end, full_document);
      *StartLine = start;
      *Endline = end;
      *AsFullHTMLDocument = ToVariantBool(full_document);
      WriteBackCaller(member.get(), kClass, kProcedure);
    });
  }

  HRESULT STDMETHODCALLTYPE ExecuteModule(IDispatch** ModuleContent, LONG* StartLine, LONG* Endline,
                                          LONG* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(ModuleContent);
    FOLIOSCOPE_COM_CHECK_OUT(StartLine);
    FOLIOSCOPE_COM_CHECK_OUT(Endline);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = 0;
    return Guard(kClass, [&] {
      constexpr char kProcedure[] = "ExecuteModule";
      auto module = ReadCaller<CallerModule>(*ModuleContent, kClass, kProcedure);
      if (module == nullptr) return;
      int32_t start = *StartLine, end = *Endline;
      *result = format_->ExecuteModule(module->model(), start, end);
      *StartLine = start;
      *Endline = end;
      WriteBackCaller(module.get(), kClass, kProcedure);
    });
  }

 private:
  std::unique_ptr<CCodeFormat> format_;
};

ComClassRegistration registration(CLSID_CCodeFormat, kClass,
                                  &NewComObject<ComCodeFormat, _CCodeFormat>);

}  // namespace
}  // namespace folioscope::com
