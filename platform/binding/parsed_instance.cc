// Parses JSON calls, runs their handlers, and answers each with exactly one reply.
#include <exception>
#include <string>
#include <utility>

#include "binding/call_parser.h"
#include "nurvo/extension.h"

namespace common {

namespace {

constexpr const char* kStatus = "status";

// The answer if there is not enough memory for a specific one.
constexpr const char* kLastResortReply =
    R"({"status":"error","error":{"name":"UnknownError","message":"The call could not be answered."}})";

picojson::object ErrorReply(const std::string& name, const std::string& message) {
  picojson::object error;
  error["name"] = picojson::value(name);
  error["message"] = picojson::value(message);
  picojson::object reply;
  reply[kStatus] = picojson::value("error");
  reply["error"] = picojson::value(std::move(error));
  return reply;
}

// Parses a call. Throws PlatformException if the text is not a JSON object.
picojson::object ReadCall(const char* message) {
  picojson::value call;
  bool understood = false;
  try {
    understood = message != nullptr && nurvo::ParseJson(message, call);
  } catch (const std::exception&) {
    understood = false;
  }
  if (!understood || !call.is<picojson::object>()) {
    throw PlatformException(
        "TypeMismatchError",
        "Expected a JSON object {\"cmd\": name, \"args\": value}, but the call can't be read as one.");
  }
  return std::move(call.get<picojson::object>());
}

std::string CommandOf(const picojson::object& call) {
  const auto command = call.find("cmd");
  if (command == call.end() || !command->second.is<std::string>()) {
    throw PlatformException("TypeMismatchError",
                            "Expected the name of a command in \"cmd\", but the call has none.");
  }
  return command->second.get<std::string>();
}

// Runs `body`, which fills a reply, and converts any exception to an error reply.
template <typename Body>
picojson::object ReplyOf(Body&& body) {
  try {
    return body();
  } catch (const PlatformException& error) {
    return ErrorReply(error.name(), error.message());
  } catch (const std::exception& error) {
    return ErrorReply("UnknownError", error.what());
  } catch (...) {
    return ErrorReply("UnknownError", "The handler of the call failed.");
  }
}

}  // namespace

ParsedInstance::ParsedInstance() = default;

ParsedInstance::~ParsedInstance() = default;

void ParsedInstance::HandleMessage(const char* message) {
  try {
    Dispatch(message);
  } catch (...) {
    // Ignored, because the caller expects no answer.
  }
}

void ParsedInstance::HandleSyncMessage(const char* message) {
  std::string reply;
  try {
    reply = picojson::value(Dispatch(message)).serialize();
  } catch (...) {
    reply.clear();
  }
  SendSyncReply(reply.empty() ? kLastResortReply : reply.c_str());
}

void ParsedInstance::HandleBinaryMessage(const char* /*message*/, size_t /*size*/) {}

void ParsedInstance::HandleSyncBinaryMessage(const char* /*message*/, size_t /*size*/) {}

void ParsedInstance::RegisterSyncHandler(
    const std::string& name, const std::function<void(const picojson::value&, picojson::object&)>& handler) {
  handlers_[name] = handler;
}

void ParsedInstance::ReportSuccess(picojson::object& out) {
  out[kStatus] = picojson::value("success");
}

void ParsedInstance::ReportSuccess(const picojson::value& result, picojson::object& out) {
  ReportSuccess(out);
  out["result"] = result;
}

void ParsedInstance::ReportError(const PlatformException& error, picojson::object& out) {
  out = ErrorReply(error.name(), error.message());
}

picojson::object ParsedInstance::Dispatch(const char* message) {
  return ReplyOf([&] {
    picojson::object call = ReadCall(message);
    const std::string command = CommandOf(call);
    const auto found = handlers_.find(command);
    if (found == handlers_.end() || !found->second) {
      throw PlatformException("NotSupportedError",
                              "No handler is registered for the command '" + command + "'.");
    }
    // A copy, because the handler may replace itself.
    const auto handler = found->second;
    picojson::object reply;
    // A script without arguments omits "args"; its handler receives null.
    handler(call["args"], reply);
    if (reply.find(kStatus) == reply.end()) {
      throw PlatformException("UnknownError", "The handler of '" + command + "' reported nothing.");
    }
    return reply;
  });
}

}  // namespace common
