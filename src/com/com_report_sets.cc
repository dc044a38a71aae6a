// The COM form of the report-set catalogue: CReportSets, CReportSet,
// CLanguages and CLanguage wrap the component's objects.
//
// A wrapper shares ownership of what it wraps, so a CReportSet taken from
// the catalogue stays usable after the catalogue is released. A collection
// hands out one wrapper per member, so Item(0) Is Item(0) holds as it does
// for VB objects. Item's faults (an unknown key or number) go to the caller
// as COM errors; they are the caller's mistakes, not the component's, and
// are not reported to the error handler.
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <new>

#include "VBFolioscope.h"
#include "com/class_table.h"
#include "com/com_support.h"
#include "com/dispatch_object.h"
#include "reportsets/report_sets.h"

namespace folioscope::com {

namespace {

// The member of `collection` that Item(Index) names: a string index goes to
// the collection's own rule (numeric text is a position); a number is a
// position, whole and within Long, or it names nothing.
template <class Collection>
auto& LookUp(const Collection& collection, const VARIANT& index) {
  const IndexArgument argument = ReadIndexArgument(index);
  if (argument.is_string) return collection.Item(argument.text);
  const double n = argument.number;
  if (n != std::floor(n) || n < std::numeric_limits<int32_t>::min() ||
      n > std::numeric_limits<int32_t>::max()) {
    vb::Raise(vb::kInvalidProcedureCall);
  }
  return collection.Item(static_cast<int32_t>(n));
}

// Hands `object` (one reference, ours) out through `out`.
template <class I>
void HandOut(I* object, I** out) {
  object->AddRef();
  *out = object;
}

class ComLanguage final : public DispatchObject<_CLanguage> {
 public:
  explicit ComLanguage(std::shared_ptr<CLanguage> language)
      : DispatchObject(IID__CLanguage, "CLanguage"), language_(std::move(language)) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { *value = ToBstr(language_->Name()); });
  }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
    return Guarded([&] { language_->SetName(FromBstr(value)); });
  }

 private:
  std::shared_ptr<CLanguage> language_;
};

// The wrappers a collection has handed out, one per member, kept for the
// collection's lifetime.
template <class Member, class Wrapper>
class WrapperCache {
 public:
  WrapperCache() = default;
  WrapperCache(const WrapperCache&) = delete;
  WrapperCache& operator=(const WrapperCache&) = delete;
  ~WrapperCache() {
    for (auto& [member, wrapper] : wrappers_) wrapper->Release();
  }

  // The wrapper of `member` (owned by `owner`), made on first use.
  template <class Owner>
  Wrapper* Get(const std::shared_ptr<Owner>& owner, Member& member) {
    auto it = wrappers_.find(&member);
    if (it != wrappers_.end()) return it->second;
    auto* wrapper = new Wrapper(std::shared_ptr<Member>(owner, &member));
    try {
      wrappers_.emplace(&member, wrapper);
    } catch (...) {
      wrapper->Release();
      throw;
    }
    return wrapper;
  }

 private:
  std::map<const Member*, Wrapper*> wrappers_;
};

class ComLanguages final : public DispatchObject<_CLanguages> {
 public:
  explicit ComLanguages(std::shared_ptr<CLanguages> languages)
      : DispatchObject(IID__CLanguages, "CLanguages"), languages_(std::move(languages)) {}

  const std::shared_ptr<CLanguages>& languages() const { return languages_; }

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* Index, _CLanguage** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    if (Index == nullptr) return E_POINTER;
    return Guarded(
        [&] { HandOut<_CLanguage>(items_.Get(languages_, LookUp(*languages_, *Index)), value); });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = languages_->Count();
    return S_OK;
  }

 private:
  std::shared_ptr<CLanguages> languages_;
  WrapperCache<CLanguage, ComLanguage> items_;
};

class ComReportSet final : public DispatchObject<_CReportSet> {
 public:
  explicit ComReportSet(std::shared_ptr<CReportSet> set)
      : DispatchObject(IID__CReportSet, "CReportSet"), set_(std::move(set)) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { *value = ToBstr(set_->Name()); });
  }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
    return Guarded([&] { set_->SetName(FromBstr(value)); });
  }
  HRESULT STDMETHODCALLTYPE get_QuellPath(BSTR* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { *value = ToBstr(set_->QuellPath()); });
  }
  HRESULT STDMETHODCALLTYPE put_QuellPath(BSTR value) override {
    return Guarded([&] { set_->SetQuellPath(FromBstr(value)); });
  }

  HRESULT STDMETHODCALLTYPE get_Languages(_CLanguages** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] {
      // One wrapper while the set keeps the same languages.
      if (languages_ == nullptr || languages_->languages() != set_->SharedLanguages()) {
        SetWrapper(new ComLanguages(set_->SharedLanguages()));
      }
      HandOut<_CLanguages>(languages_, value);
    });
  }

  HRESULT STDMETHODCALLTYPE putref_Languages(_CLanguages* value) override {
    return Guarded([&] {
      // Nothing gives the set a new, empty list (a set never lacks one).
      ComLanguages* ours = value == nullptr ? nullptr : ImplementationOf<ComLanguages>(value);
      if (value != nullptr && ours == nullptr) vb::Raise(13);
      if (ours == nullptr) {
        set_->SetLanguages(std::make_shared<CLanguages>());
        SetWrapper(nullptr);
        return;
      }
      set_->SetLanguages(ours->languages());
      ours->AddRef();
      SetWrapper(ours);
    });
  }

 private:
  ~ComReportSet() override { SetWrapper(nullptr); }

  // Takes over one reference of `wrapper`.
  void SetWrapper(ComLanguages* wrapper) {
    if (languages_ != nullptr) languages_->Release();
    languages_ = wrapper;
  }

  std::shared_ptr<CReportSet> set_;
  ComLanguages* languages_ = nullptr;  // one reference held
};

class ComReportSets final : public DispatchObject<_CReportSets> {
 public:
  // Reads Res\IndexComment.ini now, as the catalogue is made.
  ComReportSets()
      : DispatchObject(IID__CReportSets, "CReportSets"), sets_(std::make_shared<CReportSets>()) {}

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* Index, _CReportSet** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    if (Index == nullptr) return E_POINTER;
    return Guarded([&] { HandOut<_CReportSet>(items_.Get(sets_, LookUp(*sets_, *Index)), value); });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = sets_->Count();
    return S_OK;
  }

 private:
  std::shared_ptr<CReportSets> sets_;
  WrapperCache<CReportSet, ComReportSet> items_;
};

// The four classes are creatable on their own too; a lone CReportSet or
// CLanguages starts empty.
IUnknown* NewReportSets() { return static_cast<_CReportSets*>(new ComReportSets()); }
IUnknown* NewReportSet() {
  return static_cast<_CReportSet*>(new ComReportSet(std::make_shared<CReportSet>()));
}
IUnknown* NewLanguages() {
  return static_cast<_CLanguages*>(new ComLanguages(std::make_shared<CLanguages>()));
}
IUnknown* NewLanguage() {
  return static_cast<_CLanguage*>(new ComLanguage(std::make_shared<CLanguage>()));
}

ComClassRegistration report_sets_class(CLSID_CReportSets, "CReportSets", &NewReportSets);
ComClassRegistration report_set_class(CLSID_CReportSet, "CReportSet", &NewReportSet);
ComClassRegistration languages_class(CLSID_CLanguages, "CLanguages", &NewLanguages);
ComClassRegistration language_class(CLSID_CLanguage, "CLanguage", &NewLanguage);

}  // namespace

}  // namespace folioscope::com
