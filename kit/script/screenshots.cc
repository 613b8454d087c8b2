// Takes a screenshot, with numbers on the items if possible, and writes it to a file.
#include "script/screenshots.h"

#include <filesystem>

#include "output/output_file.h"

namespace corvis::kit {

namespace {

// A screenshot with the items' numbers, or a plain one if the page does not report its items.
Result<std::string> Picture(Conversation& conversation) {
  const Result<ItemList> items = conversation.AskItems();
  Result<std::string> numbered = items ? conversation.PictureOf(*items) : Fail(items.error());
  return numbered ? numbered : conversation.runtime().Screenshot();
}

}  // namespace

Result<std::string> SaveScreenshot(Conversation& conversation, const std::string& folder,
                                   const ScriptPlace& place) {
  namespace fs = std::filesystem;
  Result<std::string> picture = Picture(conversation);
  if (!picture) return picture;
  const std::string name = fs::path(place.file).stem().string() + "-" + std::to_string(place.line) + ".png";
  std::string file = fs::path(folder) / name;
  if (const Status written = WriteOutputFile(file, *picture); !written) return Fail(written.error());
  return file;
}

}  // namespace corvis::kit
