// The library in a fake runtime on a fake platform, fresh for each test.
#ifndef CORVIS_TESTS_LIBRARY_FIXTURE_H_
#define CORVIS_TESTS_LIBRARY_FIXTURE_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "testing/fake/fake_platform.h"
#include "testing/fake/fake_runtime.h"

using Texts = std::vector<std::string>;

constexpr const char* kListen = "VoiceInteractionHandler_listen";
constexpr const char* kSetCallback = "VoiceInteractionHandler_setCallback";
constexpr const char* kGetVersion = "VoiceInteractionHandler_getVersion";
constexpr const char* kCheckPrivileges = "VoiceInteractionHandler_checkPrivileges";
constexpr const char* kResponse = "Response";
constexpr const char* kSuccess = R"({"status":"success"})";

// The text of a reply that carries an error.
inline std::string ErrorReply(const std::string& name, const std::string& message) {
  return R"({"error":{"message":")" + message + R"(","name":")" + name + R"("},"status":"error"})";
}

// Makes a page answer a command.
inline std::string Respond(fake::Runtime& runtime, InstanceHandle page, const std::string& action,
                           const std::string& response) {
  return runtime.Call(page, kResponse, R"({"action":")" + action + R"(","response":")" + response + R"("})");
}

// After the last page: nothing is open, nobody is called, and nothing was done that a platform would not
// accept.
inline void ExpectNothingLeft(const std::string& context) {
  fake::Platform& platform = fake::Platform::Get();
  EXPECT_THAT(platform.ports, testing::IsEmpty()) << context;
  EXPECT_THAT(platform.events, testing::IsEmpty()) << context;
  EXPECT_THAT(platform.objects, testing::IsEmpty()) << context;
  EXPECT_THAT(platform.misuses, testing::IsEmpty()) << context;
}

class LibraryTest : public testing::Test {
 protected:
  LibraryTest() {
    fake::Platform::Reset();
    runtime = std::make_unique<fake::Runtime>();
  }

  ~LibraryTest() override {
    runtime.reset();
    ExpectNothingLeft("at the end");
  }

  static fake::Platform& platform() { return fake::Platform::Get(); }

  std::string Respond(InstanceHandle page, const std::string& action, const std::string& response) {
    return ::Respond(*runtime, page, action, response);
  }

  std::unique_ptr<fake::Runtime> runtime;
};

#endif  // CORVIS_TESTS_LIBRARY_FIXTURE_H_
