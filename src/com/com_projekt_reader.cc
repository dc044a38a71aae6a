// VBFolioscope.CProjektReader: reads a Visual Basic 6 project from its .vbp
// file with the component's VB6 reader and hands the script a project object
// (model_objects.h) to assign to CFolioscope.Projekt. The report object then
// works on that model in place, and the script can walk it (Modules,
// Members, CodeLines ...) like any project of its own making.
#include <memory>
#include <string>

#include "VBFolioscope.h"
#include "com/class_table.h"
#include "com/com_support.h"
#include "com/dispatch_object.h"
#include "com/model_objects.h"
#include "infra/file_system.h"
#include "model/vb6_reader.h"

namespace folioscope::com {
namespace {

// A script passes the path as a variable (a reference to a VARIANT), which
// the by-reference BSTR parameter of Open takes through DispatchObject.
class ComProjektReader final : public DispatchObject<_CProjektReader> {
 public:
  static constexpr char kClass[] = "CProjektReader";
  ComProjektReader() : DispatchObject<_CProjektReader>(IID__CProjektReader, kClass) {
    EnsurePlatform();
  }

  // The reader's messages of the last Open (one a line, CR LF between).
  HRESULT STDMETHODCALLTYPE get_Diagnostics(BSTR* value) override {
    FOLIOSCOPE_COM_CHECK_OUT(value);
    *value = nullptr;
    return Guarded([&] { *value = ToBstr(diagnostics_); });
  }

  // The project of the .vbp at `Path`. Modules that cannot be read are left
  // out (see Diagnostics); a .vbp that cannot be read raises 53 when it does
  // not exist, else 75.
  HRESULT STDMETHODCALLTYPE Open(BSTR* Path, IDispatch** result) override {
    FOLIOSCOPE_COM_CHECK_OUT(Path);
    FOLIOSCOPE_COM_CHECK_OUT(result);
    *result = nullptr;
    return Guarded([&] {
      const std::string path = FromBstr(*Path);
      ProjectReadResult read = ReadProject(path);
      diagnostics_.clear();
      for (const ReaderDiagnostic& d : read.diagnostics) {
        if (!diagnostics_.empty()) diagnostics_ += "\r\n";
        diagnostics_ += d.ToText();
      }
      if (read.project == nullptr) {
        const int32_t number =
            CFileSystem().IsDateiVorhanden(path) ? vb::kPathFileAccessError : vb::kFileNotFound;
        throw vb::RuntimeError(number, vb::ErrorDescription(number) + ": " + path);
      }
      *result = NewProjectObject(std::shared_ptr<SourceProject>(std::move(read.project)));
    });
  }

 private:
  std::string diagnostics_;
};

IUnknown* CreateProjektReader() {
  try {
    return static_cast<_CProjektReader*>(new ComProjektReader());
  } catch (...) {
    return nullptr;
  }
}

const ComClassRegistration registration(CLSID_CProjektReader, ComProjektReader::kClass,
                                        &CreateProjektReader);

}  // namespace
}  // namespace folioscope::com
