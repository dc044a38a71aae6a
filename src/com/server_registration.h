// What DllRegisterServer writes and DllUnregisterServer removes: for every
// registered class CLSID\{clsid} (InprocServer32 = the DLL with
// ThreadingModel Apartment, ProgID, VERSION, TypeLib, Programmable) and
// the ProgID key "VBFolioscope.<class>" pointing back to it, plus the type
// library with its interfaces.
//
// Registration goes machine-wide (HKEY_LOCAL_MACHINE\Software\Classes,
// what HKEY_CLASSES_ROOT shows) when the caller may write there, else to
// the current user's HKEY_CURRENT_USER\Software\Classes, so that a user
// without administrator rights can register the server for himself. An
// administrator asks for the per-user place with the environment variable
// FOLIOSCOPE_REGISTER_PER_USER=1.
// Unregistration removes the keys from both places.
#ifndef FOLIOSCOPE_COM_SERVER_REGISTRATION_H_
#define FOLIOSCOPE_COM_SERVER_REGISTRATION_H_

#include <windows.h>

namespace folioscope::com {

// S_OK, or SELFREG_E_CLASS / SELFREG_E_TYPELIB (or the failing HRESULT).
HRESULT RegisterServer();
// S_OK also when nothing was registered.
HRESULT UnregisterServer();

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_SERVER_REGISTRATION_H_
