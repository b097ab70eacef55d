// The library as a component host meets it: loaded by its file, entry points looked up by name,
// everything else through the binary interface.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "component/host.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

// The whole library, loaded once: leak reports name its functions only while it is there.
void* library() {
  static void* const kLibrary = dlopen(BVCONN_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  return kLibrary;
}

template <typename Function>
Function entry_point(const char* name) {
  return reinterpret_cast<Function>(dlsym(library(), name));
}

Guid class_id(const std::u16string& prog_id) {
  Guid id{};
  entry_point<BVConnFindClassFunction>("BVConnFindClass")(prog_id.c_str(), &id);
  return id;
}

Held<IClassFactoryAbi> factory_of(const std::u16string& prog_id) {
  const Guid id = class_id(prog_id);
  void* factory = nullptr;
  entry_point<DllGetClassObjectFunction>("DllGetClassObject")(&id, &IClassFactoryAbi::kId,
                                                              &factory);
  return Held<IClassFactoryAbi>(static_cast<IClassFactoryAbi*>(factory));
}

Held<IDispatchAbi> make(const std::u16string& prog_id) {
  const auto factory = factory_of(prog_id);
  void* object = nullptr;
  if (factory) factory->CreateInstance(nullptr, &IDispatchAbi::kId, &object);
  return Held<IDispatchAbi>(static_cast<IDispatchAbi*>(object));
}

Hresult can_unload() {
  return entry_point<DllCanUnloadNowFunction>("DllCanUnloadNow")();
}

std::u16string widened(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::string soap_reply(const std::string& parameters) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
         "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
         " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
         " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><SOAP-ENV:Body>"
         "<ns1:answer xmlns:ns1=\"urn:any\">" +
         parameters + "</ns1:answer></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string soap_fault(const std::string& code, const std::string& text) {
  return "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
         "<SOAP-ENV:Body><SOAP-ENV:Fault><faultcode>" +
         code + "</faultcode><faultstring>" + text +
         "</faultstring></SOAP-ENV:Fault></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

// A world of its own for each test: settings and log lie in a folder that goes with it.
class Host : public testing::Test {
 protected:
  Host() {
    std::string name = (std::filesystem::temp_directory_path() / "bvconn_host_XXXXXX").string();
    folder = mkdtemp(name.data());
    setenv("BVCONN_USER_SETTINGS", (folder / "user.toml").c_str(), 1);
    setenv("BVCONN_MACHINE_SETTINGS", (folder / "machine.toml").c_str(), 1);
    setenv("BVCONN_LOG_FILE", (folder / "bvconn.log").c_str(), 1);
    setenv("BVCONN_TRACE_FILE", (folder / "traffic.log").c_str(), 1);
  }
  ~Host() override { std::filesystem::remove_all(folder); }

  void SetUp() override { ASSERT_NE(library(), nullptr) << dlerror(); }

  std::string user_settings() const {
    std::ifstream file(folder / "user.toml");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  std::filesystem::path folder;
};

TEST_F(Host, EveryPublicClassAndTheHelpersAreMadeByTheirProgramIdentifiers) {
  for (const std::string_view name : {"BVConnectorObject",
                                      "BVGenericConnector",
                                      "BVServices",
                                      "BVMethods",
                                      "BVProjectConnector",
                                      "BVQuoteConnector",
                                      "BVOrderConnector",
                                      "BVRequestForQuoteConnector",
                                      "BVSalesInstrumentConnector",
                                      "BVAcknowledgementConnector",
                                      "BVSubmittalConnector",
                                      "BVRMAConnector",
                                      "BVSearchConnector",
                                      "BVInvoiceConnector",
                                      "BVMaintenanceConnector",
                                      "BVPrintConnector",
                                      "BVHeartBeatConnector",
                                      "BVSummaryConnector",
                                      "BVPostalConnector",
                                      "BVExportConnector",
                                      "BVDocumentConnector",
                                      "BVConfigConnector",
                                      "SoapNode",
                                      "XMLDocument",
                                      "Support"}) {
    const auto object = make(u"BVConn." + widened(name));
    ASSERT_NE(object, nullptr) << name;
    EXPECT_EQ(object->AddRef(), 2u);
    EXPECT_EQ(object->Release(), 1u);
  }
}

TEST_F(Host, AClassThatIsNotThereIsNotAvailable) {
  const auto get_class = entry_point<DllGetClassObjectFunction>("DllGetClassObject");
  const auto find_class = entry_point<BVConnFindClassFunction>("BVConnFindClass");
  void* object = &object;
  EXPECT_EQ(get_class(&kNullGuid, &IClassFactoryAbi::kId, &object), kClassNotAvailable);
  EXPECT_EQ(object, nullptr);
  Guid id = kHeartBeatEvents;
  EXPECT_EQ(find_class(u"BVConn.BVNothing", &id), kClassNotAvailable);
  EXPECT_TRUE(id == kNullGuid);
}

TEST_F(Host, TheEntryPointsRefuseNullPointers) {
  const auto get_class = entry_point<DllGetClassObjectFunction>("DllGetClassObject");
  const auto find_class = entry_point<BVConnFindClassFunction>("BVConnFindClass");
  const Guid id = class_id(u"BVConn.BVMethods");
  void* object = nullptr;
  EXPECT_EQ(get_class(nullptr, &IClassFactoryAbi::kId, &object), kNullPointer);
  EXPECT_EQ(get_class(&id, nullptr, &object), kNullPointer);
  EXPECT_EQ(get_class(&id, &IClassFactoryAbi::kId, nullptr), kNullPointer);
  Guid found{};
  EXPECT_EQ(find_class(nullptr, &found), kNullPointer);
  EXPECT_EQ(find_class(u"BVConn.BVMethods", nullptr), kNullPointer);
  EXPECT_EQ(entry_point<BVConnDestroyArrayFunction>("BVConnDestroyArray")(nullptr), kNullPointer);
  EXPECT_EQ(entry_point<BVConnClearVariantFunction>("BVConnClearVariant")(nullptr), kNullPointer);
}

TEST_F(Host, AClassObjectHasNoInterfaceButAFactorys) {
  const Guid id = class_id(u"BVConn.BVMethods");
  void* object = &object;
  EXPECT_EQ(
      entry_point<DllGetClassObjectFunction>("DllGetClassObject")(&id, &IDispatchAbi::kId, &object),
      kNoInterface);
  EXPECT_EQ(object, nullptr);
}

TEST_F(Host, TheLibraryMayBeUnloadedOnceNothingIsInUse) {
  EXPECT_EQ(can_unload(), kOk);
  auto object = make(u"BVConn.BVInvoiceConnector");
  EXPECT_EQ(can_unload(), kFalse);
  object.reset();
  EXPECT_EQ(can_unload(), kOk);
  const auto factory = factory_of(u"BVConn.BVInvoiceConnector");
  factory->LockServer(1);
  EXPECT_EQ(can_unload(), kFalse);
  factory->LockServer(0);
}

// A host written in another language sees no classes: an object is a pointer to a pointer to a
// list of functions.
TEST_F(Host, AnObjectIsAPointerToAListOfFunctions) {
  using QueryInterface = Hresult (*)(void* self, const Guid* id, void** object);
  using Count = std::uint32_t (*)(void* self);
  using GetTypeInfoCount = Hresult (*)(void* self, std::uint32_t* count);
  const auto object = make(u"BVConn.SoapNode");
  void* self = object.get();
  void** const functions = *static_cast<void***>(self);
  EXPECT_EQ(reinterpret_cast<Count>(functions[1])(self), 2u);
  EXPECT_EQ(reinterpret_cast<Count>(functions[2])(self), 1u);
  std::uint32_t count = 99;
  EXPECT_EQ(reinterpret_cast<GetTypeInfoCount>(functions[3])(self, &count), kOk);
  EXPECT_EQ(count, 0u);
  void* same = nullptr;
  EXPECT_EQ(reinterpret_cast<QueryInterface>(functions[0])(self, &IUnknownAbi::kId, &same), kOk);
  EXPECT_EQ(same, self);
  reinterpret_cast<Count>(functions[2])(self);
}

TEST_F(Host, TextsAndArraysAreMadeAndFreedByTheLibrary) {
  StringPointer text = entry_point<BVConnAllocStringFunction>("BVConnAllocString")(u"Torvex", 6);
  EXPECT_EQ(text_behind(text), u"Torvex");
  EXPECT_EQ(entry_point<BVConnStringLengthFunction>("BVConnStringLength")(text), 6u);
  entry_point<BVConnFreeStringFunction>("BVConnFreeString")(text);

  const char16_t* const texts[] = {u"one", u"two"};
  ArrayRecord* array =
      entry_point<BVConnCreateStringArrayFunction>("BVConnCreateStringArray")(texts, 2);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(text_behind(static_cast<StringPointer*>(array->data)[1]), u"two");
  EXPECT_EQ(entry_point<BVConnDestroyArrayFunction>("BVConnDestroyArray")(array), kOk);

  VariantRecord bytes = variant(vt::kArray | vt::kUint8);
  bytes.value.array = entry_point<BVConnCreateArrayFunction>("BVConnCreateArray")(vt::kUint8, 4);
  VariantRecord copy{};
  EXPECT_EQ(entry_point<BVConnCopyVariantFunction>("BVConnCopyVariant")(&copy, &bytes), kOk);
  EXPECT_NE(copy.value.array, bytes.value.array);
  EXPECT_EQ(copy.value.array->bounds[0].count, 4u);
  clear_variant_of_library(&copy);
  clear_variant_of_library(&bytes);
}

TEST_F(Host, AnOperationIsCalledByNameAndItsNodeReadByName) {
  MisbehavingServer server;
  server.answer(answers::reply(
      soap_reply("<return><InvoiceNumber xsi:type=\"xsd:string\">4711</InvoiceNumber>"
                 "<Lines xsi:type=\"xsd:int\">3</Lines></return>")));
  const auto connector = make(u"BVConn.BVInvoiceConnector");
  HostString url(widened(server.url("/rpc")));
  HostString session(u"SESSION-\u00E9");
  HostString invoice(u"U1 & U2");
  const Outcome node =
      call(*connector, u"getINVOICE", {of_string(url), of_string(session), of_string(invoice)});
  ASSERT_EQ(node.result, kOk) << node.exception.result;
  ASSERT_EQ(node.value.type, vt::kDispatch);
  EXPECT_EQ(get(node.object(), u"Name").text(), u"return");
  const Outcome nodes = get(node.object(), u"Nodes");
  EXPECT_EQ(get(nodes.object(), u"Count").value.value.int32, 2);
  HostString name(u"InvoiceNumber");
  const Outcome number = call(nodes.object(), u"ItemByName", {of_string(name)});
  EXPECT_EQ(get(number.object(), u"Value").text(), u"4711");
  const Outcome lines =
      call_id(nodes.object(), kDefaultMember, call_flag::kPropertyGet, {of_int32(1)});
  const Outcome value = get(lines.object(), u"Value");
  EXPECT_EQ(value.value.type, vt::kInt32);
  EXPECT_EQ(value.value.value.int32, 3);

  const std::string sent = server.last_request().body;
  EXPECT_NE(sent.find("SESSION-\xC3\xA9"), std::string::npos) << sent;
  EXPECT_NE(sent.find("U1 &amp; U2"), std::string::npos) << sent;
}

TEST_F(Host, ArgumentsGoByTheirNamesToo) {
  MisbehavingServer server;
  server.answer(answers::reply(soap_reply("<return>ok</return>")));
  const auto connector = make(u"BVConn.BVInvoiceConnector");
  std::u16string names[] = {u"GetInvoice", u"strinvoiceuid", u"ASERVERURL", u"aSessionID"};
  char16_t* pointers[] = {names[0].data(), names[1].data(), names[2].data(), names[3].data()};
  DispatchId ids[4] = {};
  ASSERT_EQ(connector->GetIDsOfNames(&kNullGuid, pointers, 4, 0, ids), kOk);
  HostString url(widened(server.url()));
  HostString session(u"NAMED-SESSION");
  HostString invoice(u"NAMED-INVOICE");
  const Outcome node =
      call_id(*connector, ids[0], call_flag::kMethod, {},
              {{ids[1], ids[2], ids[3]}, {of_string(invoice), of_string(url), of_string(session)}});
  ASSERT_EQ(node.result, kOk);
  const std::string sent = server.last_request().body;
  EXPECT_LT(sent.find("NAMED-SESSION"), sent.find("NAMED-INVOICE"));
  EXPECT_NE(sent.find("NAMED-INVOICE"), std::string::npos);
}

TEST_F(Host, AServersFaultComesAsAnException) {
  MisbehavingServer server;
  server.answer(answers::reply(soap_fault("SOAP-ENV:Server",
                                          "Gr\xC3\xB6\xC3\x9F"
                                          "e"),
                               "500 Internal Server Error"));
  const auto connector = make(u"BVConn.BVInvoiceConnector");
  HostString url(widened(server.url()));
  HostString text(u"x");
  const Outcome outcome =
      call(*connector, u"GetInvoice", {of_string(url), of_string(text), of_string(text)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, result_from_bits(0x80044201));
  EXPECT_EQ(text_behind(outcome.exception.description), u"Gr\u00F6\u00DFe");
  EXPECT_EQ(text_behind(outcome.exception.source), u"SoapEnvelope");
  EXPECT_EQ(outcome.value.type, vt::kEmpty);
}

TEST_F(Host, ANodeMadeByTheApplicationIsPassedIn) {
  MisbehavingServer server;
  server.answer(answers::reply(soap_reply("<return>done</return>")));
  const auto connector = make(u"BVConn.BVGenericConnector");
  const auto node = make(u"BVConn.SoapNode");
  HostString name(u"Project");
  ASSERT_EQ(put(*node, u"Name", of_string(name)).result, kOk);
  const Outcome nodes = get(*node, u"Nodes");
  HostString child(u"City");
  HostString value(u"K\u00F6ln");
  ASSERT_EQ(call(nodes.object(), u"Create", {of_string(child), of_string(value)}).result, kOk);

  HostString service(u"urn:AnyService");
  HostString method(u"doIt");
  HostString root(u"document");
  HostString url(widened(server.url()));
  const Outcome answer = call(*connector, u"Send",
                              {of_string(service), of_string(method), of_string(root),
                               of_object(node.get()), of_string(url)});
  ASSERT_EQ(answer.result, kOk);
  EXPECT_EQ(get(answer.object(), u"Value").text(), u"done");
  const std::string sent = server.last_request().body;
  EXPECT_NE(sent.find("<document"), std::string::npos) << sent;
  EXPECT_NE(sent.find(">K\xC3\xB6ln</City>"), std::string::npos) << sent;
  // After a success the connector holds no envelope.
  const Outcome envelope = get(*connector, u"SoapEnvelope");
  EXPECT_EQ(envelope.value.type, vt::kDispatch);
  EXPECT_EQ(envelope.value.value.dispatch, nullptr);
}

TEST_F(Host, TheEnvelopeOfAFailedSendIsReadByName) {
  MisbehavingServer server;
  server.answer(answers::reply(soap_fault("SOAP-ENV:Client", "No such project")));
  const auto connector = make(u"BVConn.BVGenericConnector");
  HostString service(u"urn:AnyService");
  HostString method(u"doIt");
  HostString root(u"document");
  HostString url(widened(server.url()));
  const Outcome answer = call(
      *connector, u"Send",
      {of_string(service), of_string(method), of_string(root), of_object(nullptr), of_string(url)});
  EXPECT_EQ(answer.result, kException);
  const Outcome envelope = get(*connector, u"SoapEnvelope");
  ASSERT_NE(envelope.value.value.dispatch, nullptr);
  const Outcome parameters = get(envelope.object(), u"Parameters");
  HostString name(u"faultstring");
  const Outcome fault = call(parameters.object(), u"ItemByName", {of_string(name)});
  EXPECT_EQ(get(fault.object(), u"Value").text(), u"No such project");
}

TEST_F(Host, CataloguesAreReadByName) {
  const auto methods = make(u"BVConn.BVMethods");
  EXPECT_EQ(get(*methods, u"GetInvoice").text(), u"getInvoice");
  HostString other(u"other");
  EXPECT_EQ(put(*methods, u"GetInvoice", of_string(other)).result, kMemberNotFound);
}

TEST_F(Host, TwoObjectsOfTheSessionShowTheSameValues) {
  const auto one = make(u"BVConn.BVConnectorObject");
  const auto two = make(u"BVConn.BVConnectorObject");
  ASSERT_EQ(put(*one, u"UsingTorvexDAL", of_boolean(kVariantTrue)).result, kOk);
  EXPECT_EQ(get(*two, u"UsingTorvexDAL").value.value.boolean, kVariantTrue);
  ASSERT_EQ(put(*two, u"UsingTorvexDAL", of_boolean(kVariantFalse)).result, kOk);
  const Outcome transport = get(*one, u"HTTPTransportObject");
  ASSERT_EQ(transport.value.type, vt::kDispatch);
  EXPECT_EQ(put(transport.object(), u"Timeout", of_int32(5000)).result, kOk);
}

TEST_F(Host, ALongSilenceOfTheServerIsRaisedAsAnEvent) {
  const auto connector = make(u"BVConn.BVHeartBeatConnector");
  const auto container = ask<IConnectionPointContainerAbi>(*connector);
  ASSERT_NE(container, nullptr);
  IConnectionPointAbi* found = nullptr;
  ASSERT_EQ(container->FindConnectionPoint(&kHeartBeatEvents, &found), kOk);
  const Held<IConnectionPointAbi> point(found);
  CountingSink sink(kHeartBeatEvents);
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), kOk);
  // A thread that never had a reply has waited since the beginning of dates, and nothing answers
  // at a port of a server that has gone.
  std::thread([&] {
    HostString url(widened(MisbehavingServer().url()));
    HostString session(u"S");
    EXPECT_EQ(call(*connector, u"sendHeartBeat", {of_string(url), of_string(session)}).result, kOk);
  }).join();
  EXPECT_EQ(sink.raised, (std::vector<DispatchId>{kHeartBeatError}));
  EXPECT_EQ(point->Unadvise(cookie), kOk);
  EXPECT_EQ(sink.references, 1u);
}

TEST_F(Host, ASupportObjectShowsTheLastExchangeAndExplainsItsError) {
  const auto support = make(u"BVConn.Support");
  ASSERT_NE(support, nullptr);
  MisbehavingServer server;
  server.answer(answers::reply(soap_fault("10041", "Not for you"), "500 Internal Server Error"));
  std::u16string before;
  std::u16string after;
  std::u16string explained;
  std::thread([&] {
    before = get(*support, u"LastExchange").text();
    HostString url(widened(server.url()));
    HostString session(u"SESSION-1");
    HostString uid(u"U1");
    const auto invoices = make(u"BVConn.BVInvoiceConnector");
    const Outcome failed =
        call(*invoices, u"GetInvoice", {of_string(url), of_string(session), of_string(uid)});
    after = get(*support, u"LastExchange").text();
    explained = call(*support, u"Explain", {of_int32(failed.exception.result)}).text();
  }).join();
  EXPECT_EQ(before, u"null");
  EXPECT_NE(after.find(u"\"operation\":\"GetInvoice\""), std::u16string::npos);
  EXPECT_NE(after.find(u"\"description\":\"Not for you\""), std::u16string::npos);
  EXPECT_NE(after.find(u"\"raised\":{\"number\":-2147211463,"), std::u16string::npos);
  EXPECT_EQ(after.find(u"SESSION-1"), std::u16string::npos);
  EXPECT_NE(explained.find(u"the fault code 10041"), std::u16string::npos);
}

TEST_F(Host, ASupportObjectTakesANumberInEachFormThatHostsHaveItIn) {
  const auto support = make(u"BVConn.Support");
  const auto explained = [&](const VariantRecord& number) {
    return call(*support, u"Explain", {number}).text();
  };
  const std::u16string with_sign = explained(of_int32(static_cast<std::int32_t>(0x80044302)));
  EXPECT_EQ(with_sign.rfind(u"The server did not answer in time.", 0), 0U);
  EXPECT_EQ(explained(of_double(2147762946.0)), with_sign);
  const std::u16string small = explained(of_int32(91));
  EXPECT_EQ(small.rfind(u"Something is used that is not there", 0), 0U);
  EXPECT_EQ(explained(of_int32(static_cast<std::int32_t>(0x800A005B))), small);
  const Outcome too_large = call(*support, u"Explain", {of_double(1e10)});
  EXPECT_EQ(too_large.result, kException);
  EXPECT_EQ(too_large.exception.result, static_cast<Hresult>(0x800A0006));
}

TEST_F(Host, ASupportObjectSaysWhatItDoesNotKnowAndItsVersion) {
  const auto support = make(u"BVConn.Support");
  HostString words(u"No room left");
  EXPECT_EQ(call(*support, u"Explain", {of_int32(4711), of_string(words)}).text(),
            u"This number is none of the library's own. What it means is known there alone; the "
            u"description has its words.");
  EXPECT_EQ(get(*support, u"Version").text(), widened(BVCONN_LIBRARY_VERSION));
}

TEST_F(Host, RegistersInTheUsersSettingsAndTakesItBack) {
  ASSERT_EQ(entry_point<DllRegisterServerFunction>("DllRegisterServer")(), kOk);
  const std::string written = user_settings();
  EXPECT_NE(written.find("BVConn.BVInvoiceConnector"), std::string::npos);
  EXPECT_NE(written.find(std::filesystem::absolute(BVCONN_LIBRARY).string()), std::string::npos);
  ASSERT_EQ(entry_point<DllUnregisterServerFunction>("DllUnregisterServer")(), kOk);
  EXPECT_EQ(user_settings().find(std::filesystem::absolute(BVCONN_LIBRARY).string()),
            std::string::npos);
}

TEST_F(Host, SettingsThatAreNoTomlFailTheRegistration) {
  std::ofstream(folder / "user.toml") << "not [ toml";
  EXPECT_EQ(entry_point<DllRegisterServerFunction>("DllRegisterServer")(), kRegistrationFailed);
}

}  // namespace

void clear_variant_of_library(VariantRecord* variant) {
  entry_point<BVConnClearVariantFunction>("BVConnClearVariant")(variant);
}
void clear_exception_of_library(ExceptionRecord* exception) {
  entry_point<BVConnClearExceptionFunction>("BVConnClearException")(exception);
}

}  // namespace bvconn::test
