// The DLL's entry points: DllMain keeps the instance handle (the
// application folder is the DLL's folder); DllGetClassObject hands out a
// class factory for each class of the class table; DllCanUnloadNow says
// yes only while no object of ours lives and no LockServer lock is held.
#include <windows.h>

#include "com/class_table.h"
#include "com/com_support.h"
#include "com/server_registration.h"

using folioscope::com::FindComClass;
using folioscope::com::NewClassFactory;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    // Thread notifications stay on: the statically linked runtime needs them
    // for its thread-local storage.
    folioscope::com::SetModuleInstance(instance);
  }
  return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const folioscope::com::ComClassRegistration* registration = FindComClass(clsid);
  if (registration == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  IClassFactory* factory = NewClassFactory(*registration);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT hr = factory->QueryInterface(riid, object);
  factory->Release();
  return hr;
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return folioscope::com::ModuleInUse() ? S_FALSE : S_OK;
}

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() { return folioscope::com::RegisterServer(); }

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
  return folioscope::com::UnregisterServer();
}
