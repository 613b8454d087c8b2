// Sets up and clears the engine's storage, and stores a profile's address.
#include "launcher/storage.h"

#include <memory>
#include <utility>

namespace corvis::tv {

namespace {

constexpr const char* kAuthorityFile = "/address";
// Files that the application's author changes must not come from an earlier run's cache. The engine has no
// disk cache if it can't create the folder.
constexpr const char* kNoFolder = "/dev/null";

using Done = std::function<void(const std::string& error)>;

void OnCleared(GObject* manager, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Done> done(static_cast<Done*>(data));
  GError* failure = nullptr;
  webkit_website_data_manager_clear_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, &failure);
  const nurvo::GErrorPtr error(failure);
  (*done)(error ? std::string("The storage can't be cleared: ") + error->message + "." : "");
}

}  // namespace

nurvo::GObjectPtr<WebKitWebContext> NewWebContext(const std::string& profile) {
  const nurvo::GObjectPtr<WebKitWebsiteDataManager> manager(webkit_website_data_manager_new(
      "base-data-directory", (profile + "/data").c_str(), "base-cache-directory",
      (profile + "/cache").c_str(), "disk-cache-directory", kNoFolder, nullptr));
  nurvo::GObjectPtr<WebKitWebContext> context(
      webkit_web_context_new_with_website_data_manager(manager.get()));
  webkit_cookie_manager_set_persistent_storage(webkit_web_context_get_cookie_manager(context.get()),
                                               (profile + "/cookies").c_str(),
                                               WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  return context;
}

void ClearStorage(WebKitWebContext* context, Done done) {
  webkit_website_data_manager_clear(webkit_web_context_get_website_data_manager(context),
                                    WEBKIT_WEBSITE_DATA_ALL, 0, nullptr, OnCleared,
                                    new Done(std::move(done)));
}

std::string MakeProfile(const std::string& profile) {
  constexpr int kForItsUser = 0700;
  if (g_mkdir_with_parents(profile.c_str(), kForItsUser) == 0) return "";
  return "The profile " + profile + " can't be created: " + g_strerror(errno) + ".";
}

std::string ReadAuthority(const std::string& profile) {
  gchar* text = nullptr;
  if (g_file_get_contents((profile + kAuthorityFile).c_str(), &text, nullptr, nullptr) == FALSE) return "";
  return nurvo::GText(text).get();
}

bool WriteAuthority(const std::string& profile, const std::string& authority) {
  constexpr int kForItsUser = 0600;
  return g_file_set_contents_full((profile + kAuthorityFile).c_str(), authority.c_str(), -1,
                                  G_FILE_SET_CONTENTS_CONSISTENT, kForItsUser, nullptr) != FALSE;
}

}  // namespace corvis::tv
