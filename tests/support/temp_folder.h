// A folder of its own for a test, gone with it.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace orvane::test {

class TempFolder {
 public:
  TempFolder() {
    std::string name = std::filesystem::temp_directory_path() / "orvane-test-XXXXXX";
    path_ = mkdtemp(name.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string Path(std::string_view name) const { return path_ + '/' + std::string(name); }

  std::string Write(std::string_view name, std::string_view content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }

  std::string Script(std::string_view name, const std::string& body) const {
    const std::string path = Write(name, "#!/bin/sh\n" + body + '\n');
    chmod(path.c_str(), 0755);
    return path;
  }

  std::string Read(std::string_view name) const {
    std::ostringstream text;
    text << std::ifstream(Path(name), std::ios::binary).rdbuf();
    return text.str();
  }

  // How many entries it holds, hidden ones included.
  std::size_t Size() const {
    std::size_t size = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(path_)) ++size;
    return size;
  }

 private:
  std::string path_;
};

}  // namespace orvane::test
