#include "windows/torvexlib/forwarder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/component/service_operations.h"
#include "bvconn/component/text.h"
#include "bvconn/component/values.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/windows/service_component.h"
#include "bvconn/platform/windows/wide_text.h"
#include "windows/com_object.h"
#include "windows/torvexlib/component_library.h"

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ValueType;
using component::ServiceOperation;

// In the order in which they are made.
constexpr std::array<std::string_view, 15> kObjects{"AuthenticationService",
                                                    "SummaryService",
                                                    "HeartBeatService",
                                                    "SearchService",
                                                    "ProjectService",
                                                    "QuoteService",
                                                    "OrderService",
                                                    "MaintenanceService",
                                                    "InventoryInquiryService",
                                                    "RMAService",
                                                    "InvoiceService",
                                                    "PriceAndAvailabilityService",
                                                    "PrintingService",
                                                    "SubmittalService",
                                                    "SalesInstrumentService"};

struct PassedByReference {
  std::string_view operation;
  std::vector<std::string_view> arguments;
};

// Of the operations that are not looked up by name.
const std::vector<PassedByReference>& passed_by_reference() {
  static const std::vector<PassedByReference> all{
      {"SearchForQuotes", {"GetAllRevisions"}},
      {"SearchForOrders", {"GetAllRevisions", "OnlyHFR", "ContractorFirstPO"}},
      {"SearchForNatlAccts", {"aShowNA", "aShowNS", "aShowCF"}},
      {"SearchForSAPOrderView", {"aIncludePrices"}},
      {"getSAPOrderView", {"aIncludePrice"}},
      {"GetProjectPrintoutDefaults", {"getUserDefaults"}},
      {"GetOrderPrintoutDefaults", {"getUserDefaults"}},
      {"GetQuotePrintoutDefaults", {"getUserDefaults"}},
      {"GetRFQPrintoutDefaults", {"getUserDefaults"}},
      {"GetSAPPrintoutDefaults", {"getUserDefaults"}},
  };
  return all;
}

constexpr std::string_view kByName[] = {"OrdersSearchEmailExport", "ProjectsSearchEmailExport",
                                        "QuotesSearchEmailExport", "SearchForProjects"};

bool is_by_name(std::string_view operation) {
  return std::ranges::find(kByName, operation) != std::end(kByName);
}

bool is_by_reference(std::string_view operation, std::string_view argument) {
  for (const PassedByReference& row : passed_by_reference()) {
    if (row.operation == operation) return std::ranges::count(row.arguments, argument) != 0;
  }
  return false;
}

VARTYPE type_of(ValueType type) {
  switch (type) {
    case ValueType::kBoolean:
      return VT_BOOL;
    case ValueType::kInt32:
      return VT_I4;
    default:
      return VT_BSTR;
  }
}

// The form in which the operation has its argument.
void expect_form(const ServiceOperation& operation, const Argument& argument,
                 const VARIANT& given) {
  VARTYPE form = type_of(argument.type);
  if (is_by_reference(operation.name, argument.name)) form |= VT_BYREF;
  if (is_by_name(operation.name)) form = VT_BYREF | VT_VARIANT;
  EXPECT_EQ(given.vt, form) << operation.name << ", argument " << argument.name;
}

Variant value_of(const VARIANT& given) {
  automation::Value value;
  component::CallDocuments documents;
  const component::Hresult result =
      component::value_from_record(reinterpret_cast<const component::VariantRecord&>(given),
                                   ValueType::kVariant, value, documents);
  EXPECT_TRUE(component::succeeded(result)) << "a value of the type " << given.vt;
  return std::get<Variant>(value);
}

BSTR text_for(std::string_view text) {
  return reinterpret_cast<BSTR>(component::string_from_utf8(text));
}

