#include <sys/random.h>

#include <cstring>
#include <ctime>

#include "lab/conversions/Uuids.h"
#include "lab/hostctl/Call.h"
#include "platform/base/Uuid.h"
#include "platform/hostctl/KorelUtil.h"

// What a lab host has from the machine that it lives on: the time, and randomness.

std::string HskCtl::Korel::KorelUtil::GetFormattedSystemDateTime() {
  return lab::Call("GetFormattedSystemDateTime", [] { return lab::LocalTime(std::time(nullptr)); });
}

char* UUID_CreateRandom() {
  try {
    lab::StrikeConversion("CreateRandomUuid");
  } catch (const lab::FailedOnPurpose&) {
    return nullptr;
  }
  Tovrin::Korel::Uuid uuid;
  if (getrandom(&uuid, sizeof(uuid), 0) != sizeof(uuid)) return nullptr;
  uuid.high = (uuid.high & ~0xf000ULL) | 0x4000ULL;  // version 4: random
  uuid.low = (uuid.low & ~(3ULL << 62U)) | 2ULL << 62U;
  return strdup(lab::UuidText(uuid).c_str());
}
