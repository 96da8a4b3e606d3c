#include "tests/support/RecordingHost.h"

TEST(MaintenanceMode, CancelAnswersFalseWhenItFails) {
  test::Check("maintenancemode cancel -> true <- DecomCancel\n! error: no luck | false");
}
