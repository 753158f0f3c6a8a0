#include "platform/sqlite/sqlite_history.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace orvane {
namespace {

constexpr int kVersion = 1;
constexpr std::int64_t kApplication = 0x4f727648;  // "OrvH"
constexpr int kWritesBetweenThinnings = 1440;

// Columns of both tables of samples, after `begin` and `readings`.
constexpr const char* kGaugeColumns[] = {"input",   "output",    "load",
                                         "battery", "frequency", "temperature"};

std::string ColumnList(const char* separator, const std::function<std::string(std::string)>& form) {
  std::string list;
  for (const char* gauge : kGaugeColumns) {
    for (const char* part : {"_min", "_sum", "_max"}) {
      if (!list.empty()) list += separator;
      list += form(std::string(gauge) + part);
    }
  }
  return list;
}

std::string Columns() {
  return ColumnList(", ", [](const std::string& name) { return name; });
}

std::string Schema() {
  const std::string columns =
      ColumnList(", ", [](const std::string& name) { return name + " INTEGER NOT NULL"; });
  std::string schema;
  for (const char* table : {"minutes", "hours"}) {
    schema += std::string("CREATE TABLE IF NOT EXISTS ") + table +
              " (begin INTEGER PRIMARY KEY, readings INTEGER NOT NULL, " + columns + ");";
  }
  schema +=
      "CREATE TABLE IF NOT EXISTS episodes (id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, begin "
      "INTEGER NOT NULL, end INTEGER NOT NULL, ending INTEGER NOT NULL, first_battery INTEGER, "
      "lowest_battery INTEGER, highest_load INTEGER, mean_load INTEGER);";
  schema += "PRAGMA application_id=" + std::to_string(kApplication) + ";";
  schema += "PRAGMA user_version=" + std::to_string(kVersion) + ";";
  return schema;
}

std::string InsertMinute() {
  return "INSERT OR IGNORE INTO minutes (begin, readings, " + Columns() + ") VALUES (?, ?, " +
         ColumnList(", ", [](const std::string&) { return std::string("?"); }) + ")";
}

// The minimum of both, the maximum of both, the sum of both.
std::string MergeHour() {
  const auto merged = [](const std::string& name) {
    const std::string part = name.substr(name.size() - 3);
    if (part == "sum") return name + "=" + name + "+excluded." + name;
    return name + "=" + part + "(" + name + ", excluded." + name + ")";
  };
  return "INSERT INTO hours (begin, readings, " + Columns() + ") VALUES (?, ?, " +
         ColumnList(", ", [](const std::string&) { return std::string("?"); }) +
         ") ON CONFLICT (begin) DO UPDATE SET readings=readings+excluded.readings, " +
         ColumnList(", ", merged);
}

std::int64_t Stamp(sys_seconds time) {
  return time.time_since_epoch().count();
}

sys_seconds Time(std::int64_t stamp) {
  return sys_seconds(std::chrono::seconds(stamp));
}

// A statement that is used once.
class Query {
 public:
  Query(sqlite3* base, const std::string& sql) {
    if (base) sqlite3_prepare_v2(base, sql.c_str(), -1, &statement_, nullptr);
  }
  ~Query() { sqlite3_finalize(statement_); }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  void Bind(int place, std::int64_t number) { sqlite3_bind_int64(statement_, place, number); }
  bool Next() { return statement_ && sqlite3_step(statement_) == SQLITE_ROW; }
  std::int64_t Get(int column) const { return sqlite3_column_int64(statement_, column); }
  std::optional<std::int64_t> Maybe(int column) const {
    if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return std::nullopt;
    return Get(column);
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

bool Finish(sqlite3_stmt* statement) {
  const bool done = sqlite3_step(statement) == SQLITE_DONE;
  return sqlite3_reset(statement) == SQLITE_OK && done;
}

bool Put(sqlite3_stmt* statement, sys_seconds begin, const Sample& sample) {
  int place = 0;
  sqlite3_bind_int64(statement, ++place, Stamp(begin));
  sqlite3_bind_int64(statement, ++place, sample.readings);
  for (const Gauge gauge : kGauges) {
    const Spread& spread = sample.values[gauge];
    for (const std::int64_t number : {spread.least, spread.sum, spread.most}) {
      sqlite3_bind_int64(statement, ++place, number);
    }
  }
  return Finish(statement);
}

}  // namespace

SqliteHistory::SqliteHistory(std::string path, std::function<void(const std::string&)> report)
    : path_(std::move(path)), report_(std::move(report)) {}

SqliteHistory::~SqliteHistory() {
  Close();
}

void SqliteHistory::OpenFirst() {
  if (std::exchange(opened_, true)) return;
  if (!Open() && !foreign_ && base_) {
    const int code = sqlite3_errcode(base_) & 0xff;
    TellTrouble(code);
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) {
      PutAside();
      if (!Open()) Close();
    }
  }
}

bool SqliteHistory::Open() {
  Close();
  constexpr int kOneThread = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(path_.c_str(), &base_, kOneThread, nullptr) != SQLITE_OK) {
    return false;
  }
  std::int64_t version = 0;
  std::int64_t application = 0;
  std::int64_t tables = 0;
  if (!Number("PRAGMA user_version", version) || !Number("PRAGMA application_id", application) ||
      !Number("SELECT count(*) FROM sqlite_schema", tables)) {
    return false;
  }
  if (version > kVersion || (tables > 0 && application != kApplication)) {
    report_(path_ + (version > kVersion ? " is from a newer version" : " is not a history") +
            "; it is left alone, and no history is kept");
    foreign_ = true;
    Close();
    return false;
  }
  // A file that may only be read is shown and not added to.
  if (sqlite3_db_readonly(base_, "main") == 1) {
    TellTrouble(SQLITE_READONLY);
    return true;
  }
  // In this order a power cut costs the last minutes at most, and no commit waits for the medium.
  if (!Run("PRAGMA journal_mode=WAL") || !Run("PRAGMA synchronous=NORMAL")) return false;
  if (!Run("PRAGMA cache_size=-256") || !Run("PRAGMA wal_autocheckpoint=60")) return false;
  if (tables == 0 && (!Run("BEGIN IMMEDIATE") || !Run(Schema().c_str()) || !Run("COMMIT"))) {
    return false;
  }
  return Prepare();
}

