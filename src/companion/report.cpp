#include "companion/report.h"

#include "platform/profile.h"

namespace orvane::companion {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kUnknown = "\xEF\xBF\xBD";  // U+FFFD, for bytes that are no text
constexpr std::string_view kCutOff = "...";

// Bytes of the well-formed UTF-8 character at the front of `text`; 0 when there is none (RFC 3629).
std::size_t CharacterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto tail = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const unsigned lead = byte(0);
  if (text.empty()) return 0;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return tail(1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const bool in_range = (lead != 0xE0 || byte(1) >= 0xA0) && (lead != 0xED || byte(1) <= 0x9F);
    return in_range && tail(1) && tail(2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const bool in_range = (lead != 0xF0 || byte(1) >= 0x90) && (lead != 0xF4 || byte(1) <= 0x8F);
    return in_range && tail(1) && tail(2) && tail(3) ? 4 : 0;
  }
  return 0;
}

// The characters of `text`, mended where they are no text: control characters become blanks.
std::vector<std::string> Characters(std::string_view text) {
  std::vector<std::string> characters;
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    if (size == 0) {
      characters.emplace_back(kUnknown);
    } else if (size == 1 && (text[0] < ' ' || text[0] == 0x7F)) {
      characters.emplace_back(" ");
    } else {
      characters.emplace_back(text.substr(0, size));
    }
    text.remove_prefix(size == 0 ? 1 : size);
  }
  return characters;
}

}  // namespace

std::string FitText(std::string_view text, std::size_t limit) {
  std::string fitted;
  for (const std::string& character : Characters(text)) {
    if (fitted.size() + character.size() > limit) break;
    fitted += character;
  }
  return fitted;
}

std::string FitPath(std::string_view path, std::size_t limit) {
  const std::vector<std::string> characters = Characters(path);
  std::size_t size = 0;
  for (const std::string& character : characters) size += character.size();
  std::string fitted;
  if (size > limit) fitted = kCutOff;
  std::size_t first = 0;
  for (const std::size_t room = limit - fitted.size(); size > room; ++first) {
    size -= characters[first].size();
  }
  for (; first < characters.size(); ++first) fitted += characters[first];
  return fitted;
}

std::string ReportText(const std::vector<Application>& applications) {
  ProfileFile file;
  std::size_t closed = 0;
  std::size_t open = 0;
  for (const Application& application : applications) ++(application.closed ? closed : open);
  file.Set(kMain, "ShowMsg", "1");
  file.Set(kMain, "AppNumber", std::to_string(closed));
  const auto list = [&](const char* key, bool of_closed) {
    std::size_t number = 0;
    for (std::size_t i = 0; i < applications.size(); ++i) {
      if (applications[i].closed != of_closed) continue;
      file.Set(kMain, key + std::to_string(number++), "Application" + std::to_string(i));
    }
  };
  list("App", true);
  file.Set(kMain, "OpenNumber", std::to_string(open));
  list("Open", false);
  for (std::size_t i = 0; i < applications.size(); ++i) {
    const Application& application = applications[i];
    const std::string section = "Application" + std::to_string(i);
    file.Set(section, "Title", FitText(application.title));
    file.Set(section, "FileNumber", std::to_string(application.files.size()));
    for (std::size_t k = 0; k < application.files.size(); ++k) {
      file.Set(section, "File" + std::to_string(k), FitPath(application.files[k]));
    }
  }
  return file.Text();
}

}  // namespace orvane::companion
