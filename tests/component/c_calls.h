#pragma once

#include "bvconn/component/bvconn_component.h"

/* Each calls all functions of an object's interface through its table, in the table's order. */
#ifdef __cplusplus
extern "C" {
#endif

void call_unknown(void* made);
void call_class_factory(void* made);
void call_dispatch(void* made);
void call_enum_variant(void* made);
void call_enum_connections(void* made);
void call_enum_connection_points(void* made);
void call_connection_point(void* made);
void call_connection_point_container(void* made);

/* The sizes of the records as C has them, in the order of component_records.h. */
unsigned long sizes_in_c(int which);

#ifdef __cplusplus
}
#endif