bool SqliteHistory::Prepare() {
  const auto prepare = [this](const std::string& sql, sqlite3_stmt*& statement) {
    return sqlite3_prepare_v3(base_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement,
                              nullptr) == SQLITE_OK;
  };
  return prepare(InsertMinute(), insert_minute_) && prepare(MergeHour(), merge_hour_) &&
         prepare("INSERT OR REPLACE INTO episodes VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                 put_episode_) &&
         Thin();
}

bool SqliteHistory::Run(const char* sql) {
  return sqlite3_exec(base_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SqliteHistory::Number(const char* sql, std::int64_t& number) {
  Query query(base_, sql);
  if (!query.Next()) return false;
  number = query.Get(0);
  return true;
}

std::vector<Sample> SqliteHistory::Samples(Step step, sys_seconds from, sys_seconds to) {
  OpenFirst();
  std::vector<Sample> samples;
  // Room for a stretch without gaps; more than is kept is not there.
  const std::int64_t most = step == Step::kMinute ? kKeptMinutes : kKeptHours;
  const std::int64_t width = step == Step::kMinute ? 60 : 3600;
  const std::int64_t room = std::clamp<std::int64_t>((to - from).count() / width, 0, most);
  samples.reserve(static_cast<std::size_t>(room));
  Query query(base_, std::string("SELECT begin, readings, ") + Columns() + " FROM " +
                         (step == Step::kMinute ? "minutes" : "hours") +
                         " WHERE begin >= ? AND begin < ? ORDER BY begin");
  query.Bind(1, Stamp(from));
  query.Bind(2, Stamp(to));
  while (query.Next()) {
    Sample& sample = samples.emplace_back();
    int column = 0;
    sample.begin = Time(query.Get(column));
    sample.readings = query.Get(++column);
    for (const Gauge gauge : kGauges) {
      Spread& spread = sample.values[gauge];
      for (std::int64_t* number : {&spread.least, &spread.sum, &spread.most}) {
        *number = query.Get(++column);
      }
    }
  }
  return samples;
}

std::vector<Episode> SqliteHistory::Episodes(sys_seconds from, sys_seconds to) {
  OpenFirst();
  std::vector<Episode> episodes;
  Query query(base_,
              "SELECT id, kind, begin, end, ending, first_battery, lowest_battery, highest_load, "
              "mean_load FROM episodes WHERE begin < ?2 AND (end >= ?1 OR ending = 0) "
              "AND kind BETWEEN 0 AND 7 AND ending BETWEEN 0 AND 3 ORDER BY begin, id");
  query.Bind(1, Stamp(from));
  query.Bind(2, Stamp(to));
  while (query.Next()) {
    episodes.push_back({query.Get(0), static_cast<EpisodeKind>(query.Get(1)), Time(query.Get(2)),
                        Time(query.Get(3)), static_cast<Ending>(query.Get(4)), query.Maybe(5),
                        query.Maybe(6), query.Maybe(7), query.Maybe(8)});
  }
  return episodes;
}

std::optional<sys_seconds> SqliteHistory::First() {
  OpenFirst();
  std::int64_t first = 0;
  if (!Number("SELECT begin FROM hours ORDER BY begin LIMIT 1", first)) return std::nullopt;
  return Time(first);
}

std::int64_t SqliteHistory::LastEpisode() {
  OpenFirst();
  std::int64_t last = 0;
  static_cast<void>(Number("SELECT coalesce(max(id), 0) FROM episodes", last));
  return last;
}

bool SqliteHistory::Write(const std::vector<Sample>& minutes,
                          const std::vector<Episode>& episodes) {
  OpenFirst();
  if (foreign_) return false;
  // A file that could not be opened may be there again.
  if (!put_episode_ && !Open()) {
    if (!foreign_) TellTrouble(base_ ? sqlite3_errcode(base_) : SQLITE_CANTOPEN);
    return false;
  }
  if (!put_episode_) return false;
  bool written = Run("BEGIN IMMEDIATE");
  for (const Sample& minute : minutes) written = written && Write(minute);
  for (const Episode& episode : episodes) written = written && Write(episode);
  if (++writes_ % kWritesBetweenThinnings == 0) written = written && Thin();
  written = written && Run("COMMIT");
  if (written) {
    told_.clear();
    return true;
  }
  const int code = sqlite3_errcode(base_) & 0xff;
  TellTrouble(code);
  if (sqlite3_get_autocommit(base_) == 0) static_cast<void>(Run("ROLLBACK"));
  if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) {
    PutAside();
    if (!Open()) Close();
  }
  return false;
}

bool SqliteHistory::Write(const Sample& minute) {
  if (!Put(insert_minute_, minute.begin, minute)) return false;
  if (sqlite3_changes(base_) == 0) return true;
  return Put(merge_hour_, std::chrono::floor<std::chrono::hours>(minute.begin), minute);
}

bool SqliteHistory::Write(const Episode& episode) {
  int place = 0;
  for (const std::int64_t number :
       {episode.id, static_cast<std::int64_t>(episode.kind), Stamp(episode.begin),
        Stamp(episode.end), static_cast<std::int64_t>(episode.ending)}) {
    sqlite3_bind_int64(put_episode_, ++place, number);
  }
  for (const auto& number :
       {episode.first_battery, episode.lowest_battery, episode.highest_load, episode.mean_load}) {
    ++place;
    if (number) {
      sqlite3_bind_int64(put_episode_, place, *number);
    } else {
      sqlite3_bind_null(put_episode_, place);
    }
  }
  return Finish(put_episode_);
}

// By number and not by age: a clock that was set far ahead must not empty the file. Counting walks
// through a table, so only where its ends lie far enough apart.
bool SqliteHistory::Thin() {
  const auto keep = [this](const std::string& table, const std::string& key, int kept,
                           int distance = 1) {
    std::int64_t reach = 0;
    const std::string ends = "SELECT (SELECT max(" + key + ") FROM " + table + ") - (SELECT min(" +
                             key + ") FROM " + table + ")";
    if (!Number(ends.c_str(), reach)) return false;
    if (reach < std::int64_t{kept} * distance) return true;
    const std::string sql = "DELETE FROM " + table + " WHERE " + key + " <= (SELECT " + key +
                            " FROM " + table + " ORDER BY " + key + " DESC LIMIT 1 OFFSET " +
                            std::to_string(kept) + ")";
    return Run(sql.c_str());
  };
  return keep("minutes", "begin", kKeptMinutes, 60) && keep("hours", "begin", kKeptHours, 3600) &&
         keep("episodes", "id", kKeptEpisodes);
}

void SqliteHistory::Close() {
  for (sqlite3_stmt** statement : {&insert_minute_, &merge_hour_, &put_episode_}) {
    sqlite3_finalize(std::exchange(*statement, nullptr));
  }
  sqlite3_close(std::exchange(base_, nullptr));
}

void SqliteHistory::PutAside() {
  Close();
  for (const char* part : {"", "-wal", "-shm"}) {
    static_cast<void>(std::rename((path_ + part).c_str(), (path_ + ".damaged" + part).c_str()));
  }
}

void SqliteHistory::TellTrouble(int code) {
  std::string trouble = path_ + ": " + sqlite3_errstr(code);
  if (trouble == told_) return;
  report_(trouble + "; the history is not kept meanwhile");
  told_ = std::move(trouble);
}

}  // namespace orvane
