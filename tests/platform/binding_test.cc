// The extension binding, on a runtime within the test.
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "nurvo/extension.h"

namespace {

// What was registered with the runtime, and what the library did, in order.
struct Runtime {
  struct Loaded {
    std::string name;
    std::string script;
    NurvoExtensionCallbacks callbacks = {};
    void* user_data = nullptr;

    void Created(InstanceHandle page) const { callbacks.created(page, user_data); }
    void Destroyed(InstanceHandle page) const { callbacks.destroyed(page, user_data); }
    void Message(InstanceHandle page, const char* text) const { callbacks.message(page, text, user_data); }
    void SyncMessage(InstanceHandle page, const char* text) const {
      callbacks.sync_message(page, text, user_data);
    }
    void Shutdown() {
      const auto shutdown = std::exchange(callbacks.shutdown, nullptr);
      if (shutdown != nullptr) shutdown(user_data);
    }
  };
  std::map<ExtensionHandle, Loaded> extensions;
  std::vector<std::string> journal;
  std::vector<std::string> replies;
  std::string missing_interface;
  int initialize_result = 0;
};

Runtime* g_runtime = nullptr;

const NurvoExtensionInterface kExtensionTable = {
    [](ExtensionHandle e, const char* name) { g_runtime->extensions[e].name = name; },
    [](ExtensionHandle e, const char* source) { g_runtime->extensions[e].script = source; },
    [](ExtensionHandle e, const NurvoExtensionCallbacks* callbacks, void* user_data) {
      g_runtime->extensions[e].callbacks = *callbacks;
      g_runtime->extensions[e].user_data = user_data;
    }};

const NurvoMessagingInterface kMessagingTable = {
    [](InstanceHandle i, const char* text) {
      g_runtime->journal.push_back("post " + std::to_string(i) + ' ' + text);
    },
    [](InstanceHandle, const char* reply) { g_runtime->replies.emplace_back(reply); }};

const void* GetInterface(const char* name) {
  if (g_runtime->missing_interface == name) return nullptr;
  const bool is_messaging = std::string(name) == kNurvoMessagingInterface;
  return is_messaging ? static_cast<const void*>(&kMessagingTable) : &kExtensionTable;
}

class Page : public common::ParsedInstance {
 public:
  explicit Page(InstanceHandle handle) : handle_(handle) {
    PostMessage("too early");
    const auto add = [&](const char* name, auto handler) { RegisterSyncHandler(name, handler); };
    add("echo", [&](const picojson::value& args, picojson::object& out) { ReportSuccess(args, out); });
    add("done", [&](const picojson::value&, picojson::object& out) { ReportSuccess(out); });
    add("silent", [](const picojson::value&, picojson::object&) {});
    add("refuse", [&](const picojson::value&, picojson::object& out) {
      ReportError(common::PlatformException("SecurityError", "no \"entry\""), out);
    });
    add("throw", [&](const picojson::value& args, picojson::object& out) {
      ReportSuccess(out);
      if (args.is<double>()) throw 5;
      if (args.is<std::string>()) throw common::PlatformException("OwnError", args.get<std::string>());
      throw std::runtime_error("standard");
    });
    add("go", [&](const picojson::value&, picojson::object& out) {
      g_runtime->extensions[1].Destroyed(handle_);
      PostMessage("too late");
      ReportSuccess(out);
    });
  }
  ~Page() override {
    PostMessage("last words");
    g_runtime->journal.push_back("gone " + std::to_string(handle_));
  }
  void OnAttached() override { PostMessage("hello"); }

 private:
  InstanceHandle handle_;
};

class Api : public common::Extension {
 public:
  Api() {
    SetExtensionName("dotted.name");
    SetJavaScriptAPI("the script");
  }
  common::Instance* CreateInstance() override { return nullptr; }
};

class BindingTest : public ::testing::Test {
 protected:
  BindingTest() { g_runtime = &runtime_; }
  ~BindingTest() override {
    for (auto& item : runtime_.extensions) item.second.Shutdown();
    g_runtime = nullptr;
  }

  static int32_t Load(ExtensionHandle handle) {
    return common::Extension::XW_Initialize(
        handle, GetInterface,
        [](ExtensionHandle, InterfaceGetter) -> int32_t {
          const Api api;
          if (g_runtime->initialize_result > 0) throw std::runtime_error("no");
          return g_runtime->initialize_result;
        },
        [](InstanceHandle instance) {
          if (instance < 0) throw std::runtime_error("no page");
          common::Extension::OnInstanceCreated(instance, new Page(instance));
        },
        [](ExtensionHandle extension) {
          g_runtime->journal.push_back("shutdown " + std::to_string(extension));
        });
  }
  // The one reply to a call of page 7.
  std::string Call(const char* text) {
    runtime_.replies.clear();
    runtime_.extensions[1].SyncMessage(7, text);
    EXPECT_EQ(runtime_.replies.size(), 1U);
    return runtime_.replies.empty() ? "" : runtime_.replies[0];
  }

