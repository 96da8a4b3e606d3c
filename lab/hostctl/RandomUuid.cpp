#include <sys/random.h>

#include <cstring>

#include "lab/common/Uuids.h"
#include "platform/base/Uuid.h"

char* UUID_CreateRandom() {
  Tovrin::Korel::Uuid uuid;
  if (getrandom(&uuid, sizeof(uuid), 0) != sizeof(uuid)) return nullptr;
  uuid.high = (uuid.high & ~0xf000ULL) | 0x4000ULL;  // version 4: random
  uuid.low = (uuid.low & ~(3ULL << 62U)) | 2ULL << 62U;
  return strdup(lab::UuidText(uuid).c_str());
}
