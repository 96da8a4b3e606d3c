#include "lab/model/HostRoot.h"

#include <filesystem>
#include <fstream>

#include "lab/common/Text.h"
#include "lab/store/LabFile.h"

namespace lab {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTraceConfig = R"(KORELTRACED_VOLUME=""
KORELTRACED_ROTATE_MAX_FILES=8
KORELTRACED_LOG_URGENT_TO_SYSLOG=1
KORELTRACED_ROTATE_FILE_SIZE=45
KORELTRACED_URGENT_ROTATE_MAX_FILES=8
KORELTRACED_URGENT_ROTATE_FILE_SIZE=10
KORELTRACED_DOM_OBJ_ROTATE_MAX_FILES=8
KORELTRACED_DOM_OBJ_ROTATE_FILE_SIZE=45
KORELTRACED_LSOM_ROTATE_MAX_FILES=8
KORELTRACED_LSOM_ROTATE_FILE_SIZE=45
KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=8
KORELTRACED_LSOM_VERBOSE_ROTATE_FILE_SIZE=45
KORELTRACED_LAST_SELECTED_VOLUME="/var/log/koreltraces"
)";

/// The state is a file, so that the daemon "runs" without a process that a lab would leave behind.
constexpr const char* kTraceScript = R"(#!/bin/sh
# The trace daemon of a lab host: it writes no traces, but starts, stops, and follows
# its configuration.
PATH=/usr/sbin:/usr/bin:/sbin:/bin
root=$(CDPATH= cd -- "$(dirname -- "$0")/../.." && pwd) || exit 1
config=$root/etc/ostrel/korel/koreltraced.conf
running=$root/var/run/koreltraced.running
log=$root/var/log/koreltraced.log

# Reads the configuration and notes in it which volume the daemon took: the last one that
# is named, else its own.
follow() {
  awk '
    { line = $0; sub(/^[ \t]+/, "", line); sub(/\r$/, "", line) }
    index(line, "KORELTRACED_LAST_SELECTED_VOLUME=") == 1 { next }
    index(line, "KORELTRACED_VOLUME=") == 1 { volume = substr(line, 20) }
    { print }
    END {
      if (volume == "" || volume == "\"\"") volume = "\"/var/log/koreltraces\""
      print "KORELTRACED_LAST_SELECTED_VOLUME=" volume
    }' "$config" > "$config.daemon" && mv -- "$config.daemon" "$config" && return
  rm -f -- "$config.daemon"
  return 1
}

note() { echo "$(date -u +%Y-%m-%dT%H:%M:%SZ) koreltraced $1" >> "$log"; }

case $1 in
  status) [ -e "$running" ] || exit 3 ;;
  start)
    [ -e "$running" ] && exit 0
    follow && : > "$running" && note started || exit 1 ;;
  restart) follow && : > "$running" && note restarted || exit 1 ;;
  stop)
    [ -e "$running" ] || exit 0
    rm -- "$running" && note stopped || exit 1 ;;
  *) echo "usage: $0 start|stop|restart|status" >&2; exit 2 ;;
esac
)";

void WriteNew(const fs::path& path, const char* content) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file) Fail("cannot write ", Quoted(path.string()));
}

/// Under another name until all is there, so that a host never has half a root. Names of hosts do
/// not begin with a point.
void LayOut(const fs::path& root) {
  if (!MayChange()) Fail("the host has no files yet, and nothing may change now");
  const fs::path unfinished = root.parent_path() / ("." + root.filename().string());
  fs::remove_all(unfinished);
  WriteNew(unfinished / "etc/ostrel/korel/koreltraced.conf", kTraceConfig);
  const fs::path script = unfinished / (kTraceDaemon + 1);
  WriteNew(script, kTraceScript);
  fs::permissions(script, fs::perms::owner_exec, fs::perm_options::add);
  WriteNew(unfinished / "var/run/koreltraced.running", "");
  WriteNew(unfinished / "var/log/koreltraced.log", "");
  fs::rename(unfinished, root);
}

}  // namespace

std::string RootsOf(const Store& store) { return store.GetPath() + ".root"; }

std::string HostRoot(const Store& store, const Host& host) {
  return RootsOf(store) + "/" + host.name;
}

void LayOutRoot(const Store& store, const std::string& hostName) {
  const fs::path root = fs::path(RootsOf(store)) / hostName;
  if (!fs::exists(root)) LayOut(root);
}

void RemoveRoots(const Store& store) { fs::remove_all(RootsOf(store)); }

std::string PlaceUnderRoot(const Store& store, const Host& host, const std::string& path) {
  if (path.empty() || path.front() != '/') Fail(Quoted(path), " is not an absolute path");
  if ((path + "/").find("/../") != std::string::npos) Fail(Quoted(path), " has a \"..\" in it");
  LayOutRoot(store, host.name);
  return HostRoot(store, host) + path;
}

}  // namespace lab
