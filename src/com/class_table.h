// The table of creatable classes of the server. Each class's .cc holds one
// static ComClassRegistration; DllGetClassObject hands out a class factory
// for every registered class id, and DllRegisterServer writes every entry
// to the registry (ProgID "VBFolioscope.<class_name>").
//
// The server's sources are linked straight into the DLL (no static library
// in between), so the linker keeps every registration object.
#ifndef FOLIOSCOPE_COM_CLASS_TABLE_H_
#define FOLIOSCOPE_COM_CLASS_TABLE_H_

#include <unknwn.h>
#include <windows.h>

#include <string>
#include <vector>

namespace folioscope::com {

class ComClassRegistration {
 public:
  // `clsid` must outlive the program (a widl CLSID_ constant); `create`
  // returns a new object with one reference owned by the caller, or null
  // when no memory is left.
  ComClassRegistration(const CLSID& clsid, const char* class_name, IUnknown* (*create)());
  ComClassRegistration(const ComClassRegistration&) = delete;
  ComClassRegistration& operator=(const ComClassRegistration&) = delete;

  const CLSID& clsid() const { return clsid_; }
  const char* class_name() const { return class_name_; }
  IUnknown* Create() const { return create_(); }
  // "VBFolioscope.<class_name>"
  std::string ProgId() const;

 private:
  const CLSID& clsid_;
  const char* class_name_;
  IUnknown* (*create_)();
};

// Every registered class, in registration order.
const std::vector<const ComClassRegistration*>& RegisteredComClasses();

// The registration of `clsid`, or null.
const ComClassRegistration* FindComClass(REFCLSID clsid);

// Creates a class factory for `registration` (one reference, the caller's).
IClassFactory* NewClassFactory(const ComClassRegistration& registration);

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_CLASS_TABLE_H_
