// The log lines of the voice-interaction code. Each starts with the module version.
//
// Several ordinary events are logged at error priority on purpose, so that a command can be traced in a log
// that keeps errors only. Texts and priorities of the lines are documented for integrators.
//
// The version, function and line are inserted between the format and the line's own arguments, so there is
// one macro for lines with arguments and one for lines without.
#ifndef CORVIS_VOICE_INTERACTION_MODULE_LOG_H_
#define CORVIS_VOICE_INTERACTION_MODULE_LOG_H_

#include "common/logger.h"

namespace extension::voice_interaction {

constexpr const char* kModuleVersion = "1.0.8";
constexpr const char* kModuleLogTag = "WEB-VIHandler";

}  // namespace extension::voice_interaction

#define CORVIS_MODULE_LOG_F(priority, format, ...)                                                   \
  CORVIS_LOG_CALL(log_print(priority, ::extension::voice_interaction::kModuleLogTag,                 \
                            "[v%s] %s(%d): " format, ::extension::voice_interaction::kModuleVersion, \
                            __func__, __LINE__, __VA_ARGS__))
#define CORVIS_MODULE_LOG(priority, text)                                                                   \
  CORVIS_LOG_CALL(log_print(priority, ::extension::voice_interaction::kModuleLogTag, "[v%s] %s(%d): " text, \
                            ::extension::voice_interaction::kModuleVersion, __func__, __LINE__))

#define MODULE_INFO(text) CORVIS_MODULE_LOG(::common::kLogInfo, text)
#define MODULE_INFO_F(format, ...) CORVIS_MODULE_LOG_F(::common::kLogInfo, format, __VA_ARGS__)
#define MODULE_ERROR(text) CORVIS_MODULE_LOG(::common::kLogError, text)
#define MODULE_ERROR_F(format, ...) CORVIS_MODULE_LOG_F(::common::kLogError, format, __VA_ARGS__)

#endif  // CORVIS_VOICE_INTERACTION_MODULE_LOG_H_
