#include "tests/support/RecordingHost.h"

namespace test {
namespace {

TEST(MaintenanceMode, CancelAnswersFalseWhenItFails) {
  Check({
      {"maintenancemode cancel", nullptr, "true", "DecomCancel"},
      {"maintenancemode cancel", Failing("DecomCancel"), "error: no luck | false", "DecomCancel"},
  });
}

}  // namespace
}  // namespace test
