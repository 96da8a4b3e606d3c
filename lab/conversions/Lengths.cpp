#include <algorithm>

#include "lab/base/Text.h"
#include "platform/hostctl/KorelUtil.h"

std::size_t HskCtl::Korel::KorelUtil::UTF8StringCharLength(const std::string& text) {
  std::string_view rest = text;
  std::size_t count = 0;
  for (; !rest.empty(); ++count) {
    rest.remove_prefix(std::max<std::size_t>(1, lab::Utf8CharacterSize(rest)));
  }
  return count;
}
