// list_type_library FILE: what a type library holds, as the system reads it, a fact to a line:
//
//   library NAME {identifier} MAJOR.MINOR
//   class NAME {identifier} default=INTERFACE default-events=INTERFACE FLAGS…
//   interface NAME {identifier}
//   member INTERFACE NUMBER method|get|put|putref NAME RESULT FLAGS…
//   argument NAME TYPE FLAGS… default=VALUE

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bvconn/platform/windows/components.h"

namespace {

void check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  std::fprintf(stderr, "%s: 0x%08lX\n", what, static_cast<unsigned long>(result));
  std::exit(1);
}

std::string narrow(const OLECHAR* text) {
  std::string out;
  for (; text != nullptr && *text != 0; ++text) out += static_cast<char>(*text);
  return out;
}

std::string taken(BSTR text) {
  const std::string out = narrow(text);
  SysFreeString(text);
  return out;
}

std::string guid_text(const GUID& id) {
  OLECHAR text[64];
  StringFromGUID2(id, text, 64);
  return narrow(text);
}

std::string name_of(ITypeInfo* info) {
  BSTR name = nullptr;
  check(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr), "a type's name");
  return taken(name);
}

std::string type_text(ITypeInfo* info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_VOID:
      return "none";
    case VT_BSTR:
      return "string";
    case VT_BOOL:
      return "boolean";
    case VT_I2:
      return "int16";
    case VT_I4:
      return "int32";
    case VT_UI1:
      return "byte";
    case VT_VARIANT:
      return "variant";
    case VT_DISPATCH:
      return "object";
    case VT_UNKNOWN:
      return "unknown";
    case VT_SAFEARRAY:
      return type_text(info, *type.lptdesc) + "[]";
    case VT_PTR:
      return "*" + type_text(info, *type.lptdesc);
    case VT_USERDEFINED: {
      ITypeInfo* other = nullptr;
      check(info->GetRefTypeInfo(type.hreftype, &other), "a type that is named");
      const std::string name = name_of(other);
      other->Release();
      return name;
    }
    default:
      return "type" + std::to_string(type.vt);
  }
}

std::string value_text(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return "\"" + narrow(value.bstrVal) + "\"";
    case VT_BOOL:
      return value.boolVal != 0 ? "true" : "false";
    case VT_I2:
      return std::to_string(value.iVal);
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
      return std::to_string(value.lVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return value.punkVal == nullptr ? "null" : "object";
    default:
      return "type" + std::to_string(value.vt);
  }
}

void print_argument(ITypeInfo* info, const ELEMDESC& argument, const std::string& name) {
  const PARAMDESC& about = argument.paramdesc;
  std::printf("argument %s %s", name.c_str(), type_text(info, argument.tdesc).c_str());
  if ((about.wParamFlags & PARAMFLAG_FIN) != 0) std::printf(" in");
  if ((about.wParamFlags & PARAMFLAG_FOUT) != 0) std::printf(" out");
  if ((about.wParamFlags & PARAMFLAG_FOPT) != 0) std::printf(" optional");
  if ((about.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0) {
    std::printf(" default=%s", value_text(about.pparamdescex->varDefaultValue).c_str());
  }
  std::printf("\n");
}

const char* access_word(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return "get";
    case INVOKE_PROPERTYPUT:
      return "put";
    case INVOKE_PROPERTYPUTREF:
      return "putref";
    default:
      return "method";
  }
}

void print_member(ITypeInfo* info, const std::string& owner, UINT place) {
  FUNCDESC* about = nullptr;
  check(info->GetFuncDesc(place, &about), "a member");
  BSTR names[64] = {};
  UINT count = 0;
  check(info->GetNames(about->memid, names, 64, &count), "a member's names");
  std::printf("member %s %ld %s %s %s", owner.c_str(), static_cast<long>(about->memid),
              access_word(about->invkind), narrow(names[0]).c_str(),
              type_text(info, about->elemdescFunc.tdesc).c_str());
  if ((about->wFuncFlags & FUNCFLAG_FHIDDEN) != 0) std::printf(" hidden");
  if ((about->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0) std::printf(" restricted");
  std::printf("\n");
  // The value that a property is set to bears no name for the system.
  for (int i = 0; i < about->cParams; ++i) {
    const UINT name = static_cast<UINT>(i) + 1;
    print_argument(info, about->lprgelemdescParam[i], name < count ? narrow(names[name]) : "-");
  }
  for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
  info->ReleaseFuncDesc(about);
}

void print_class(ITypeInfo* info, const TYPEATTR& about) {
  std::printf("class %s %s", name_of(info).c_str(), guid_text(about.guid).c_str());
  for (UINT i = 0; i < about.cImplTypes; ++i) {
    HREFTYPE reference = 0;
    INT flags = 0;
    ITypeInfo* other = nullptr;
    check(info->GetRefTypeOfImplType(i, &reference), "an interface of a class");
    check(info->GetImplTypeFlags(i, &flags), "its flags");
    check(info->GetRefTypeInfo(reference, &other), "its type");
    std::printf(" %s%s=%s", (flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "default" : "further",
                (flags & IMPLTYPEFLAG_FSOURCE) != 0 ? "-events" : "", name_of(other).c_str());
    other->Release();
  }
  if ((about.wTypeFlags & TYPEFLAG_FAPPOBJECT) != 0) std::printf(" appobject");
  if ((about.wTypeFlags & TYPEFLAG_FCANCREATE) != 0) std::printf(" creatable");
  std::printf("\n");
}

void print_type(ITypeLib* library, UINT place) {
  ITypeInfo* info = nullptr;
  TYPEATTR* about = nullptr;
  check(library->GetTypeInfo(place, &info), "a type");
  check(info->GetTypeAttr(&about), "a type's attributes");
  if (about->typekind == TKIND_COCLASS) {
    print_class(info, *about);
  } else if (about->typekind == TKIND_DISPATCH) {
    const std::string name = name_of(info);
    std::printf("interface %s %s\n", name.c_str(), guid_text(about->guid).c_str());
    for (UINT i = 0; i < about->cFuncs; ++i) print_member(info, name, i);
  } else {
    std::printf("type %s of kind %d\n", name_of(info).c_str(), static_cast<int>(about->typekind));
  }
  info->ReleaseTypeAttr(about);
  info->Release();
}

void print_library(ITypeLib* library) {
  TLIBATTR* about = nullptr;
  BSTR name = nullptr;
  check(library->GetLibAttr(&about), "the library's attributes");
  check(library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), "the library's name");
  std::printf("library %s %s %u.%u\n", taken(name).c_str(), guid_text(about->guid).c_str(),
              about->wMajorVerNum, about->wMinorVerNum);
  library->ReleaseTLibAttr(about);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: list_type_library FILE\n");
    return 2;
  }
  std::wstring path;
  for (const char* c = arguments[1]; *c != 0; ++c) path += static_cast<unsigned char>(*c);
  check(CoInitialize(nullptr), "CoInitialize");
  ITypeLib* library = nullptr;
  check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library), "LoadTypeLibEx");
  print_library(library);
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) print_type(library, i);
  library->Release();
  std::fflush(stdout);
  CoUninitialize();
  return 0;
}
