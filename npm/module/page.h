// Functions that the page around the module implements. Texts are UTF-8 and remain owned by the caller.
#ifndef CORVIS_NPM_MODULE_PAGE_H_
#define CORVIS_NPM_MODULE_PAGE_H_

// Declare imports and exports of the module. Native compilers, which only check the code, support neither.
#ifdef __wasm__
#define CORVIS_PAGE(name) __attribute__((import_module("page"), import_name(name)))
#define CORVIS_ENTRY(name) extern "C" __attribute__((export_name(name)))
#else
#define CORVIS_PAGE(name)
#define CORVIS_ENTRY(name) extern "C"
#endif

extern "C" {

// Delivers a posted message to the script API's listeners. Returns after they have run, and never throws.
CORVIS_PAGE("deliver") void page_deliver(const char* message);

// Receives an event as JSON.
CORVIS_PAGE("event") void page_event(const char* json);

// Converts a decimal number; NaN for any other text.
CORVIS_PAGE("number") double page_number(const char* text);
}

#endif  // CORVIS_NPM_MODULE_PAGE_H_
