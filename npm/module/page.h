// What the module asks of the page around it. The page implements these; texts are UTF-8 and the caller's.
#ifndef CORVIS_NPM_MODULE_PAGE_H_
#define CORVIS_NPM_MODULE_PAGE_H_

#define CORVIS_PAGE(name) __attribute__((import_module("page"), import_name(name)))

extern "C" {

// Hands a posted message to the script API's listeners. Returns after they ran, and never throws.
CORVIS_PAGE("deliver") void page_deliver(const char* message);

// Takes what happened, as the JSON text of an event.
CORVIS_PAGE("event") void page_event(const char* json);
}

#endif  // CORVIS_NPM_MODULE_PAGE_H_
