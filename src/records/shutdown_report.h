// The report that the companion leaves before the computer goes down: which windows it closed, and
// which files each of these programs saved. This is all of the window but its lists.
#pragma once

#include <cstdint>
#include <string>

#include "platform/disk.h"
#include "platform/profile.h"

namespace orvane {

// A count of the report is only taken for what it says; an entry is read when it is asked for, so
// that a damaged count costs nothing.
class ShutdownReport {
 public:
  // `path` names `SaverApp.INI`.
  ShutdownReport(Disk& disk, std::string path);

  // Reads the report anew. Without one to be shown there are no applications. The files stay.
  void Activate();

  // Applications in the report, and their entries as they stood at the last activation. `index`
  // counts from 0 and must be below the number of applications. Empty where the file has none.
  std::int64_t Applications() const { return applications_; }
  std::string Title(std::int64_t index) const;
  std::string SectionName(std::int64_t index) const;

  // Reads anew which files the application of this index saved.
  void ShowFileList(std::int64_t index);

  // The files, as they stood at the last ShowFileList; counted as the applications are.
  std::int64_t Files() const { return files_; }
  std::string FileName(std::int64_t index) const;

  // Empties both lists and marks the report as dealt with. It shows nothing more until a new one
  // is left. A file that cannot be written is passed over.
  void Clear();

 private:
  ProfileFile ReadFile() const;

  Disk& disk_;
  std::string path_;

  ProfileFile report_;             // the file at the last activation
  std::int64_t applications_ = 0;  // in the report
  ProfileFile chosen_;             // the file when an application was chosen last
  std::string section_;            // the section of that application
  std::int64_t files_ = 0;         // of that application
};

}  // namespace orvane
