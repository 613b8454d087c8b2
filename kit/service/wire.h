// The names in the protocol between the voice service and the applications.
#ifndef CORVIS_KIT_SERVICE_WIRE_H_
#define CORVIS_KIT_SERVICE_WIRE_H_

namespace corvis::kit::wire {

constexpr const char* kServiceId = "com.kelvaro.tv.vif";
constexpr const char* kPort = "com.port.vif.voiceinteraction";
constexpr const char* kInitEvent = "event.com.kelvaro.tv.vif.InitEvent";

constexpr const char* kCommandKey = "command";
constexpr const char* kDataKey = "strData";
constexpr const char* kTotalKey = "totalDataLength";

constexpr const char* kRegister = "register";
constexpr const char* kUnregister = "unregister";
constexpr const char* kResult = "result";
constexpr const char* kAppContext = "appContext";
constexpr const char* kPartialResult = "partial_result";

}  // namespace corvis::kit::wire

#endif  // CORVIS_KIT_SERVICE_WIRE_H_
