// Whole files at once.
#include "app/output_file.h"

#include <filesystem>
#include <fstream>

namespace corvis::kit {

std::string WriteOutputFile(const std::string& file, const std::string& bytes) {
  const std::filesystem::path folder = std::filesystem::path(file).parent_path();
  std::error_code ignored;
  if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  stream.close();
  return stream ? "" : "The file " + file + " can't be written; may this user write there?";
}

}  // namespace corvis::kit
