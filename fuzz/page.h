// A page that has registered every kind of action and listens, on the platform stand-in without a bus.
#ifndef CORVIS_FUZZ_PAGE_H_
#define CORVIS_FUZZ_PAGE_H_

#include <string>

#include "require.h"
#include "testing/fake/fake_runtime.h"

struct FuzzPage {
  fake::Runtime& runtime;
  InstanceHandle page;
};

// The page of this process, created on the first call.
FuzzPage& TheFuzzPage();

// Requires that a reply is one of the three possible kinds.
void RequireReply(const std::string& reply);

#endif  // CORVIS_FUZZ_PAGE_H_
