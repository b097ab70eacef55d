/* The library as a component, from plain C. It prints the number of an invoice:
 * component_host_in_c LIBRARY SERVER-URL SESSION INVOICE-UID */

#include <bvconn/component/bvconn_component.h>
#include <dlfcn.h>
#include <stdio.h>

/* What this host takes from the library. */
static BVConnFindClassFunction find_class;
static DllGetClassObjectFunction get_class;
static BVConnAllocStringFunction alloc_string;
static BVConnClearVariantFunction clear_variant;
static BVConnClearExceptionFunction clear_exception;

static int load(const char* file) {
  void* const library = dlopen(file, RTLD_NOW);
  if (library == NULL) return 0;
  *(void**)&find_class = dlsym(library, "BVConnFindClass");
  *(void**)&get_class = dlsym(library, "DllGetClassObject");
  *(void**)&alloc_string = dlsym(library, "BVConnAllocString");
  *(void**)&clear_variant = dlsym(library, "BVConnClearVariant");
  *(void**)&clear_exception = dlsym(library, "BVConnClearException");
  return 1;
}

/* Texts cross the boundary as UTF-16; those of this program are ASCII and short. */
static BVConnVariant text(const char* ascii) {
  BVConnVariant made = {BVCONN_TYPE_STRING, {0}, {{NULL, NULL}}};
  BVConnChar units[256];
  uint32_t length = 0;
  for (; length < 256 && ascii[length] != 0; ++length) units[length] = (unsigned char)ascii[length];
  made.value.string = alloc_string(units, length);
  return made;
}

static BVConnDispatch* make(const char* class_name) {
  const BVConnGuid factory_id = BVCONN_IID_CLASS_FACTORY, dispatch_id = BVCONN_IID_DISPATCH;
  BVConnVariant name = text(class_name);
  BVConnGuid id;
  void *factory = NULL, *object = NULL;
  if (find_class(name.value.string, &id) == BVCONN_OK) get_class(&id, &factory_id, &factory);
  clear_variant(&name);
  if (factory == NULL) return NULL;
  BVConnClassFactory* const maker = factory;
  maker->table->CreateInstance(maker, NULL, &dispatch_id, &object);
  maker->table->Release(maker);
  return object;
}

/* Calls a member or reads a property. Arguments stand last one first. */
static BVConnVariant call(BVConnDispatch* object, const char* member, BVConnVariant* arguments,
                          uint32_t count, BVConnException* exception) {
  const BVConnGuid none = BVCONN_NULL_GUID;
  const uint16_t flags = BVCONN_CALL_METHOD | BVCONN_CALL_PROPERTY_GET;
  BVConnArguments all = {arguments, NULL, count, 0};
  BVConnVariant result = {0}, name = text(member);
  BVConnDispatchId id = BVCONN_UNKNOWN_ID;
  /* After a call that failed there is no object for the next one. */
  if (object != NULL &&
      object->table->GetIDsOfNames(object, &none, &name.value.string, 1, 0, &id) == BVCONN_OK) {
    object->table->Invoke(object, id, &none, 0, flags, &all, &result, exception, NULL);
  }
  clear_variant(&name);
  return result;
}

int main(int argc, char** argv) {
  if (argc != 5 || !load(argv[1])) {
    const char* usage = "usage: component_host_in_c LIBRARY SERVER-URL SESSION INVOICE-UID";
    fprintf(stderr, "%s\n", argc == 5 ? dlerror() : usage);
    return 2;
  }
  BVConnDispatch* const connector = make("BVConn.BVInvoiceConnector");
  if (connector == NULL) return 1;

  /* GetInvoice(aServerURL, aSessionID, strInvoiceUID).Nodes.ItemByName("InvoiceNumber").Value */
  BVConnVariant arguments[] = {text(argv[4]), text(argv[3]), text(argv[2]), text("InvoiceNumber")};
  BVConnException exception = {0};
  BVConnVariant invoice = call(connector, "GetInvoice", arguments, 3, &exception);
  BVConnVariant nodes = call(invoice.value.dispatch, "Nodes", NULL, 0, &exception);
  BVConnVariant node = call(nodes.value.dispatch, "ItemByName", arguments + 3, 1, &exception);
  BVConnVariant number = call(node.value.dispatch, "Value", NULL, 0, &exception);
  const int failed = number.type != BVCONN_TYPE_STRING;
  const BVConnChar* unit = failed ? exception.source : number.value.string;
  if (failed) fprintf(stderr, "0x%08X from ", (unsigned)exception.result);
  for (; unit != NULL && *unit != 0; ++unit) fputc((char)*unit, failed ? stderr : stdout);
  fputc('\n', failed ? stderr : stdout);

  /* What the library made, the library frees. */
  BVConnVariant* const made[] = {arguments, arguments + 1, arguments + 2, arguments + 3,
                                 &invoice,  &nodes,        &node,         &number};
  for (int i = 0; i < 8; ++i) clear_variant(made[i]);
  clear_exception(&exception);
  connector->table->Release(connector);
  return failed;
}
