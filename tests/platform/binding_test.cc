// The extension binding, on a runtime within the test.
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <utility>

#include "nurvo/extension.h"
#include "testing/split.h"

namespace {

using Texts = std::vector<std::string>;

// What was registered with the runtime, and what the library did, in order.
struct Runtime {
  struct Loaded {
    std::string name;
    std::string script;
    NurvoExtensionCallbacks callbacks = {};
    void* user_data = nullptr;
  };
  std::map<ExtensionHandle, Loaded> extensions;
  Texts journal;
  Texts replies;
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

void Destroy(ExtensionHandle extension, InstanceHandle page) {
  const Runtime::Loaded& loaded = g_runtime->extensions[extension];
  loaded.callbacks.destroyed(page, loaded.user_data);
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
      Destroy(1, handle_);
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
    for (const auto& item : runtime_.extensions) Shutdown(item.first);
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
  void Shutdown(ExtensionHandle extension) {
    Runtime::Loaded& loaded = runtime_.extensions[extension];
    if (const auto shutdown = std::exchange(loaded.callbacks.shutdown, nullptr)) shutdown(loaded.user_data);
  }
  void Create(ExtensionHandle extension, InstanceHandle page) {
    const Runtime::Loaded& loaded = runtime_.extensions[extension];
    loaded.callbacks.created(page, loaded.user_data);
  }
  // The one reply to a page's call; empty without one.
  std::string Call(const char* text, InstanceHandle page = 7) {
    runtime_.replies.clear();
    runtime_.extensions[1].callbacks.sync_message(page, text, runtime_.extensions[1].user_data);
    EXPECT_LE(runtime_.replies.size(), 1U);
    return runtime_.replies.empty() ? "" : runtime_.replies[0];
  }
  void Post(const char* text, InstanceHandle page) {
    runtime_.extensions[1].callbacks.message(page, text, runtime_.extensions[1].user_data);
  }
  void LoadWithPage() {
    ASSERT_EQ(Load(1), 0);
    Create(1, 7);
  }

  Runtime runtime_;
};

TEST_F(BindingTest, AnswersGoodCalls) {
  LoadWithPage();
  const std::string deep = Repeated("[", 255) + Repeated("]", 255);
  const std::string big = '"' + std::string(size_t{16} << 20, 'x') + '"';
  const std::pair<std::string, std::string> echoes[] = {
      {R"([1,-2.5e1,"é",{"a":null},true])", R"([1,-25,"é",{"a":null},true])"},
      {R"("\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC\ud83d\ude00")", R"("\"\\\/\b\f\n\r\tAé€😀")"},
      {R"(["\ud83d","\ude00","\ud83dx","\ud83d\n","\ud83d\u0041"])",
       "[\"\uFFFD\",\"\uFFFD\",\"\uFFFDx\",\"\uFFFD\\n\",\"\uFFFDA\"]"},
      {deep, deep},
      {big, big},
  };
  for (const auto& [sent, received] : echoes) {
    EXPECT_EQ(Call((R"( { "args" : )" + sent + R"( , "cmd" : "echo" } )").c_str()),
              R"({"result":)" + received + R"(,"status":"success"})");
  }
  const std::pair<const char*, const char*> calls[] = {
      {R"({"cmd":"done","args":{}})", R"({"status":"success"})"},
      {R"({"cmd":"echo"})", R"({"result":null,"status":"success"})"},
      {R"({"cmd":"refuse"})",
       R"({"error":{"message":"no \"entry\"","name":"SecurityError"},"status":"error"})"},
      {R"({"cmd":"throw","args":"why"})",
       R"({"error":{"message":"why","name":"OwnError"},"status":"error"})"},
      {R"({"cmd":"throw"})", R"({"error":{"message":"standard","name":"UnknownError"},"status":"error"})"},
  };
  for (const auto& [call, reply] : calls) EXPECT_EQ(Call(call), reply) << call;
}

TEST_F(BindingTest, AnswersBadCallsWithAnError) {
  LoadWithPage();
  constexpr size_t kMany = 1'000'000;
  Texts rows = Split(R"(| |{|[]|5|null|{}|{"args":1}|{"cmd":5}|{"cmd":"nobody"}|{"cmd":"done"} x|)"
                     R"({"cmd":"done"}}|{"cmd":"done",}|{"cmd":"silent"}|{"cmd":"throw","args":5})");
  Texts arguments = Split(R"(1e999|-1e999|1.2.3|"open|"\|"\u12"|"\x"|"\ud83d\u00")");
  arguments.insert(arguments.end(), {"\"\n\"", Repeated("[", 256) + Repeated("]", 256),
                                     Repeated("[", kMany) + Repeated("]", kMany)});
  for (const std::string& argument : arguments) rows.push_back(R"({"cmd":"echo","args":)" + argument + "}");
  for (const char* open : {"[", "{\"a\":", "{\"a\":["}) rows.push_back(Repeated(open, kMany));
  for (const std::string& row : rows) {
    const std::string reply = Call(row.c_str());
    EXPECT_EQ(reply.find(R"({"error":{"message":")"), 0U) << row.substr(0, 100);
    EXPECT_NE(reply.find(R"("status":"error")"), std::string::npos);
    Post(row.c_str(), 7);
  }
  EXPECT_NE(Call(nullptr).find("error"), std::string::npos);
  EXPECT_NE(Call(R"({"cmd":"done"})", 8), "") << "a page that is not there";
}

TEST_F(BindingTest, OwnsTheInstancesUntilTheirPageOrTheExtensionGoes) {
  ASSERT_EQ(Load(1), 0);
  ASSERT_EQ(Load(2), 0);
  EXPECT_EQ(Load(2), -1) << "is loaded already";
  EXPECT_EQ(runtime_.extensions[1].name, "dotted.name");
  EXPECT_EQ(runtime_.extensions[2].script, "the script");
  for (const auto& [extension, page] : {std::pair(1, 1), {1, 2}, {2, 3}, {1, -1}}) Create(extension, page);
  Destroy(1, 1);
  Destroy(1, 1);
  Post(R"({"cmd":"done"})", 1);
  Shutdown(1);
  Shutdown(2);
  EXPECT_EQ(runtime_.journal,
            Split("post 1 hello|post 2 hello|post 3 hello|gone 1|gone 2|shutdown 1|gone 3|shutdown 2"));
}

TEST_F(BindingTest, AnInstanceThatGoesDuringItsOwnCallLivesToTheCallsEnd) {
  LoadWithPage();
  runtime_.journal.clear();
  EXPECT_EQ(Call(R"({"cmd":"go"})"), "");
  EXPECT_EQ(runtime_.journal, Texts{"gone 7"});
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