class Forwarder final : public ComObject<IDispatch> {
 public:
  Forwarder(std::shared_ptr<ServiceObject> object, TextForm form)
      : object_(std::move(object)), form_(form) {
    for (const ServiceOperation& operation : component::service_operations()) {
      if (operation.object == object_->name()) operations_.push_back(&operation);
    }
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*locale*/,
                                        ITypeInfo** info) override {
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT /*count*/,
                                          LCID /*locale*/, DISPID* ids) override {
    ids[0] = DISPID_UNKNOWN;
    for (std::size_t place = 0; place < operations_.size(); ++place) {
      if (detail::narrow(names[0]) == operations_[place]->name) {
        ids[0] = static_cast<DISPID>(place + 1);
        return S_OK;
      }
    }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* /*refused*/) override {
    if (id < 1 || static_cast<std::size_t>(id) > operations_.size()) return DISP_E_MEMBERNOTFOUND;
    const ServiceOperation& operation = *operations_[static_cast<std::size_t>(id) - 1];
    const std::size_t receivers = form_ == TextForm::kReference ? 1 : 0;
    const std::size_t count = operation.arguments.size();
    if (parameters->cArgs != count + receivers) return DISP_E_BADPARAMCOUNT;
    EXPECT_EQ(flags, DISPATCH_METHOD);
    EXPECT_EQ(parameters->cNamedArgs, 0U);
    const std::span<VARIANTARG> given(parameters->rgvarg, parameters->cArgs);
    try {
      const BSTR text = text_for(run(operation, given.subspan(receivers)));
      give(operation, text, given, result);
      return S_OK;
    } catch (const Error& error) {
      return raise(error, *exception);
    }
  }

 private:
  std::string run(const ServiceOperation& operation, std::span<const VARIANTARG> reversed) const {
    std::vector<Variant> values;
    for (std::size_t place = 0; place < reversed.size(); ++place) {
      const VARIANTARG& given = reversed[reversed.size() - 1 - place];
      expect_form(operation, operation.arguments[place], given);
      values.push_back(value_of(given));
    }
    return object_->invoke(operation.name, values, is_by_name(operation.name));
  }

  void give(const ServiceOperation& operation, BSTR text, std::span<VARIANTARG> given,
            VARIANT* result) const {
    if (form_ == TextForm::kResult) {
      result->vt = VT_BSTR;
      result->bstrVal = text;
      return;
    }
    VARIANTARG& receiver = given[0];
    if (is_by_name(operation.name)) {
      EXPECT_EQ(receiver.vt, VT_BYREF | VT_VARIANT) << operation.name;
      ::VariantClear(receiver.pvarVal);
      receiver.pvarVal->vt = VT_BSTR;
      receiver.pvarVal->bstrVal = text;
    } else {
      EXPECT_EQ(receiver.vt, VT_BYREF | VT_BSTR) << operation.name;
      ::SysFreeString(std::exchange(*receiver.pbstrVal, text));
    }
  }

  static HRESULT raise(const Error& error, EXCEPINFO& exception) {
    const bool is_small = error.number > 0 && error.number <= 0xFFFF;
    exception = {};
    exception.scode =
        is_small ? static_cast<SCODE>(0x800A0000U | static_cast<UINT>(error.number)) : error.number;
    exception.bstrSource = text_for(error.source);
    exception.bstrDescription = text_for(error.description);
    exception.bstrHelpFile = text_for(error.helpFile);
    exception.dwHelpContext = static_cast<DWORD>(error.helpContext);
    return DISP_E_EXCEPTION;
  }

  std::shared_ptr<ServiceObject> object_;
  TextForm form_;
  std::vector<const ServiceOperation*> operations_;
};

// What the next component is put in front of.
std::shared_ptr<ServiceObject> next_object;
TextForm next_form = TextForm::kResult;

HRESULT make_next(std::size_t place, IDispatch** made) {
  const std::shared_ptr<ServiceObject> object = std::exchange(next_object, nullptr);
  if (!object) return E_UNEXPECTED;
  EXPECT_EQ(object->name(), kObjects[place]);
  *made = new Forwarder(object, next_form);
  return S_OK;
}

}  // namespace

std::shared_ptr<ServiceObject> by_component(std::shared_ptr<ServiceObject> object, TextForm form) {
  // To the end of the process, since a session may keep one as long.
  static const auto& registered = *new RegisteredComponents(&make_next);
  static_cast<void>(registered);
  const std::string name(object->name());
  next_object = std::move(object);
  next_form = form;
  auto component = detail::make_service_component(name);
  EXPECT_NE(component, nullptr) << "no component TorvexLib." << name << " is registered";
  EXPECT_EQ(next_object, nullptr) << "the component is another's";
  return component;
}

}  // namespace bvconn::test
