#include "lab/hostctl/CallLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <system_error>

#include "lab/common/Text.h"
#include "lab/store/LabFile.h"

namespace lab {

CallLog::CallLog() {
  const char* path = Environment("KOREL_LAB_CALLS");
  if (path == nullptr || !MayChange()) return;
  path_ = path;
  descriptor_ = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
  if (descriptor_ < 0) {
    Fail("KOREL_LAB_CALLS names a file that cannot be written, ", Quoted(path_), ": ",
         std::generic_category().message(errno));
  }
}

CallLog::~CallLog() {
  if (descriptor_ >= 0) close(descriptor_);
}

void CallLog::Write(OperationName operation, const Json& arguments, const std::string* error) {
  if (descriptor_ < 0) return;
  Json line{{"operation", operation.Get()}, {"arguments", arguments}};
  if (error != nullptr) line["error"] = *error;
  const std::string text = line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
  errno = 0;
  if (write(descriptor_, text.data(), text.size()) == static_cast<ssize_t>(text.size())) return;
  Fail(operation.Get(), " was carried out but could not be written to KOREL_LAB_CALLS, ",
       Quoted(path_), ": ", std::generic_category().message(errno == 0 ? ENOSPC : errno));
}

LoggedCall ReadCall(const std::string& line) {
  const Json json = Json::parse(line);
  LoggedCall call{json["operation"], json["arguments"].dump(), std::nullopt};
  if (json.contains("error")) call.error = json["error"];
  return call;
}

}  // namespace lab
