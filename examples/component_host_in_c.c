/* The library as a component, from plain C. It prints the number of an invoice:
 * component_host_in_c LIBRARY SERVER-URL SESSION INVOICE-UID */

#include <bvconn/component/bvconn_component.h>
#include <dlfcn.h>
#include <stdio.h>

/* Texts cross the boundary as UTF-16; those of this program are ASCII and short. */
typedef struct {
  BVConnChar units[256];
} Wide;

static Wide widened(const char* ascii) {
  Wide wide = {{0}};
  for (size_t i = 0; i < 255 && ascii[i] != 0; ++i) wide.units[i] = (unsigned char)ascii[i];
  return wide;
}

static void print(const BVConnChar* text, FILE* out) {
  for (; text != NULL && *text != 0; ++text) fputc(*text < 128 ? (char)*text : '?', out);
  fputc('\n', out);
}

/* Calls a member or reads a property. Arguments stand last one first. */
static BVConnVariant call(BVConnDispatch* object, const char* member, BVConnVariant* arguments,
                          uint32_t count, BVConnException* exception) {
  const BVConnGuid none = BVCONN_NULL_GUID;
  const uint16_t flags = BVCONN_CALL_METHOD | BVCONN_CALL_PROPERTY_GET;
  BVConnArguments all = {arguments, NULL, count, 0};
  BVConnVariant result = {0};
  Wide name = widened(member);
  BVConnChar* names[] = {name.units};
  BVConnDispatchId id = BVCONN_UNKNOWN_ID;
  BVConnResult done = BVCONN_MEMBER_NOT_FOUND;
  if (object == NULL) return result;
  if (object->table->GetIDsOfNames(object, &none, names, 1, 0, &id) == BVCONN_OK) {
    done = object->table->Invoke(object, id, &none, 0, flags, &all, &result, exception, NULL);
  }
  if (done != BVCONN_OK) fprintf(stderr, "%s gave 0x%08X\n", member, (unsigned)done);
  return result;
}

/* What a host takes from the library. */
static BVConnFindClassFunction find_class;
static DllGetClassObjectFunction get_class;
static BVConnAllocStringFunction alloc_string;
static BVConnClearVariantFunction clear_variant;
static BVConnClearExceptionFunction clear_exception;

static int load(const char* file) {
  void* const library = dlopen(file, RTLD_NOW);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 0;
  }
  *(void**)&find_class = dlsym(library, "BVConnFindClass");
  *(void**)&get_class = dlsym(library, "DllGetClassObject");
  *(void**)&alloc_string = dlsym(library, "BVConnAllocString");
  *(void**)&clear_variant = dlsym(library, "BVConnClearVariant");
  *(void**)&clear_exception = dlsym(library, "BVConnClearException");
  return 1;
}

static BVConnDispatch* make(const char* name) {
  const BVConnGuid factory_id = BVCONN_IID_CLASS_FACTORY, dispatch_id = BVCONN_IID_DISPATCH;
  const Wide wide = widened(name);
  BVConnGuid class_id;
  void *factory = NULL, *object = NULL;
  if (find_class(wide.units, &class_id) != BVCONN_OK) return NULL;
  if (get_class(&class_id, &factory_id, &factory) != BVCONN_OK) return NULL;
  BVConnClassFactory* const maker = factory;
  maker->table->CreateInstance(maker, NULL, &dispatch_id, &object);
  maker->table->Release(maker);
  return object;
}

static BVConnVariant text(const char* ascii) {
  const Wide wide = widened(ascii);
  BVConnVariant made = {BVCONN_TYPE_STRING, {0}, {{NULL, NULL}}};
  uint32_t length = 0;
  while (wide.units[length] != 0) ++length;
  made.value.string = alloc_string(wide.units, length);
  return made;
}

int main(int argc, char** argv) {
  if (argc != 5) {
    fprintf(stderr, "usage: component_host_in_c LIBRARY SERVER-URL SESSION INVOICE-UID\n");
    return 2;
  }
  if (!load(argv[1])) return 1;
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
  if (failed) {
    fprintf(stderr, "0x%08X from ", (unsigned)exception.result);
    print(exception.source, stderr);
  } else {
    print(number.value.string, stdout);
  }

  /* What the library made, the library frees. */
  BVConnVariant* const made[] = {arguments, arguments + 1, arguments + 2, arguments + 3,
                                 &invoice,  &nodes,        &node,         &number};
  for (int i = 0; i < 8; ++i) clear_variant(made[i]);
  clear_exception(&exception);
  connector->table->Release(connector);
  return failed;
}
