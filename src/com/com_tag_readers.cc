// The doc-comment readers as COM classes: VBFolioscope.CSummary, CRemarks,
// CReturns, CParam and CCode.
//
// Each wraps one C++ reader for its lifetime, so the content property holds
// the result of the last Get...() call (and CParam's remembered parameter
// name carries over between calls, as it does in the component). A Get...()
// call reads the caller's member through the model bridge, runs the reader
// on the copy and writes back what the reader changed: the key-0 entry that
// every scan adds to the member's code-line dictionary, and for CParam the
// parameter descriptions. A member the bridge cannot read is reported as a
// fault of the Get...() procedure, which then returns 0 with the content
// unchanged.
#include <memory>
#include <string>

#include "VBFolioscope.h"
#include "com/bridged_call.h"
#include "com/dispatch_object.h"
#include "com/class_table.h"
#include "com/com_model.h"
#include "com/com_support.h"
#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"

namespace folioscope::com {
namespace {

// Runs `read` (a reader's Get...() on the member's model) on the caller's
// member, with the result in `*result`, and writes the changes back.
template <class Read>
HRESULT ReadMember(const char* class_name, const char* procedure, IDispatch** member_content,
                   LONG* result, Read&& read) {
  FOLIOSCOPE_COM_CHECK_OUT(member_content);
  FOLIOSCOPE_COM_CHECK_OUT(result);
  *result = 0;
  return Guard(class_name, [&] {
    auto member = ReadCaller<CallerMember>(*member_content, class_name, procedure);
    if (member == nullptr) return;
    *result = read(member->model());
    WriteBackCaller(member.get(), class_name, procedure);
  });
}

// The component's readers need the platform from their construction on, so
// every class installs it before its reader member is built.
struct PlatformFirst {
  PlatformFirst() { EnsurePlatform(); }
};

class ComSummary final : public DispatchObject<_CSummary>, private PlatformFirst {
 public:
  static constexpr char kClass[] = "CSummary";
  ComSummary() : DispatchObject<_CSummary>(IID__CSummary, kClass) {}

  HRESULT STDMETHODCALLTYPE get_SumaryContent(BSTR* value) override {
    return GetText(kClass, reader_.SumaryContent(), value);
  }
  HRESULT STDMETHODCALLTYPE GetSummary(IDispatch** MemberContent, LONG* result) override {
    return ReadMember(kClass, "GetSummary", MemberContent, result,
                      [&](SourceMember& m) { return reader_.GetSummary(m); });
  }

 private:
  CSummary reader_;
};

class ComRemarks final : public DispatchObject<_CRemarks>, private PlatformFirst {
 public:
  static constexpr char kClass[] = "CRemarks";
  ComRemarks() : DispatchObject<_CRemarks>(IID__CRemarks, kClass) {}

  HRESULT STDMETHODCALLTYPE get_RemarksContent(BSTR* value) override {
    return GetText(kClass, reader_.RemarksContent(), value);
  }
  HRESULT STDMETHODCALLTYPE GetRemarks(IDispatch** MemberContent, LONG* result) override {
    return ReadMember(kClass, "GetRemarks", MemberContent, result,
                      [&](SourceMember& m) { return reader_.GetRemarks(m); });
  }

 private:
  CRemarks reader_;
};

class ComReturns final : public DispatchObject<_CReturns>, private PlatformFirst {
 public:
  static constexpr char kClass[] = "CReturns";
  ComReturns() : DispatchObject<_CReturns>(IID__CReturns, kClass) {}

  HRESULT STDMETHODCALLTYPE get_ReturnsContent(BSTR* value) override {
    return GetText(kClass, reader_.ReturnsContent(), value);
  }
  HRESULT STDMETHODCALLTYPE GetReturns(IDispatch** MemberContent, LONG* result) override {
    return ReadMember(kClass, "GetReturns", MemberContent, result,
                      [&](SourceMember& m) { return reader_.GetReturns(m); });
  }

 private:
  CReturns reader_;
};

class ComParam final : public DispatchObject<_CParam>, private PlatformFirst {
 public:
  static constexpr char kClass[] = "CParam";
  ComParam() : DispatchObject<_CParam>(IID__CParam, kClass) {}

  HRESULT STDMETHODCALLTYPE get_ParamContent(BSTR* value) override {
    return GetText(kClass, reader_.ParamContent(), value);
  }
  HRESULT STDMETHODCALLTYPE GetParam(IDispatch** MemberContent, LONG* result) override {
    return ReadMember(kClass, "GetParam", MemberContent, result,
                      [&](SourceMember& m) { return reader_.GetParam(m); });
  }

 private:
  CParam reader_;
};

class ComCode final : public DispatchObject<_CCode>, private PlatformFirst {
 public:
  static constexpr char kClass[] = "CCode";
  ComCode() : DispatchObject<_CCode>(IID__CCode, kClass) {}

  HRESULT STDMETHODCALLTYPE put_GetAsPraeformated(VARIANT_BOOL value) override {
    reader_.SetGetAsPraeformated(FromVariantBool(value));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_CodeContent(BSTR* value) override {
    return GetText(kClass, reader_.CodeContent(), value);
  }
  HRESULT STDMETHODCALLTYPE GetCode(IDispatch** MemberContent, LONG* result) override {
    return ReadMember(kClass, "GetCode", MemberContent, result,
                      [&](SourceMember& m) { return reader_.GetCode(m); });
  }

 private:
  CCode reader_;
};

ComClassRegistration summary_registration(CLSID_CSummary, ComSummary::kClass,
                                          &NewComObject<ComSummary, _CSummary>);
ComClassRegistration remarks_registration(CLSID_CRemarks, ComRemarks::kClass,
                                          &NewComObject<ComRemarks, _CRemarks>);
ComClassRegistration returns_registration(CLSID_CReturns, ComReturns::kClass,
                                          &NewComObject<ComReturns, _CReturns>);
ComClassRegistration param_registration(CLSID_CParam, ComParam::kClass,
                                        &NewComObject<ComParam, _CParam>);
ComClassRegistration code_registration(CLSID_CCode, ComCode::kClass,
                                       &NewComObject<ComCode, _CCode>);

}  // namespace
}  // namespace folioscope::com
