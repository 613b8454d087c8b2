// A page that has registered every kind of action and listens, on the platform's stand-in without a bus.
#ifndef CORVIS_FUZZ_PAGE_H_
#define CORVIS_FUZZ_PAGE_H_

#include <string>

#include "require.h"
#include "testing/fake/fake_runtime.h"

struct FuzzPage {
  fake::Runtime& runtime;
  InstanceHandle page;
};

// The page of this process, made at the first call.
FuzzPage& TheFuzzPage();

// Requires of a reply that it is one of the three kinds that there are.
void RequireReply(const std::string& reply);

#endif  // CORVIS_FUZZ_PAGE_H_
