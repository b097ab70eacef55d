#include <cstddef>
#include <type_traits>

#include "bvconn/component/abi.h"
#include "bvconn/component/type_info.h"
#include "bvconn/platform/windows/components.h"

// Proof that the interface is the system's own, in both sizes of a pointer: what compiles here is
// laid out, numbered and called as the system's headers say. Nothing of it runs.
namespace bvconn::component {
namespace {

template <class Ours, class Systems>
constexpr bool kAlike = sizeof(Ours) == sizeof(Systems) && alignof(Ours) == alignof(Systems);

#define BVCONN_SAME_PLACE(ours, our_field, systems, systems_field)               \
  static_assert(offsetof(ours, our_field) == offsetof(systems, systems_field) && \
                sizeof(ours::our_field) == sizeof(systems::systems_field))

// Records.

static_assert(kAlike<Guid, GUID>);
BVCONN_SAME_PLACE(Guid, data1, GUID, Data1);
BVCONN_SAME_PLACE(Guid, data2, GUID, Data2);
BVCONN_SAME_PLACE(Guid, data3, GUID, Data3);
BVCONN_SAME_PLACE(Guid, data4, GUID, Data4);

static_assert(kAlike<VariantRecord, VARIANT>);
BVCONN_SAME_PLACE(VariantRecord, type, VARIANT, vt);
#define BVCONN_SAME_VALUE(our_field, systems_field)                                \
  static_assert(sizeof(VariantData::our_field) == sizeof(VARIANT::systems_field)); \
  static_assert(offsetof(VariantRecord, value) == offsetof(VARIANT, systems_field))
BVCONN_SAME_VALUE(int8, cVal);
BVCONN_SAME_VALUE(uint8, bVal);
BVCONN_SAME_VALUE(int16, iVal);
BVCONN_SAME_VALUE(uint16, uiVal);
BVCONN_SAME_VALUE(int32, lVal);
BVCONN_SAME_VALUE(uint32, ulVal);
BVCONN_SAME_VALUE(int64, llVal);
BVCONN_SAME_VALUE(uint64, ullVal);
BVCONN_SAME_VALUE(single, fltVal);
BVCONN_SAME_VALUE(number, dblVal);
BVCONN_SAME_VALUE(date, date);
BVCONN_SAME_VALUE(currency, cyVal);
BVCONN_SAME_VALUE(boolean, boolVal);
BVCONN_SAME_VALUE(error, scode);
BVCONN_SAME_VALUE(string, bstrVal);
BVCONN_SAME_VALUE(unknown, punkVal);
BVCONN_SAME_VALUE(dispatch, pdispVal);
BVCONN_SAME_VALUE(array, parray);
BVCONN_SAME_VALUE(reference, byref);
BVCONN_SAME_VALUE(variant_reference, pvarVal);

static_assert(kAlike<DecimalRecord, DECIMAL>);
BVCONN_SAME_PLACE(DecimalRecord, type, DECIMAL, wReserved);
BVCONN_SAME_PLACE(DecimalRecord, scale, DECIMAL, scale);
BVCONN_SAME_PLACE(DecimalRecord, sign, DECIMAL, sign);
BVCONN_SAME_PLACE(DecimalRecord, high, DECIMAL, Hi32);
BVCONN_SAME_PLACE(DecimalRecord, low, DECIMAL, Lo64);
static_assert(offsetof(VARIANT, decVal) == 0 && DECIMAL_NEG == 0x80);

static_assert(kAlike<ArrayBound, SAFEARRAYBOUND>);
BVCONN_SAME_PLACE(ArrayBound, count, SAFEARRAYBOUND, cElements);
BVCONN_SAME_PLACE(ArrayBound, lower, SAFEARRAYBOUND, lLbound);
static_assert(kAlike<ArrayRecord, SAFEARRAY>);
BVCONN_SAME_PLACE(ArrayRecord, dimensions, SAFEARRAY, cDims);
BVCONN_SAME_PLACE(ArrayRecord, features, SAFEARRAY, fFeatures);
BVCONN_SAME_PLACE(ArrayRecord, element_size, SAFEARRAY, cbElements);
BVCONN_SAME_PLACE(ArrayRecord, locks, SAFEARRAY, cLocks);
BVCONN_SAME_PLACE(ArrayRecord, data, SAFEARRAY, pvData);
BVCONN_SAME_PLACE(ArrayRecord, bounds, SAFEARRAY, rgsabound);

static_assert(kAlike<DispatchParams, DISPPARAMS>);
BVCONN_SAME_PLACE(DispatchParams, arguments, DISPPARAMS, rgvarg);
BVCONN_SAME_PLACE(DispatchParams, named_ids, DISPPARAMS, rgdispidNamedArgs);
BVCONN_SAME_PLACE(DispatchParams, count, DISPPARAMS, cArgs);
BVCONN_SAME_PLACE(DispatchParams, named_count, DISPPARAMS, cNamedArgs);

static_assert(kAlike<ExceptionRecord, EXCEPINFO>);
BVCONN_SAME_PLACE(ExceptionRecord, code, EXCEPINFO, wCode);
BVCONN_SAME_PLACE(ExceptionRecord, reserved, EXCEPINFO, wReserved);
BVCONN_SAME_PLACE(ExceptionRecord, source, EXCEPINFO, bstrSource);
BVCONN_SAME_PLACE(ExceptionRecord, description, EXCEPINFO, bstrDescription);
BVCONN_SAME_PLACE(ExceptionRecord, help_file, EXCEPINFO, bstrHelpFile);
BVCONN_SAME_PLACE(ExceptionRecord, help_context, EXCEPINFO, dwHelpContext);
BVCONN_SAME_PLACE(ExceptionRecord, reserved_pointer, EXCEPINFO, pvReserved);
BVCONN_SAME_PLACE(ExceptionRecord, deferred_fill_in, EXCEPINFO, pfnDeferredFillIn);
BVCONN_SAME_PLACE(ExceptionRecord, result, EXCEPINFO, scode);

static_assert(kAlike<ConnectionRecord, CONNECTDATA>);
BVCONN_SAME_PLACE(ConnectionRecord, sink, CONNECTDATA, pUnk);
BVCONN_SAME_PLACE(ConnectionRecord, cookie, CONNECTDATA, dwCookie);

static_assert(sizeof(char16_t) == sizeof(OLECHAR) && sizeof(StringPointer) == sizeof(BSTR));
static_assert(sizeof(DispatchId) == sizeof(DISPID) && sizeof(Hresult) == sizeof(HRESULT));

// Identifiers of interfaces.

constexpr bool same(const Guid& ours, const GUID& systems) {
  bool alike =
      ours.data1 == systems.Data1 && ours.data2 == systems.Data2 && ours.data3 == systems.Data3;
  for (int i = 0; i < 8; ++i) alike = alike && ours.data4[i] == systems.Data4[i];
  return alike;
}
static_assert(same(IUnknownAbi::kId, __uuidof(IUnknown)));
static_assert(same(IClassFactoryAbi::kId, __uuidof(IClassFactory)));
static_assert(same(IDispatchAbi::kId, __uuidof(IDispatch)));
static_assert(same(IEnumVariantAbi::kId, __uuidof(IEnumVARIANT)));
static_assert(same(IEnumConnectionsAbi::kId, __uuidof(IEnumConnections)));
static_assert(same(IConnectionPointAbi::kId, __uuidof(IConnectionPoint)));
static_assert(same(IEnumConnectionPointsAbi::kId, __uuidof(IEnumConnectionPoints)));
static_assert(same(IConnectionPointContainerAbi::kId, __uuidof(IConnectionPointContainer)));
static_assert(same(IProvideClassInfo2Abi::kId, __uuidof(IProvideClassInfo2)));
static_assert(same(IProvideClassInfo2Abi::kShorterId, __uuidof(IProvideClassInfo)));
static_assert(IProvideClassInfo2Abi::kEvents == GUIDKIND_DEFAULT_SOURCE_DISP_IID);

// Numbers.

static_assert(kOk == S_OK && kFalse == S_FALSE);
static_assert(kNotImplemented == E_NOTIMPL && kNoInterface == E_NOINTERFACE);
static_assert(kNullPointer == E_POINTER && kFailed == E_FAIL && kUnexpected == E_UNEXPECTED);
static_assert(kOutOfMemory == E_OUTOFMEMORY && kInvalidArgument == E_INVALIDARG);
static_assert(kNoAggregation == CLASS_E_NOAGGREGATION);
static_assert(kClassNotAvailable == CLASS_E_CLASSNOTAVAILABLE);
static_assert(kNoConnection == CONNECT_E_NOCONNECTION);
static_assert(kCannotConnect == CONNECT_E_CANNOTCONNECT);
static_assert(kRegistrationFailed == SELFREG_E_CLASS);
static_assert(kUnknownInterface == DISP_E_UNKNOWNINTERFACE);
static_assert(kMemberNotFound == DISP_E_MEMBERNOTFOUND);
static_assert(kParameterNotFound == DISP_E_PARAMNOTFOUND);
static_assert(kTypeMismatch == DISP_E_TYPEMISMATCH && kUnknownName == DISP_E_UNKNOWNNAME);
static_assert(kBadVariantType == DISP_E_BADVARTYPE && kException == DISP_E_EXCEPTION);
static_assert(kOverflow == DISP_E_OVERFLOW && kBadIndex == DISP_E_BADINDEX);
static_assert(kArrayIsLocked == DISP_E_ARRAYISLOCKED);
static_assert(kBadParameterCount == DISP_E_BADPARAMCOUNT);
static_assert(kParameterNotOptional == DISP_E_PARAMNOTOPTIONAL);

namespace vt = variant_type;
static_assert(vt::kEmpty == VT_EMPTY && vt::kNull == VT_NULL && vt::kInt16 == VT_I2);
static_assert(vt::kInt32 == VT_I4 && vt::kFloat == VT_R4 && vt::kDouble == VT_R8);
static_assert(vt::kCurrency == VT_CY && vt::kDate == VT_DATE && vt::kString == VT_BSTR);
static_assert(vt::kDispatch == VT_DISPATCH && vt::kError == VT_ERROR);
static_assert(vt::kBoolean == VT_BOOL && vt::kVariant == VT_VARIANT);
static_assert(vt::kUnknown == VT_UNKNOWN && vt::kInt8 == VT_I1 && vt::kUint8 == VT_UI1);
static_assert(vt::kDecimal == VT_DECIMAL);
static_assert(vt::kUint16 == VT_UI2 && vt::kUint32 == VT_UI4 && vt::kInt64 == VT_I8);
static_assert(vt::kUint64 == VT_UI8 && vt::kInt == VT_INT && vt::kUint == VT_UINT);
static_assert(vt::kArray == VT_ARRAY && vt::kByReference == VT_BYREF);
static_assert(kVariantTrue == VARIANT_TRUE && kVariantFalse == VARIANT_FALSE);

static_assert(array_feature::kAutomatic == FADF_AUTO && array_feature::kStatic == FADF_STATIC);
static_assert(array_feature::kEmbedded == FADF_EMBEDDED);
static_assert(array_feature::kFixedSize == FADF_FIXEDSIZE);
static_assert(array_feature::kHasType == FADF_HAVEVARTYPE);
static_assert(array_feature::kUnknowns == FADF_UNKNOWN);
static_assert(array_feature::kDispatches == FADF_DISPATCH);
static_assert(array_feature::kStrings == FADF_BSTR && array_feature::kVariants == FADF_VARIANT);

static_assert(kDefaultMember == DISPID_VALUE && kUnknownId == DISPID_UNKNOWN);
static_assert(kPropertyPutValue == DISPID_PROPERTYPUT && kNewEnumerator == DISPID_NEWENUM);
static_assert(call_flag::kMethod == DISPATCH_METHOD);
static_assert(call_flag::kPropertyGet == DISPATCH_PROPERTYGET);
static_assert(call_flag::kPropertyPut == DISPATCH_PROPERTYPUT);
static_assert(call_flag::kPropertyPutReference == DISPATCH_PROPERTYPUTREF);

// How functions are called. The compiler sees to it in the functions of interfaces, which override
// one another; nothing but this does in those that are exported. In a function's type, the system's
// stand for ours of the same size.

template <class T>
struct OursOf {
  using Type = T;
};
template <>
struct OursOf<HRESULT> {
  using Type = Hresult;
};
template <>
struct OursOf<const GUID&> {
  using Type = const Guid*;
};

template <class Function>
struct InOurTypes;
template <class Result, class... Arguments>
struct InOurTypes<Result(STDMETHODCALLTYPE*)(Arguments...)> {
  using Type =
      typename OursOf<Result>::Type(STDMETHODCALLTYPE*)(typename OursOf<Arguments>::Type...);
};

template <class Ours, class Systems>
constexpr bool kCalledAlike = std::is_same_v<Ours, typename InOurTypes<Systems>::Type>;

static_assert(kCalledAlike<DllCanUnloadNowFunction, decltype(&SystemDllCanUnloadNow)>);
static_assert(kCalledAlike<DllGetClassObjectFunction, decltype(&SystemDllGetClassObject)>);
static_assert(kCalledAlike<DllRegisterServerFunction, decltype(&SystemDllRegisterServer)>);
static_assert(kCalledAlike<DllUnregisterServerFunction, decltype(&SystemDllUnregisterServer)>);
static_assert(
    std::is_same_v<DllInstallFunction, Hresult(STDMETHODCALLTYPE*)(std::int32_t, const char16_t*)>);

using FillIn = decltype(ExceptionRecord::deferred_fill_in);
static_assert(std::is_same_v<FillIn, Hresult(STDMETHODCALLTYPE*)(ExceptionRecord*)>);

}  // namespace
}  // namespace bvconn::component
