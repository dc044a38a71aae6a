// The COM form of CRessource: the chosen report set's templates and texts,
// loaded when the object is made (from the current settings), then only
// handed out.
//
// PlaceHolder and SpecificLanguage are Scripting.Dictionary objects, as a
// VB caller expects: made from the loaded dictionaries on first read, then
// the same object on every read, so a caller's changes stay; assigning
// another dictionary (or Nothing) replaces it.
#include <memory>
#include <new>
#include <string>

#include "VBFolioscope.h"
#include "com/class_table.h"
#include "com/com_support.h"
#include "com/dispatch_object.h"
#include "com/late_bound.h"
#include "reportsets/ressource.h"

namespace folioscope::com {

namespace {

constexpr int32_t kCannotCreateObject = 429;

// A new Scripting.Dictionary holding the entries of `source` in order.
Ref<IDispatch> ToScriptingDictionary(const vb::Dictionary& source) {
  CLSID clsid;
  if (FAILED(CLSIDFromProgID(L"Scripting.Dictionary", &clsid))) vb::Raise(kCannotCreateObject);
  IDispatch* created = nullptr;
  if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&created)))) {
    vb::Raise(kCannotCreateObject);
  }
  Ref<IDispatch> dictionary(created);
  for (int32_t i = 0; i < source.Count(); ++i) {
    VARIANT args[2];
    VariantInit(&args[0]);
    VariantInit(&args[1]);
    FromKey(source.KeyAt(i), &args[0]);
    V_VT(&args[1]) = VT_BSTR;
    V_BSTR(&args[1]) = nullptr;
    bool added = false;
    try {
      V_BSTR(&args[1]) = ToBstr(source.ItemAt(i));
      added = CallMethod(dictionary.get(), L"Add", args, 2);
    } catch (...) {
      VariantClear(&args[0]);
      VariantClear(&args[1]);
      throw;
    }
    VariantClear(&args[0]);
    VariantClear(&args[1]);
    if (!added) vb::Raise(vb::kKeyAlreadyAssociated);
  }
  return dictionary;
}

// One dictionary property: made from the component's dictionary on first
// read unless the caller assigned one before.
class DictionaryProperty {
 public:
  HRESULT Get(const vb::Dictionary& source, IDispatch** value) {
    if (!assigned_) {
      object_ = ToScriptingDictionary(source);
      assigned_ = true;
    }
    if (object_) object_->AddRef();
    *value = object_.get();
    return S_OK;
  }
  void Set(IDispatch* value) {
    object_ = Ref<IDispatch>::Borrow(value);
    assigned_ = true;
  }

 private:
  Ref<IDispatch> object_;
  bool assigned_ = false;
};

class ComRessource final : public DispatchObject<_CRessource> {
 public:
  ComRessource()
      : DispatchObject(IID__CRessource, "CRessource"), ressource_(std::make_unique<CRessource>()) {}

  HRESULT STDMETHODCALLTYPE get_PlaceHolder(IDispatch** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { return place_holder_.Get(ressource_->PlaceHolder(), value); });
  }
  HRESULT STDMETHODCALLTYPE putref_PlaceHolder(IDispatch* value) override {
    return Guarded([&] { place_holder_.Set(value); });
  }
  HRESULT STDMETHODCALLTYPE get_SpecificLanguage(IDispatch** value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { return specific_language_.Get(ressource_->SpecificLanguage(), value); });
  }
  HRESULT STDMETHODCALLTYPE putref_SpecificLanguage(IDispatch* value) override {
    return Guarded([&] { specific_language_.Set(value); });
  }

  HRESULT STDMETHODCALLTYPE get_PlaceholderCount(LONG* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = ressource_->PlaceholderCount();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_SpecificLanguageCount(LONG* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = ressource_->SpecificLanguageCount();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Ready(VARIANT_BOOL* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = ToVariantBool(ressource_->Ready());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    return Text(&CRessource::Name, value);
  }

#define FOLIOSCOPE_TEMPLATE(name)                              \
  HRESULT STDMETHODCALLTYPE get_##name(BSTR* value) override { \
    return Text(&CRessource::name, value);                     \
  }
  FOLIOSCOPE_TEMPLATE(MemberInhaltOben)
  FOLIOSCOPE_TEMPLATE(MemberInhaltMitte)
  FOLIOSCOPE_TEMPLATE(MemberInhaltUnten)
  FOLIOSCOPE_TEMPLATE(ModulInhaltOben)
  FOLIOSCOPE_TEMPLATE(ModulInhaltMitte)
  FOLIOSCOPE_TEMPLATE(ModulInhaltUnten)
  FOLIOSCOPE_TEMPLATE(Projekt)
  FOLIOSCOPE_TEMPLATE(Index)
  FOLIOSCOPE_TEMPLATE(IndexFrameLinksOben)
  FOLIOSCOPE_TEMPLATE(IndexFrameLinksKnoten)
  FOLIOSCOPE_TEMPLATE(IndexFrameLinksModul)
  FOLIOSCOPE_TEMPLATE(IndexFrameLinksUnten)
  FOLIOSCOPE_TEMPLATE(Logo)
  FOLIOSCOPE_TEMPLATE(DDHTMLSeiteOben)
  FOLIOSCOPE_TEMPLATE(DDMemberOben)
  FOLIOSCOPE_TEMPLATE(DDKonstantenOben)
  FOLIOSCOPE_TEMPLATE(DDKonstantenUnten)
  FOLIOSCOPE_TEMPLATE(DDVariablenOben)
  FOLIOSCOPE_TEMPLATE(DDVariablenUnten)
  FOLIOSCOPE_TEMPLATE(DDEnumOben)
  FOLIOSCOPE_TEMPLATE(DDEnumUnten)
  FOLIOSCOPE_TEMPLATE(DDTypenOben)
  FOLIOSCOPE_TEMPLATE(DDTypenUnten)
  FOLIOSCOPE_TEMPLATE(DDMemberUnten)
  FOLIOSCOPE_TEMPLATE(DDHTMLSeiteUnten)
  FOLIOSCOPE_TEMPLATE(TagEndTable)
  FOLIOSCOPE_TEMPLATE(DDEnum)
  FOLIOSCOPE_TEMPLATE(DDType)
#undef FOLIOSCOPE_TEMPLATE

  HRESULT STDMETHODCALLTYPE put_DDMemberUnten(BSTR value) override {
    return Guarded([&] { ressource_->SetDDMemberUnten(FromBstr(value)); });
  }

 private:
  template <class Getter>
  HRESULT Text(Getter getter, BSTR* value) {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { *value = ToBstr((ressource_.get()->*getter)()); });
  }

  std::unique_ptr<CRessource> ressource_;
  DictionaryProperty place_holder_;
  DictionaryProperty specific_language_;
};

IUnknown* NewRessource() { return static_cast<_CRessource*>(new ComRessource()); }

ComClassRegistration ressource_class(CLSID_CRessource, "CRessource", &NewRessource);

}  // namespace

}  // namespace folioscope::com
