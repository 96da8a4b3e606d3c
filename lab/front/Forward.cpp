#include "lab/front/Forward.h"

#include <dlfcn.h>

#include <string>

#include "platform/hostctl/KorelCtlException.h"

namespace lab {
namespace {

[[noreturn]] void FailToLoad() {
  const char* reason = dlerror();
  throw Tovrin::Lib::Korel::KorelCtlException(std::string("the lab cannot be loaded: ") +
                                              (reason == nullptr ? "out of memory" : reason));
}

/// Never unloaded: what it handed out holds its code.
void* Library(const std::string& beside) {
  static void* const library = [&] {
    const std::string path = beside.substr(0, beside.rfind('/') + 1) + "autocli/libkorellab.so";
    void* loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr) FailToLoad();
    return loaded;
  }();
  return library;
}

}  // namespace

void* InLab(const void* own) {
  Dl_info self;
  if (dladdr(own, &self) == 0 || self.dli_sname == nullptr) FailToLoad();
  void* there = dlsym(Library(self.dli_fname), self.dli_sname);
  if (there == nullptr) FailToLoad();
  return there;
}

}  // namespace lab
