// The report object as the COM class VBFolioscope.CFolioscope.
//
// One C++ CFolioscope lives as long as the COM object, so its settings,
// report-set resources and the rewritten PlainPath persist between calls as
// they do for a caller on the Linux host. The properties are plain stores
// into that object; Projekt keeps the caller's own project object.
//
// A method reads the caller's project through the model bridge at the start
// of every call (never cached: the caller may change its project between two
// calls), points the C++ object at the copy for the duration of the call, and
// writes the component's changes back before it returns. A project that is
// Nothing reaches the component as "no project", which then behaves as it
// always does without one (SaveReport writes nothing, a page getter reports
// its fault); a project the bridge cannot read is reported as a fault of the
// method, which then returns "" or 0.
#include <memory>
#include <string>

#include "VBFolioscope.h"
#include "com/bridged_call.h"
#include "com/dispatch_object.h"
#include "com/class_table.h"
#include "com/com_model.h"
#include "com/com_support.h"
#include "engine/folioscope.h"

namespace folioscope::com {
namespace {

constexpr char kClass[] = "CFolioscope";

class ComFolioscope final : public DispatchObject<_CFolioscope> {
 public:
  ComFolioscope() : DispatchObject<_CFolioscope>(IID__CFolioscope, kClass) {
    EnsurePlatform();
    report_ = std::make_unique<CFolioscope>();
  }
  ~ComFolioscope() override {
    if (projekt_ != nullptr) projekt_->Release();
  }

  // --- Properties ----------------------------------------------------------

  HRESULT STDMETHODCALLTYPE get_PlainPath(BSTR* value) override {
    return GetText(kClass, report_->PlainPath, value);
  }
  HRESULT STDMETHODCALLTYPE put_PlainPath(BSTR value) override {
    return PutText(kClass, value, &report_->PlainPath);
  }
  HRESULT STDMETHODCALLTYPE get_FolderName(BSTR* value) override {
    return GetText(kClass, report_->FolderName, value);
  }
  HRESULT STDMETHODCALLTYPE put_FolderName(BSTR value) override {
    return PutText(kClass, value, &report_->FolderName);
  }
  HRESULT STDMETHODCALLTYPE get_Projekt(IDispatch** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = projekt_;
    if (projekt_ != nullptr) projekt_->AddRef();
    return S_OK;
  }
  // VB callers assign the project with Set (propputref); late-bound callers
  // that use a plain property put get the same store.
  HRESULT STDMETHODCALLTYPE put_Projekt(IDispatch* value) override { return StoreProjekt(value); }
  HRESULT STDMETHODCALLTYPE putref_Projekt(IDispatch* value) override {
    return StoreProjekt(value);
  }
  HRESULT STDMETHODCALLTYPE get_ProjektName(BSTR* value) override {
    return GetText(kClass, report_->ProjektName, value);
  }
  HRESULT STDMETHODCALLTYPE put_ProjektName(BSTR value) override {
    return PutText(kClass, value, &report_->ProjektName);
  }
  HRESULT STDMETHODCALLTYPE get_ModuleName(BSTR* value) override {
    return GetText(kClass, report_->ModuleName, value);
  }
  HRESULT STDMETHODCALLTYPE put_ModuleName(BSTR value) override {
    return PutText(kClass, value, &report_->ModuleName);
  }
  HRESULT STDMETHODCALLTYPE get_MemberName(BSTR* value) override {
    return GetText(kClass, report_->MemberName, value);
  }
  HRESULT STDMETHODCALLTYPE put_MemberName(BSTR value) override {
    return PutText(kClass, value, &report_->MemberName);
  }
  HRESULT STDMETHODCALLTYPE get_Ready(VARIANT_BOOL* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = ToVariantBool(report_->Ready());
    return S_OK;
  }

  // --- Methods ---------------------------------------------------------------

  HRESULT STDMETHODCALLTYPE SaveCHMReportSystem(LONG* SaveMode, LONG* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(SaveMode);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = 0;
    return Guard(kClass, [&] {
      WithProject("SaveCHMReportSystem",
                  [&] { *result = report_->SaveCHMReportSystem(*SaveMode); });
    });
  }

  HRESULT STDMETHODCALLTYPE SaveReport(LONG* SaveMode, LONG* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(SaveMode);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = 0;
    return Guard(kClass, [&] {
      WithProject("SaveReport", [&] { *result = report_->SaveReport(*SaveMode); });
    });
  }

  HRESULT STDMETHODCALLTYPE GetProjektSite(BSTR* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = nullptr;
    return Guard(kClass, [&] {
      std::string page;
      WithProject("GetProjektSite", [&] { page = report_->GetProjektSite(); });
      *result = ToBstr(page);
    });
  }

  HRESULT STDMETHODCALLTYPE GetModulContentSite(BSTR* ModulName, BSTR* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(ModulName);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = nullptr;
    return Guard(kClass, [&] {
      const std::string modul_name = FromBstr(*ModulName);
      std::string page;
      WithProject("GetModulContentSite", [&] { page = report_->GetModulContentSite(modul_name); });
      *result = ToBstr(page);
    });
  }

  HRESULT STDMETHODCALLTYPE GetMemberContentSite(IDispatch** MemberContent, BSTR* ProjektName,
                                                 BSTR* ModulName, BSTR* result) override {
    FOLIOSCOPE_COM_CHECK_OUT(MemberContent);
    FOLIOSCOPE_COM_CHECK_OUT(ProjektName);
    FOLIOSCOPE_COM_CHECK_OUT(ModulName);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = nullptr;
    return Guard(kClass, [&] {
      constexpr char kProcedure[] = "GetMemberContentSite";
      const std::string projekt_name = FromBstr(*ProjektName);
      const std::string modul_name = FromBstr(*ModulName);
      std::string page;
      WithProject(kProcedure, [&] {
        auto member = ReadCaller<CallerMember>(*MemberContent, kClass, kProcedure);
        if (member == nullptr) return;
        page = report_->GetMemberContentSite(member->model(), projekt_name, modul_name);
        WriteBackCaller(member.get(), kClass, kProcedure);
      });
      *result = ToBstr(page);
    });
  }

 private:
  HRESULT StoreProjekt(IDispatch* value) {
    if (value != nullptr) value->AddRef();
    if (projekt_ != nullptr) projekt_->Release();
    projekt_ = value;
    return S_OK;
  }

  // Runs `call` with the C++ report object pointed at a fresh reading of the
  // caller's project (or at no project when Projekt is Nothing), then writes
  // the component's changes back. When the project cannot be read, the fault
  // is reported under `procedure` and `call` does not run.
  template <class Call>
  void WithProject(const char* procedure, Call&& call) {
    std::unique_ptr<CallerProject> project;
    if (projekt_ != nullptr) {
      project = ReadCaller<CallerProject>(projekt_, kClass, procedure);
      if (project == nullptr) return;
    }
    report_->Projekt = project != nullptr ? &project->model() : nullptr;
    try {
      call();
    } catch (...) {
      report_->Projekt = nullptr;
      throw;
    }
    report_->Projekt = nullptr;
    WriteBackCaller(project.get(), kClass, procedure);
  }

  std::unique_ptr<CFolioscope> report_;
  IDispatch* projekt_ = nullptr;  // the caller's project; one reference held
};

ComClassRegistration registration(CLSID_CFolioscope, kClass,
                                  &NewComObject<ComFolioscope, _CFolioscope>);

}  // namespace
}  // namespace folioscope::com