  Runtime runtime_;
};

std::string Nested(size_t depth, const std::string& open, const std::string& close) {
  std::string text;
  for (size_t i = 0; i < depth; ++i) text += open;
  for (size_t i = 0; i < depth; ++i) text += close;
  return text;
}

TEST_F(BindingTest, AnswersGoodCalls) {
  ASSERT_EQ(Load(1), 0);
  runtime_.extensions[1].Created(7);
  const std::string deep = Nested(255, "[", "]");
  const struct {
    std::string call;
    std::string reply;
  } rows[] = {
      {R"({"cmd":"done","args":{}})", R"({"status":"success"})"},
      {R"( { "args" : [1,-2.5e1,"é",{"a":null},true] , "cmd" : "echo" } )",
       R"({"result":[1,-25,"é",{"a":null},true],"status":"success"})"},
      {R"({"cmd":"echo"})", R"({"result":null,"status":"success"})"},
      {R"({"cmd":"echo","args":"\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC\ud83d\ude00"})",
       R"({"result":"\"\\\/\b\f\n\r\tAé€😀","status":"success"})"},
      {R"({"cmd":"echo","args":["\ud83d","\ude00","\ud83dx","\ud83d\n","\ud83d\u0041"]})",
       "{\"result\":[\"\uFFFD\",\"\uFFFD\",\"\uFFFDx\",\"\uFFFD\\n\",\"\uFFFDA\"],\"status\":\"success\"}"},
      {R"({"cmd":"echo","args":)" + deep + "}", R"({"result":)" + deep + R"(,"status":"success"})"},
      {R"({"cmd":"refuse"})",
       R"({"error":{"message":"no \"entry\"","name":"SecurityError"},"status":"error"})"},
      {R"({"cmd":"throw","args":"why"})",
       R"({"error":{"message":"why","name":"OwnError"},"status":"error"})"},
      {R"({"cmd":"throw"})", R"({"error":{"message":"standard","name":"UnknownError"},"status":"error"})"},
  };
  for (const auto& row : rows) EXPECT_EQ(Call(row.call.c_str()), row.reply) << row.call;
  const std::string big(size_t{16} << 20, 'x');
  EXPECT_EQ(Call((R"({"cmd":"echo","args":")" + big + "\"}").c_str()),
            R"({"result":")" + big + R"(","status":"success"})");
}

TEST_F(BindingTest, AnswersBadCallsWithAnError) {
  ASSERT_EQ(Load(1), 0);
  runtime_.extensions[1].Created(7);
  const std::string echo = R"({"cmd":"echo","args":)";
  const std::string rows[] = {"",
                              " ",
                              "{",
                              "[]",
                              "5",
                              "null",
                              "{}",
                              R"({"args":1})",
                              R"({"cmd":5})",
                              R"({"cmd":"nobody"})",
                              R"({"cmd":"done"} x)",
                              R"({"cmd":"done"}})",
                              R"({"cmd":"done",})",
                              R"({"cmd":"silent"})",
                              R"({"cmd":"throw","args":5})",
                              echo + "1e999}",
                              echo + "-1e999}",
                              echo + "1.2.3}",
                              echo + "\"open",
                              echo + R"("\)",
                              echo + R"("\u12")" + "}",
                              echo + R"("\x")" + "}",
                              echo + "\"\n\"}",
                              echo + R"("\ud83d\u00")" + "}",
                              echo + Nested(256, "[", "]") + "}",
                              echo + Nested(1000000, "[", "]") + "}",
                              Nested(1000000, "[", ""),
                              Nested(1000000, "{\"a\":", ""),
                              Nested(1000000, "{\"a\":[", "")};
  for (const std::string& row : rows) {
    const std::string reply = Call(row.c_str());
    EXPECT_EQ(reply.find(R"({"error":{"message":")"), 0U) << row.substr(0, 100);
    EXPECT_NE(reply.find(R"("status":"error")"), std::string::npos);
    runtime_.extensions[1].Message(7, row.c_str());
  }
  EXPECT_NE(Call(nullptr).find("error"), std::string::npos);
  runtime_.replies.clear();
  runtime_.extensions[1].SyncMessage(8, R"({"cmd":"done"})");
  EXPECT_EQ(runtime_.replies.size(), 1U) << "a page that is not there";
}

TEST_F(BindingTest, OwnsTheInstancesUntilTheirPageOrTheExtensionGoes) {
  ASSERT_EQ(Load(1), 0);
  ASSERT_EQ(Load(2), 0);
  EXPECT_EQ(Load(2), -1) << "is loaded already";
  EXPECT_EQ(runtime_.extensions[1].name, "dotted.name");
  EXPECT_EQ(runtime_.extensions[2].script, "the script");
  Runtime::Loaded& first = runtime_.extensions[1];
  Runtime::Loaded& second = runtime_.extensions[2];
  first.Created(1);
  first.Created(2);
  second.Created(3);
  first.Created(-1);
  first.Destroyed(1);
  first.Destroyed(1);
  first.Message(1, R"({"cmd":"done"})");
  first.Shutdown();
  second.Shutdown();
  EXPECT_EQ(runtime_.journal,
            (std::vector<std::string>{"post 1 hello", "post 2 hello", "post 3 hello", "gone 1", "gone 2",
                                      "shutdown 1", "gone 3", "shutdown 2"}));
}

TEST_F(BindingTest, AnInstanceThatGoesDuringItsOwnCallLivesToTheCallsEnd) {
  ASSERT_EQ(Load(1), 0);
  runtime_.extensions[1].Created(7);
  runtime_.journal.clear();
  runtime_.extensions[1].SyncMessage(7, R"({"cmd":"go"})");
  EXPECT_EQ(runtime_.journal, (std::vector<std::string>{"gone 7"}));
}

TEST_F(BindingTest, AnExtensionThatCannotBeUsedIsReportedAndForgotten) {
  for (const char* name : {kNurvoExtensionInterface, kNurvoMessagingInterface}) {
    runtime_.missing_interface = name;
    EXPECT_EQ(Load(1), -1) << name;
  }
  runtime_.missing_interface.clear();
  for (const int result : {-3, 1}) {
    runtime_.initialize_result = result;
    EXPECT_EQ(Load(1), result < 0 ? result : -1);
    EXPECT_EQ(runtime_.extensions[1].callbacks.created, nullptr);
  }
  runtime_.initialize_result = 0;
  EXPECT_EQ(Load(1), 0);
}

}  // namespace
