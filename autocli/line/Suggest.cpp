#include "autocli/line/Suggest.h"

#include "platform/autocli/Suggest.h"

namespace autocli {

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates) {
  const std::string closest = Corvex::Suggest::Closest(word, candidates);
  return closest.empty() ? "" : ", did you mean \"" + closest + "\"?";
}

}  // namespace autocli
