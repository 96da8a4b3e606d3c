#include "lab/model/HostFiles.h"

#include "lab/base/Text.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

HostFile ReadFile(const Row& row) { return {row.Text(0), row.Text(1), row.Flag(2)}; }

}  // namespace

void CheckHostPath(const std::string& path) {
  constexpr std::size_t kLongest = 1000;
  if (path.empty() || path.front() != '/') Fail(Quoted(path), " is not an absolute path");
  if ((path + "/").find("/../") != std::string::npos) Fail(Quoted(path), " has a \"..\" in it");
  if (path.find('\0') != std::string::npos || path.back() == '/' || path.size() > kLongest) {
    Fail(Quoted(path), " is no path of a file");
  }
}

std::vector<HostFile> FilesOf(Store& store, const Host& host) {
  std::vector<HostFile> files;
  for (const Row& row :
       Query(store, "SELECT path, content, isReadOnly FROM files WHERE host = ? ORDER BY path",
             host.id))
    files.push_back(ReadFile(row));
  return files;
}

std::optional<HostFile> FindFile(Store& store, const Host& host, const std::string& path) {
  CheckHostPath(path);
  Query row(store, "SELECT path, content, isReadOnly FROM files WHERE host = ? AND path = ?",
            host.id, path);
  if (!row.Next()) return std::nullopt;
  return ReadFile(row);
}

void FailNoFile(const Host& host, const std::string& path) {
  Fail(host.name, " has no file ", Quoted(path), "; 'autocli lab file list' shows those it has");
}

void PutFile(Store& store, const Host& host, const HostFile& file) {
  CheckHostPath(file.path);
  if (file.content.size() > kMostFileBytes) {
    Fail("a host's file holds at most 64 KiB, ", Quoted(file.path), " would hold ",
         std::to_string(file.content.size()), " bytes");
  }
  Execute(store,
          "INSERT INTO files (host, path, isReadOnly, content) VALUES (?, ?, ?, CAST(? AS BLOB)) "
          "ON CONFLICT DO UPDATE SET isReadOnly = excluded.isReadOnly, content = excluded.content",
          host.id, file.path, file.isReadOnly, file.content);
}

void SetContent(Store& store, const Host& host, const std::string& path,
                const std::string& content) {
  Execute(store, "UPDATE files SET content = CAST(? AS BLOB) WHERE host = ? AND path = ?", content,
          host.id, path);
}

void RemoveFile(Store& store, const Host& host, const std::string& path) {
  CheckHostPath(path);
  if (Execute(store, "DELETE FROM files WHERE host = ? AND path = ?", host.id, path) == 0) {
    FailNoFile(host, path);
  }
}

}  // namespace lab
