// What the module asks of the page around it. The page implements these; texts are UTF-8 and the caller's.
#ifndef CORVIS_NPM_MODULE_PAGE_H_
#define CORVIS_NPM_MODULE_PAGE_H_

// Imports and exports of the module. Another machine's compiler, which checks the code, has neither.
#ifdef __wasm__
#define CORVIS_PAGE(name) __attribute__((import_module("page"), import_name(name)))
#define CORVIS_ENTRY(name) extern "C" __attribute__((export_name(name)))
#else
#define CORVIS_PAGE(name)
#define CORVIS_ENTRY(name) extern "C"
#endif

extern "C" {

// Hands a posted message to the script API's listeners. Returns after they ran, and never throws.
CORVIS_PAGE("deliver") void page_deliver(const char* message);

// Takes what happened, as the JSON text of an event.
CORVIS_PAGE("event") void page_event(const char* json);
}

#endif  // CORVIS_NPM_MODULE_PAGE_H_
