// Profile files: text with sections headed by `[name]` and one `key=value` on a line.
//
// Names match without regard to the case of ASCII letters. Of sections of one name the first
// counts, and of the keys of one name in it the first. Blanks round names and values do not count,
// and one pair of quotes round a value, single or double, is not part of it. A line that opens with
// `;` is a comment. Lines end with CR, LF or both. Whatever is none of this is kept and not read.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/disk.h"

namespace orvane {

class ProfileFile {
 public:
  // Takes any bytes. Time and memory grow with the size of `text` alone.
  static ProfileFile Parse(std::string_view text);

  ProfileFile() = default;
  ProfileFile(ProfileFile&&) = default;
  ProfileFile& operator=(ProfileFile&&) = default;

  // The value of a key; nothing when the key or the section is absent. Constant time.
  std::optional<std::string> Get(std::string_view section, std::string_view key) const;

  // Gives a key its value, so that Get returns it as it stands here, outer blanks and quotes
  // included; a line end inside becomes one blank. Adds the key behind the last one of its section,
  // and the section behind the end, where they are missing. No other byte changes, and none at all
  // when the key holds the value already. The names must be non-empty, without outer blanks and
  // without line ends, `]` or `=`.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  // The file as it has to be written.
  std::string Text() const;

 private:
  // A key that counts, a header that counts, or a run of anything else; line ends included.
  using Pieces = std::list<std::string>;
  struct Key {
    Pieces::iterator line;
    std::size_t value_at;  // place behind the equals sign
  };
  struct Section {
    Pieces::iterator last;  // its last key that counts, or its header
    std::unordered_map<std::string, Key> keys;
  };

  void AddLine(std::string_view line, Section*& open);
  void AddForeign(std::string_view line);
  void CloseLastLine();
  void AddKey(Section& section, std::string_view key, const std::string& value);

  Pieces pieces_;
  bool foreign_last_ = false;  // the last piece is a run that may grow
  std::unordered_map<std::string, Section> sections_;
  std::string line_end_ = "\r\n";  // that of the file's first line
};

// The value of a key, empty when the section or the key is absent; cut to at most `limit` bytes,
// never inside a UTF-8 character.
std::string ReadProfileValue(const ProfileFile& file, std::string_view section,
                             std::string_view key, std::size_t limit);

struct ProfileEntry {
  std::string key;
  std::string value;
};

// Sets the keys in the profile file at `path`, in order, and leaves the rest of it alone; creates
// file and section if need be. One replacement of the file, whatever the number of keys. False,
// with the old file untouched, when it could not be written, or is there and cannot be read.
bool WriteProfileValues(Disk& disk, std::string_view section,
                        const std::vector<ProfileEntry>& entries, const std::string& path);

}  // namespace orvane
