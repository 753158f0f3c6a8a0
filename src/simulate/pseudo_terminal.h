// A serial port that does not exist: the device's end of a pseudo-terminal. The other end is a
// terminal device that any program opens like a serial port.
#pragma once

#include <string>
#include <string_view>

namespace orvane {

class PseudoTerminal {
 public:
  // `link` is the path of a symbolic link that names the other end; empty for none.
  explicit PseudoTerminal(std::string link = {}) : link_(std::move(link)) {}
  ~PseudoTerminal() { Close(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // Makes a new pseudo-terminal in raw mode and the link to it. A link that stands there already is
  // replaced; anything else of that name is left alone and the opening fails. Empty when it
  // succeeded, else the reason for the user. Opening an open one changes nothing.
  std::string Open();

  // Takes the device away from whoever has it open, and removes the link.
  void Close();

  bool IsOpen() const { return master_ >= 0; }

  // The path of the other end. Empty when closed.
  const std::string& Name() const { return name_; }

  // Becomes readable when bytes wait for Read. -1 when closed.
  int Descriptor() const { return master_; }

  // What has arrived, at most a few kilobytes at once; empty when nothing has. Never waits.
  std::string Read();

  // Hands bytes to the other end, never waiting for anybody to read them: when the terminal is full
  // of bytes that nobody fetched, those give way to the new ones. With no program on the other end
  // they are lost, and so is what the last one left unread, as on a serial port that is closed.
  void Write(std::string_view bytes);

 private:
  void CountPrograms();
  void Unwatch();
  std::string MakeLink() const;
  void RemoveLink() const;

  std::string link_;
  std::string name_;
  int master_ = -1;
  // The other end, held open so that the programs on it may come and go unnoticed.
  int slave_ = -1;
  // Tells who opens and closes the other end. -1 when the system does not tell: then a program is
  // taken to be there always.
  int watch_ = -1;
  int programs_ = 0;  // that have the other end open, as of the last look
};

}  // namespace orvane
