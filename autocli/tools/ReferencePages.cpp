#include "autocli/tools/ReferencePages.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "autocli/help/Reference.h"
#include "autocli/run/Report.h"

namespace autocli {

namespace {

std::vector<Document> DocumentsOf(const std::vector<Page>& pages, const std::string& kind) {
  if (kind != "man") return {MarkdownPage(pages)};
  std::vector<Document> documents;
  for (const Page& page : pages) documents.push_back(ManPage(page));
  return documents;
}

/// Writes all of it. Returns 0, or the errno value of what stopped it.
int WriteText(const std::string& path, const std::string& text) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (file < 0) return errno;
  FileSink sink(file);
  sink.Buffer() = text;
  sink.Flush();
  const bool isClosed = close(file) == 0;
  return sink.GetError() != 0 || isClosed ? sink.GetError() : errno;
}

/// Puts the document in place of an earlier one, as a whole or not at all. Returns the same.
int Replace(const std::string& path, const std::string& text) {
  const std::string beside = path + ".new";
  int error = WriteText(beside, text);
  if (error == 0 && std::rename(beside.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(beside.c_str());
  return error;
}

}  // namespace

int ReferenceTool(const ToolCall& call) {
  if (call.words.size() != 2 || call.words[1].empty()) {
    return RefuseTool(call, "the kind of page and a directory are needed");
  }
  const std::string& kind = call.words[0];
  const std::string& directory = call.words[1];
  if (kind != "man" && kind != "markdown") {
    return RefuseTool(call, fmt::format("\"{}\" is none of man, markdown", kind));
  }
  if (access((directory + "/.").c_str(), W_OK | X_OK) != 0) {
    return RefuseTool(call,
                      fmt::format("cannot write into \"{}\": {}", directory, std::strerror(errno)));
  }
  std::vector<Fault> faults = FaultsOf(call.plugins);
  for (const auto& [file, text] : DocumentsOf(ReferencePages(call.vocabulary, faults), kind)) {
    const std::string path = directory + "/" + file;
    const int error = Replace(path, text);
    if (error == 0) continue;
    faults.push_back(
        {FaultKind::Command, fmt::format("cannot write \"{}\": {}", path, std::strerror(error))});
    break;
  }
  return WriteFaults(faults, call.err);
}

}  // namespace autocli
