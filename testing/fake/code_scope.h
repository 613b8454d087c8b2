// Whose code runs: the library's, or that of the fakes and tests. Allocations of the library alone are made
// to fail.
#ifndef CORVIS_TESTING_FAKE_CODE_SCOPE_H_
#define CORVIS_TESTING_FAKE_CODE_SCOPE_H_

#include <utility>

namespace fake {

inline bool& RunsLibraryCode() {
  static bool runs = false;
  return runs;
}

// Sets it for the duration of a scope.
class CodeScope {
 public:
  explicit CodeScope(bool is_library) : before_(std::exchange(RunsLibraryCode(), is_library)) {}
  ~CodeScope() { RunsLibraryCode() = before_; }
  CodeScope(const CodeScope&) = delete;
  CodeScope& operator=(const CodeScope&) = delete;

 private:
  const bool before_;
};

class LibraryCode : public CodeScope {
 public:
  LibraryCode() : CodeScope(true) {}
};

class FakeCode : public CodeScope {
 public:
  FakeCode() : CodeScope(false) {}
};

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_CODE_SCOPE_H_
