// Installs a script that receives each keyboard event before the page does.
#include "web-process/key_values.h"

#include "keys_script.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

using JscValue = nurvo::GObjectPtr<JSCValue>;

char* CurrentKey(gpointer key) {
  return g_strdup(static_cast<const std::string*>(key)->c_str());
}

}  // namespace

void WatchKeys(JSCContext* context, const std::string* key) {
  const JscValue watch(jsc_context_evaluate_with_source_uri(context, kKeysScript, -1, "keys.js", 1));
  const JscValue native(jsc_value_new_object(context, nullptr, nullptr));
  const JscValue function(jsc_value_new_function(context, "key", G_CALLBACK(CurrentKey),
                                                 const_cast<std::string*>(key), nullptr, G_TYPE_STRING, 0));
  jsc_value_object_set_property(native.get(), "key", function.get());
  const JscValue result(jsc_value_function_call(watch.get(), JSC_TYPE_VALUE, native.get(), G_TYPE_NONE));
}

}  // namespace corvis::tv
