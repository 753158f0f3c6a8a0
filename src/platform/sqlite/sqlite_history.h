// The history in an SQLite database; docs/records.md tells its layout.
#pragma once

#include <functional>
#include <string>

#include "history/history.h"

struct sqlite3;
struct sqlite3_stmt;

namespace orvane {

class SqliteHistory : public HistoryStore {
 public:
  // Opens or makes the file when it is first used. One that is damaged is put aside as
  // `path`.damaged; one of a newer version is left alone, and one that cannot be written is read
  // only. `report` is told once of each kind of trouble.
  SqliteHistory(std::string path, std::function<void(const std::string&)> report);
  ~SqliteHistory() override;
  SqliteHistory(const SqliteHistory&) = delete;
  SqliteHistory& operator=(const SqliteHistory&) = delete;

  std::vector<Sample> Samples(Step step, sys_seconds from, sys_seconds to) override;
  std::vector<Episode> Episodes(sys_seconds from, sys_seconds to) override;
  std::optional<sys_seconds> First() override;
  bool Write(const std::vector<Sample>& minutes, const std::vector<Episode>& episodes) override;
  std::int64_t LastEpisode() override;

 private:
  // Of all calls: false when the database refused.
  void OpenFirst();
  bool Open();
  bool Prepare();
  bool Run(const char* sql);
  bool Number(const char* sql, std::int64_t& number);
  bool Write(const Sample& minute);
  bool Write(const Episode& episode);
  bool Thin();

  void Close();
  void PutAside();
  void TellTrouble(int code);

  std::string path_;
  std::function<void(const std::string&)> report_;
  std::string told_;  // the trouble that was told last
  sqlite3* base_ = nullptr;
  bool opened_ = false;   // it was tried
  bool foreign_ = false;  // not ours to touch
  int writes_ = 0;
  sqlite3_stmt* insert_minute_ = nullptr;
  sqlite3_stmt* merge_hour_ = nullptr;
  sqlite3_stmt* put_episode_ = nullptr;
};

}  // namespace orvane
