// The extension binding, on a runtime within the test.
#include <gtest/gtest.h>

#include <stdexcept>

#include "nurvo/extension.h"
#include "testing/fake/fake_runtime.h"
#include "testing/split.h"

namespace {

using Texts = std::vector<std::string>;

// What the extension is to do, and what became of its objects, in order.
struct Scene {
  fake::Runtime* runtime = nullptr;
  Texts journal;
  int initialize_result = 0;
  bool has_pages = true;
};

Scene& State() {
  static Scene scene;
  return scene;
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
      State().runtime->DestroyPage(handle_);
      PostMessage("too late");
      ReportSuccess(out);
    });
  }
  ~Page() override {
    PostMessage("last words");
    State().journal.push_back("gone " + std::to_string(handle_));
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

int32_t Initialize(ExtensionHandle /*extension*/, InterfaceGetter /*get_interface*/) {
  const Api api;
  if (State().initialize_result > 0) throw std::runtime_error("no");
  return State().initialize_result;
}

void MakePage(InstanceHandle instance) {
  if (!State().has_pages) throw std::runtime_error("no page");
  common::Extension::OnInstanceCreated(instance, new Page(instance));
}

struct OnePage {
  std::string Call(const std::string& text) const { return runtime->CallRaw(handle, text); }

  std::unique_ptr<fake::Runtime> runtime = std::make_unique<fake::Runtime>();
  InstanceHandle handle = runtime->NewPage();
};

TEST(Binding, AnswersGoodCalls) {
  const OnePage page;
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
    EXPECT_EQ(page.Call(R"( { "args" : )" + sent + R"( , "cmd" : "echo" } )"),
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
  for (const auto& [call, reply] : calls) EXPECT_EQ(page.Call(call), reply) << call;
}

TEST(Binding, AnswersBadCallsWithAnError) {
  const OnePage page;
  constexpr size_t kMany = 1'000'000;
  Texts rows = Split(R"(| |{|[]|5|null|{}|{"args":1}|{"cmd":5}|{"cmd":"nobody"}|{"cmd":"done"} x|)"
                     R"({"cmd":"done"}}|{"cmd":"done",}|{"cmd":"silent"}|{"cmd":"throw","args":5})");
  Texts arguments = Split(R"(1e999|-1e999|1.2.3|"open|"\|"\u12"|"\x"|"\ud83d\u00")");
  arguments.insert(arguments.end(), {"\"\n\"", Repeated("[", 256) + Repeated("]", 256),
                                     Repeated("[", kMany) + Repeated("]", kMany)});
  for (const std::string& argument : arguments) rows.push_back(R"({"cmd":"echo","args":)" + argument + "}");
  for (const char* open : {"[", "{\"a\":", "{\"a\":["}) rows.push_back(Repeated(open, kMany));
  for (const std::string& row : rows) {
    const std::string reply = page.Call(row);
    EXPECT_EQ(reply.find(R"({"error":{"message":")"), 0U) << row.substr(0, 100);
    EXPECT_NE(reply.find(R"("status":"error")"), std::string::npos);
    fake::Runtime::Message(page.handle, row);
  }
  EXPECT_NE(page.runtime->CallRaw(0, R"({"cmd":"done"})"), "") << "a page that is not there";
}

TEST(Binding, OwnsTheInstancesUntilTheirPageOrTheExtensionGoes) {
  OnePage page;
  EXPECT_EQ(page.runtime->name, "dotted.name");
  EXPECT_EQ(page.runtime->script, "the script");
  const InstanceHandle other = page.runtime->NewPage();
  State().has_pages = false;
  page.runtime->NewPage();
  State() = {};
  page.runtime->DestroyPage(page.handle);
  fake::Runtime::Message(page.handle, R"({"cmd":"done"})");
  EXPECT_EQ(page.runtime->TakePosted(page.handle), Texts{"hello"});
  page.runtime->Shutdown();
  EXPECT_EQ(page.runtime->TakePosted(other), Texts{"hello"});
  const Texts expected = {"gone " + std::to_string(page.handle), "gone " + std::to_string(other), "shutdown"};
  EXPECT_EQ(State().journal, expected);
}

TEST(Binding, AnInstanceThatGoesDuringItsOwnCallLivesToTheCallsEnd) {
  const OnePage page;
  State() = {};
  State().runtime = page.runtime.get();
  EXPECT_EQ(page.Call(R"({"cmd":"go"})"), "");
  EXPECT_EQ(page.runtime->TakePosted(page.handle), Texts{"hello"});
  EXPECT_EQ(State().journal, Texts{"gone " + std::to_string(page.handle)});
}

TEST(Binding, AnExtensionThatCannotBeUsedIsReportedAndForgotten) {
  for (const char* name : {kNurvoExtensionInterface, kNurvoMessagingInterface})
    EXPECT_EQ(fake::Runtime(name).status, -1) << name;
  for (const int result : {-3, 1}) {
    State().initialize_result = result;
    EXPECT_EQ(fake::Runtime().status, result < 0 ? result : -1);
  }
  State() = {};
  EXPECT_EQ(fake::Runtime().status, 0);
}

}  // namespace

extern "C" int32_t XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface) {
  return common::Extension::XW_Initialize(extension, get_interface, Initialize, MakePage,
                                          [](ExtensionHandle) { State().journal.emplace_back("shutdown"); });
}
