/* Calls each function of each interface by its name in C, in the order of the tables. The objects
 * behind are classes of C++, which note what of theirs was called. */

#include "component/c_calls.h"

#define CALL_UNKNOWN(object)                         \
  (void)object->table->QueryInterface(object, 0, 0); \
  (void)object->table->AddRef(object);               \
  (void)object->table->Release(object)

#define CALL_ENUMERATOR(object)               \
  CALL_UNKNOWN(object);                       \
  (void)object->table->Next(object, 0, 0, 0); \
  (void)object->table->Skip(object, 0);       \
  (void)object->table->Reset(object);         \
  (void)object->table->Clone(object, 0)

void call_unknown(void* made) {
  BVConnUnknown* const object = made;
  CALL_UNKNOWN(object);
}

void call_class_factory(void* made) {
  BVConnClassFactory* const object = made;
  CALL_UNKNOWN(object);
  (void)object->table->CreateInstance(object, 0, 0, 0);
  (void)object->table->LockServer(object, 0);
}

void call_dispatch(void* made) {
  BVConnDispatch* const object = made;
  CALL_UNKNOWN(object);
  (void)object->table->GetTypeInfoCount(object, 0);
  (void)object->table->GetTypeInfo(object, 0, 0, 0);
  (void)object->table->GetIDsOfNames(object, 0, 0, 0, 0, 0);
  (void)object->table->Invoke(object, 0, 0, 0, 0, 0, 0, 0, 0);
}

void call_enum_variant(void* made) {
  BVConnEnumVariant* const object = made;
  CALL_ENUMERATOR(object);
}

void call_enum_connections(void* made) {
  BVConnEnumConnections* const object = made;
  CALL_ENUMERATOR(object);
}

void call_enum_connection_points(void* made) {
  BVConnEnumConnectionPoints* const object = made;
  CALL_ENUMERATOR(object);
}

void call_connection_point(void* made) {
  BVConnConnectionPoint* const object = made;
  CALL_UNKNOWN(object);
  (void)object->table->GetConnectionInterface(object, 0);
  (void)object->table->GetConnectionPointContainer(object, 0);
  (void)object->table->Advise(object, 0, 0);
  (void)object->table->Unadvise(object, 0);
  (void)object->table->EnumConnections(object, 0);
}

void call_connection_point_container(void* made) {
  BVConnConnectionPointContainer* const object = made;
  CALL_UNKNOWN(object);
  (void)object->table->EnumConnectionPoints(object, 0);
  (void)object->table->FindConnectionPoint(object, 0, 0);
}

unsigned long sizes_in_c(int which) {
  static const unsigned long sizes[] = {sizeof(BVConnGuid),      sizeof(BVConnArrayBound),
                                        sizeof(BVConnArray),     sizeof(BVConnVariant),
                                        sizeof(BVConnArguments), sizeof(BVConnException),
                                        sizeof(BVConnConnection)};
  return sizes[which];
}
