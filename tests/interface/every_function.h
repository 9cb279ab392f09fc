/* A client of the library in C, as applications are. */
#ifndef KELVO_TESTS_INTERFACE_EVERY_FUNCTION_H
#define KELVO_TESTS_INTERFACE_EVERY_FUNCTION_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Calls every exported function, and says each call first: "SetLensType(7)". */
void call_every_function(void (*say)(const char* call));

/** Shows every exported object. */
void show_every_object(void (*show)(const char* object, const void* address, size_t size));

#ifdef __cplusplus
}
#endif

#endif
